#include "core/qvutils/text/qvstringutils.h"

#include <string>

namespace {

std::string_view EscapeOf(char c) {
    switch (c) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '"': return "&quot;";
    case '\'': return "&apos;";
    case '[': return "&#91;";
    case ']': return "&#93;";
    case '.': return "&#46;";
    default: return {};
    }
}

}  // namespace

I18NString QvStringUtils::EscapeString(const I18NString& text) {
    static constexpr std::string_view MARKS = "&<>\"'[].";
    const std::string_view plain = text.utf8();
    std::size_t at = plain.find_first_of(MARKS);
    if (at == std::string_view::npos) return text;
    std::string escaped;
    escaped.reserve(plain.size() + 16);
    std::size_t done = 0;
    for (; at != std::string_view::npos; at = plain.find_first_of(MARKS, done)) {
        escaped.append(plain, done, at - done).append(EscapeOf(plain[at]));
        done = at + 1;
    }
    escaped.append(plain, done);
    return I18NString(std::string_view(escaped));
}
