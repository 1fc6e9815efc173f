#include "core/qvutils/text/utf8.h"

namespace qv {

std::size_t CountCharacters(std::string_view text) noexcept {
    if (text.empty()) return 0;
    std::size_t count = IsUtf8Continuation(text.front()) ? 1 : 0;
    for (const char c : text) count += IsUtf8Continuation(c) ? 0U : 1U;
    return count;
}

std::size_t OffsetOfCharacter(std::string_view text, std::size_t index) noexcept {
    std::size_t at = 0;
    for (; index > 0 && at < text.size(); --index) {
        do ++at;
        while (at < text.size() && IsUtf8Continuation(text[at]));
    }
    return at;
}

char32_t DecodeUtf8(const char* at) noexcept {
    const auto byte = [at](int i) { return static_cast<unsigned char>(at[i]); };
    const unsigned lead = byte(0);
    if (lead < 0x80) return lead;
    const int extra = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    static constexpr char32_t LEAST[] = {0, 0x80, 0x800, 0x10000};
    if (lead < 0xC0 || lead > 0xF7) return REPLACEMENT_CHARACTER;
    char32_t character = lead & (0x3FU >> extra);
    for (int i = 1; i <= extra; ++i) {
        if (!IsUtf8Continuation(at[i])) return REPLACEMENT_CHARACTER;
        character = (character << 6) | (byte(i) & 0x3FU);
    }
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    return character < LEAST[extra] || character > 0x10FFFF || surrogate ? REPLACEMENT_CHARACTER : character;
}

std::size_t EncodeUtf8(char32_t character, char (&out)[4]) noexcept {
    if (character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) character = REPLACEMENT_CHARACTER;
    const auto tail = [character](int shift) { return static_cast<char>(0x80U | ((character >> shift) & 0x3FU)); };
    if (character < 0x80) {
        out[0] = static_cast<char>(character);
        return 1;
    }
    if (character < 0x800) {
        out[0] = static_cast<char>(0xC0U | (character >> 6));
        out[1] = tail(0);
        return 2;
    }
    if (character < 0x10000) {
        out[0] = static_cast<char>(0xE0U | (character >> 12));
        out[1] = tail(6);
        out[2] = tail(0);
        return 3;
    }
    out[0] = static_cast<char>(0xF0U | (character >> 18));
    out[1] = tail(12);
    out[2] = tail(6);
    out[3] = tail(0);
    return 4;
}

}  // namespace qv
