#include "core/qvutils/xml/utf16.h"

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qv {
namespace {

/** Copies ASCII as far as it goes and leaves both pointers behind it. */
inline void CopyAscii(const char16_t*& at, const char16_t* end, char*& out) noexcept {
#if defined(__SSE2__)
    const __m128i beyond = _mm_set1_epi16(static_cast<short>(0xFF80));
    while (end - at >= 16) {
        const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 8));
        const __m128i foreign = _mm_and_si128(_mm_or_si128(low, high), beyond);
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(foreign, _mm_setzero_si128())) != 0xFFFF) break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(low, high));
        at += 16;
        out += 16;
    }
#endif
    while (at != end && *at < 0x80) *out++ = static_cast<char>(*at++);
}

inline char Tail(std::uint32_t bits) noexcept {
    return static_cast<char>(0x80 | (bits & 0x3F));
}

}  // namespace

char* Utf16ToUtf8(const char16_t* text, std::size_t length, char* out) noexcept {
    const char16_t* at = text;
    const char16_t* end = text + length;
    while (true) {
        CopyAscii(at, end, out);
        if (at == end) return out;
        std::uint32_t c = *at++;
        if (c < 0x800) {
            *out++ = static_cast<char>(0xC0 | (c >> 6));
            *out++ = Tail(c);
            continue;
        }
        if (c >= 0xD800 && c <= 0xDFFF) {
            if (c < 0xDC00 && at != end && *at >= 0xDC00 && *at <= 0xDFFF) {
                c = 0x10000 + ((c - 0xD800) << 10) + (*at++ - 0xDC00u);
                *out++ = static_cast<char>(0xF0 | (c >> 18));
                *out++ = Tail(c >> 12);
                *out++ = Tail(c >> 6);
                *out++ = Tail(c);
                continue;
            }
            c = 0xFFFD;
        }
        *out++ = static_cast<char>(0xE0 | (c >> 12));
        *out++ = Tail(c >> 6);
        *out++ = Tail(c);
    }
}

std::string Utf8Of(const char16_t* text) {
    if (!text) return {};
    const std::size_t length = std::char_traits<char16_t>::length(text);
    std::string utf8(length * UTF8_PER_UTF16, '\0');
    utf8.resize(static_cast<std::size_t>(Utf16ToUtf8(text, length, utf8.data()) - utf8.data()));
    return utf8;
}

bool SameText(const char16_t* utf16, std::string_view utf8) {
    for (std::size_t i = 0; i < utf8.size(); ++i, ++utf16) {
        if (static_cast<unsigned char>(utf8[i]) >= 0x80) return Utf8Of(utf16) == utf8.substr(i);
        if (*utf16 != static_cast<char16_t>(utf8[i]) || *utf16 == 0) return false;
    }
    return *utf16 == 0;
}

}  // namespace qv
