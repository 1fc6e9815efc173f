#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace qv {

/**
 * Digests of elements with all that is in them. Neither the order of attributes nor that of siblings counts, since a document that is
 * written anew puts them in an order of its own; nor does white space between elements.
 */
class ContentHasher {
  public:
    void Start(std::string_view name);
    void Attribute(std::string_view name, std::string_view value);
    void Forget(std::string_view name, std::string_view value);
    void Text(std::string_view text);
    /** The digest of the element that ends; nothing for the root of a part, which its placeholder becomes, and whose end is awaited. */
    std::optional<std::uint64_t> End();
    void StartPart() { m_parts.push_back({m_open.size(), m_open.back()}); }
    /** The elements that a broken part has left open are dropped. */
    void EndPart(bool isWhole);

  private:
    struct Level {
        std::uint64_t name = 0, sum = 0;
    };
    /** How many elements are open around a part, and what its placeholder was without it. */
    struct Part {
        std::size_t depth = 0;
        Level placeholder;
    };
    std::vector<Level> m_open;
    std::vector<Part> m_parts;
};

}  // namespace qv
