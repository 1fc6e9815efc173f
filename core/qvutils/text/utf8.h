#pragma once

#include <cstddef>
#include <string_view>

/**
 * Walking UTF-8 by characters. Texts may be ill-formed: a continuation byte belongs to the character before it, so that
 * counts, positions and iterators always agree and no walk leaves the text.
 */
namespace qv {

constexpr char32_t REPLACEMENT_CHARACTER = 0xFFFD;

constexpr bool IsUtf8Continuation(char c) noexcept {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

std::size_t CountCharacters(std::string_view text) noexcept;

/** The byte at which character `index` begins; the size of the text when it has no more characters. */
std::size_t OffsetOfCharacter(std::string_view text, std::size_t index) noexcept;

/** The character that begins at `at`, U+FFFD when ill-formed. The text must end in a NUL, or in a complete character. */
char32_t DecodeUtf8(const char* at) noexcept;

/** Writes a character, U+FFFD for what is none, and returns the number of bytes. */
std::size_t EncodeUtf8(char32_t character, char (&out)[4]) noexcept;

}  // namespace qv
