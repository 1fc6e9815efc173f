#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/qvutils/base/smapi.h"

namespace qv {

/**
 * The text beneath `I18NString` and `QvULString`: one pointer to a counted, NUL-terminated UTF-8 text, null when empty.
 *
 * A copy shares the text and allocates nothing, also from the one string class to the other; whoever changes a shared text
 * takes a copy first. Counts are plain while the process has one thread and atomic from then on, so texts may be shared
 * between objects that different threads use. An immortal text (a name of a singleton) is never counted and never freed.
 */
class SM_API SharedText {
  public:
    SharedText() noexcept = default;
    explicit SharedText(std::string_view utf8);
    SharedText(const SharedText& other) noexcept;
    SharedText(SharedText&& other) noexcept : m_rep(other.m_rep) { other.m_rep = nullptr; }
    SharedText& operator=(const SharedText& other) noexcept;
    SharedText& operator=(SharedText&& other) noexcept;
    ~SharedText();

    /** A text that lives to the end of the process and is never counted. */
    static SharedText Immortal(std::string_view utf8);

    std::string_view view() const noexcept;
    const char* c_str() const noexcept;
    bool empty() const noexcept { return m_rep == nullptr; }
    /** True when both share one text, or both are empty: equal without looking at a byte. */
    bool same(const SharedText& other) const noexcept { return m_rep == other.m_rep; }
    bool ascii() const noexcept;

    /** Makes the text equal to utf8; a text that nobody shares keeps its memory, so a buffer can be filled again and again. */
    void assign(std::string_view utf8);
    void append(std::string_view utf8);
    /** Empties the text. A text that nobody shares keeps its memory for the next append: it then reads as empty() too. */
    void clear() noexcept;
    void swap(SharedText& other) noexcept;

  private:
    struct Rep;
    Rep* m_rep = nullptr;
};

}  // namespace qv
