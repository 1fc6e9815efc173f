#pragma once

#include <string>
#include <string_view>

#include "core/qvutils/text/asciifold.h"

namespace qv {

/** For a text that begins as a number or a day does. */
std::string_view PlainOfDigits(std::string_view text, std::string& space);

/**
 * What two spellings of one value have in common. Only what readers take for the same counts: whole numbers in any spelling, and a day
 * for its midnight. All else is another value if it is another text, be it in a blank alone. The result stands in `text` or in `space`.
 */
inline std::string_view PlainValue(std::string_view text, std::string& space) {
    const bool mayDiffer = !text.empty() && (IsAsciiDigit(text.front()) || text.front() == '-' || text.front() == '+');
    return mayDiffer ? PlainOfDigits(text, space) : text;
}

inline std::string PlainValue(std::string_view text) {
    std::string space;
    return std::string(PlainValue(text, space));
}

/** Whether a value that was read as `written` has lost nothing but its spelling. */
inline bool IsSameValue(std::string_view value, std::string_view written) {
    return value == written || PlainValue(value) == PlainValue(written);
}

}  // namespace qv
