#include "core/qvutils/content/plainvalue.h"

#include <algorithm>
#include <cstddef>

namespace qv {
namespace {

bool AreDigits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), IsAsciiDigit);
}

/** Whether it has the form of a date without a time of day. */
bool IsDay(std::string_view text) {
    return text.size() == 10 && text[4] == '-' && text[7] == '-' && AreDigits(text.substr(0, 4)) && AreDigits(text.substr(5, 2)) &&
           AreDigits(text.substr(8));
}

}  // namespace

std::string_view PlainOfDigits(std::string_view text, std::string& space) {
    const bool isNegative = text.front() == '-', isSigned = isNegative || text.front() == '+';
    if (IsDay(text)) return space.assign(text).append("T00:00:00");
    const std::string_view digits = isSigned ? text.substr(1) : text;
    if (!AreDigits(digits)) return text;
    const std::size_t first = digits.find_first_not_of('0');
    if (first == std::string_view::npos) return "0";
    if (!isNegative) return digits.substr(first);
    return first == 0 ? text : std::string_view(space.assign("-").append(digits.substr(first)));
}

}  // namespace qv
