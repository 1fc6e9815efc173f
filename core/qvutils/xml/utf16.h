#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qv {

/** Most bytes of UTF-8 that one unit of UTF-16 becomes. */
inline constexpr std::size_t UTF8_PER_UTF16 = 3;

/**
 * Writes UTF-16 as UTF-8 to `out`, which has room for UTF8_PER_UTF16 bytes a unit, and returns the end of what it wrote.
 * A surrogate without its other half becomes U+FFFD.
 */
char* Utf16ToUtf8(const char16_t* text, std::size_t length, char* out) noexcept;

/** The same as a string, for the places that are not hot. Null gives an empty string. */
std::string Utf8Of(const char16_t* text);

/** Whether the NUL-terminated UTF-16 text is the UTF-8 text. */
bool SameText(const char16_t* utf16, std::string_view utf8);

}  // namespace qv
