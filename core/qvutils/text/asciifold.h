#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

/**
 * Case of ASCII letters only, whatever the locale of the process: keys, tags and locale names of the model are compared so.
 */
namespace qv {

constexpr char AsciiLower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
constexpr char AsciiUpper(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}
constexpr bool IsAsciiDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
constexpr bool IsAsciiLetter(char c) noexcept {
    return AsciiLower(c) >= 'a' && AsciiLower(c) <= 'z';
}

constexpr bool AsciiEqualsIgnoreCase(std::string_view a, std::string_view b) noexcept {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i] && AsciiLower(a[i]) != AsciiLower(b[i])) return false;
    return true;
}

/** -1, 0 or 1: the order of the bytes, unsigned, after letters were made small. */
constexpr int AsciiCompareIgnoreCase(std::string_view a, std::string_view b) noexcept {
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
        const auto left = static_cast<unsigned char>(AsciiLower(a[i]));
        const auto right = static_cast<unsigned char>(AsciiLower(b[i]));
        if (left != right) return left < right ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

/** Equal for texts that differ in the case of ASCII letters only (FNV-1a). */
constexpr std::size_t AsciiHashIgnoreCase(std::string_view text) noexcept {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(AsciiLower(c))) * 0x100000001b3U;
    return static_cast<std::size_t>(hash);
}

inline std::string AsciiLowered(std::string_view text) {
    std::string lowered(text);
    for (char& c : lowered) c = AsciiLower(c);
    return lowered;
}

/** True when no byte is beyond 0x7F. */
inline bool IsAscii(std::string_view text) noexcept {
    constexpr std::size_t WORD = sizeof(std::uint64_t);
    std::size_t i = 0;
    for (; i + WORD <= text.size(); i += WORD) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + i, WORD);
        if (word & 0x8080808080808080U) return false;
    }
    for (; i < text.size(); ++i)
        if (static_cast<unsigned char>(text[i]) >= 0x80) return false;
    return true;
}

/** Order and equality for maps whose keys are texts with a `utf8()`, or plain views. */
struct AsciiLessIgnoreCase {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const noexcept { return AsciiCompareIgnoreCase(a, b) < 0; }
    template <class A, class B>
    requires requires(const A& a, const B& b) { a.utf8(), b.utf8(); }
    bool operator()(const A& a, const B& b) const noexcept { return AsciiCompareIgnoreCase(a.utf8(), b.utf8()) < 0; }
};

}  // namespace qv
