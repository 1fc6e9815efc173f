#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/qvutils/base/smapi.h"

namespace qv {

/**
 * Digests of elements with all that is in them. Neither the order of attributes nor that of siblings counts, since a document that is
 * written anew puts them in an order of its own; nor does white space between elements, nor the spelling of numbers and days.
 *
 * A save adds some things that the document may lack, and that are therefore told apart: empty ids and the version 0 of objects, as
 * attributes or as elements `property`; declarations of namespaces; elements without anything in them.
 */
class SM_API ContentHasher {
  public:
    struct Digests {
        /** Without what a save may have added in it; and with all. */
        std::uint64_t bare = 0, whole = 0;
        /** Whether it is such a thing itself; it is then listed among those of the element around it. */
        bool isGiven = false;
    };

    void Start(std::string_view name);
    void Attribute(std::string_view name, std::string_view value);
    void Forget(std::string_view name, std::string_view value);
    void Text(std::string_view text);
    /** Those of the element that ends, good until another one does. Null for the root of a part: its placeholder becomes it and is open. */
    const Digests* End();
    /** Digests of what a save may have added right in the element that has ended last; each of them stands for that element too. */
    const std::vector<std::uint64_t>& Given() const { return m_given; }
    void StartPart() { m_parts.push_back({m_open.size(), m_pending.size(), m_open.back()}); }
    /** The elements that a broken part has left open are dropped. */
    void EndPart(bool isWhole);
    void Become(std::string_view name);

  private:
    struct Level {
        std::uint64_t name = 0, bare = 0, whole = 0;
        /** Where its own given things begin among the pending ones. */
        std::size_t pending = 0;
        bool isProperty = false, isGiven = false;
        /** As a property: that of the id. */
        bool isId = false;
    };
    /** How many elements are open around a part, and what its placeholder was without it. */
    struct Part {
        std::size_t depth = 0, pending = 0;
        Level placeholder;
    };
    void GiveAll(std::size_t first, std::uint64_t bare);

    std::vector<Level> m_open;
    std::vector<Part> m_parts;
    /** Digests of what is given in the open elements. */
    std::vector<std::uint64_t> m_pending;
    std::vector<std::uint64_t> m_given;
    Digests m_ended;
    /** For values in another spelling. */
    std::string m_space;
};

}  // namespace qv
