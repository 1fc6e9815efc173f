#include "core/qvutils/xml/xmlescape.h"

#include "core/qvutils/text/utf8.h"

#include <array>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qv {
namespace {

using References = std::array<std::string_view, 256>;

constexpr References TEXT_REFERENCES = [] {
    References references;
    references['&'] = "&amp;";
    references['<'] = "&lt;";
    references['>'] = "&gt;";
    references['\r'] = "&#xD;";
    return references;
}();

constexpr References VALUE_REFERENCES = [] {
    References references = TEXT_REFERENCES;
    references['"'] = "&quot;";
    references['\t'] = "&#x9;";
    references['\n'] = "&#xA;";
    return references;
}();

#if defined(__SSE2__)
/** Which of 16 bytes may need a reference: `& < >`, also `"`, and all below the blank. */
inline unsigned Suspects(const char* at) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const __m128i low = _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(0x1F)), bytes);
    // '<' and '>' differ in one bit, and so do '"' and '&'.
    const __m128i angles = _mm_cmpeq_epi8(_mm_or_si128(bytes, _mm_set1_epi8(0x02)), _mm_set1_epi8('>'));
    const __m128i others = _mm_cmpeq_epi8(_mm_or_si128(bytes, _mm_set1_epi8(0x04)), _mm_set1_epi8('&'));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(low, _mm_or_si128(angles, others))));
}
#endif

/** The first byte from `at` on that needs a reference, or `end`. */
inline const char* FindSpecial(const char* at, const char* end, const References& references) {
#if defined(__SSE2__)
    while (end - at >= 16) {
        for (unsigned suspects = Suspects(at); suspects != 0; suspects &= suspects - 1) {
            const char* suspect = at + __builtin_ctz(suspects);
            if (!references[static_cast<unsigned char>(*suspect)].empty()) return suspect;
        }
        at += 16;
    }
#endif
    while (at != end && references[static_cast<unsigned char>(*at)].empty()) ++at;
    return at;
}

void WriteEscaped(QvXMLFormatTarget& target, std::string_view utf8, const References& references) {
    const char* at = utf8.data();
    const char* const end = at + utf8.size();
    while (at != end) {
        const char* special = FindSpecial(at, end, references);
        if (special != at) target.write(at, static_cast<std::size_t>(special - at));
        if (special == end) return;
        target.write(references[static_cast<unsigned char>(*special)]);
        at = special + 1;
    }
}

}  // namespace

void WriteEscapedText(QvXMLFormatTarget& target, std::string_view utf8) {
    WriteEscaped(target, utf8, TEXT_REFERENCES);
}

void WriteEscapedValue(QvXMLFormatTarget& target, std::string_view utf8) {
    WriteEscaped(target, utf8, VALUE_REFERENCES);
}

bool IsXmlText(const std::string& utf8) noexcept {
    for (std::size_t at = 0; at < utf8.size();) {
        const char32_t character = DecodeUtf8(utf8.c_str() + at);
        char bytes[4];
        const std::size_t length = EncodeUtf8(character, bytes);
        if (utf8.compare(at, length, bytes, length) != 0) return false;
        const bool control = character < 0x20 && character != '\t' && character != '\n' && character != '\r';
        if (control || character == 0xFFFE || character == 0xFFFF) return false;
        at += length;
    }
    return true;
}

}  // namespace qv
