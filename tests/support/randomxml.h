#pragma once

#include <string>
#include <vector>

#include "tests/support/values.h"

namespace smtest {

/**
 * Random XML, the same for the same seed: what one text can look like in a document, in every form that XML has for it. Characters
 * come bare, as references, in CDATA sections, with comments between them; elements without content in both forms.
 */
class RandomXml {
  public:
    using Parts = std::vector<std::string>;

    /** With `mayHavePrefix`, all elements of some documents have one. */
    explicit RandomXml(unsigned seed, bool mayHavePrefix = true);

    /** True once in so many times. */
    bool Chance(int in) { return Below(in) == 0; }
    int Below(int end) { return m_values.Choice(0, end); }
    template <class T>
    const T& OneOf(const std::vector<T>& choices) {
        return choices[static_cast<std::size_t>(Below(static_cast<int>(choices.size())))];
    }

    /** An odd text, as its readers shall see it; it may be empty. */
    std::string Odd();
    /** The same without brackets: a name that references can tell. */
    std::string OddName(const std::string& what);

    /** A text as content of an element. */
    std::string Encoded(const std::string& text);
    /** ` name="text"`, with the blank. */
    std::string Attribute(const std::string& name, const std::string& text);
    std::string Element(const std::string& tag, const std::string& content, const std::string& attributes = "");
    std::string TextElement(const std::string& tag, const std::string& text, const std::string& attributes = "");
    /** The parts in this order, or in any, with what may stand between elements between them. */
    std::string Joined(const Parts& parts);
    std::string Shuffled(Parts parts);
    /** What stands before the root element. */
    std::string Prolog();

    /** Values that give the same odd texts, unlike ids, and dates. */
    Values& GetValues() { return m_values; }

    /** Brackets in texts that are no references. */
    bool looseBrackets = true;

  private:
    std::string Character(const std::string& character);
    std::string Between();

    Values m_values;
    /** Whether the document declares an entity, which texts then use; the prefix of all its elements. */
    bool m_hasEntity;
    std::string m_prefix;
};

}  // namespace smtest
