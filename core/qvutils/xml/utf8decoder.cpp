#include "core/qvutils/xml/utf8decoder.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qv {
namespace {

/** Room for the largest piece that is written without looking at the room left: 16 units, or a surrogate pair. */
constexpr std::ptrdiff_t PIECE = 32;

inline unsigned char Byte(char c) {
    return static_cast<unsigned char>(c);
}

inline void Put(char*& out, std::uint32_t unit) {
    const char16_t value = static_cast<char16_t>(unit);
    std::memcpy(out, &value, sizeof value);
    out += sizeof value;
}

/** Length of the character that begins with `lead`; 0 for a byte that begins none. */
inline std::size_t LengthOf(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead < 0xC2) return 0;
    if (lead < 0xE0) return 2;
    if (lead < 0xF0) return 3;
    return lead < 0xF5 ? 4 : 0;
}

/** Copies ASCII without NUL as far as it goes. */
inline void CopyAscii(const char*& at, const char* last, char*& out, const char* end) {
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    while (last - at >= 16 && end - out >= PIECE) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        if (_mm_movemask_epi8(_mm_or_si128(bytes, _mm_cmpeq_epi8(bytes, zero))) != 0) break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(bytes, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 16), _mm_unpackhi_epi8(bytes, zero));
        at += 16;
        out += PIECE;
    }
#endif
    for (; at != last && end - out >= 2 && *at > 0; ++at) Put(out, Byte(*at));
}

}  // namespace

bool Utf8Decoder::DecodeCharacter(const char* bytes, std::size_t length, char*& out) noexcept {
    std::uint32_t c = Byte(bytes[0]);
    if (length == 1) {
        Put(out, c);
        return true;
    }
    c &= 0xFFu >> (length + 1);
    for (std::size_t i = 1; i < length; ++i) {
        if ((Byte(bytes[i]) & 0xC0) != 0x80) return false;
        c = c << 6 | (Byte(bytes[i]) & 0x3F);
    }
    const bool overlong = (length == 3 && c < 0x800) || (length == 4 && c < 0x10000);
    if (overlong || (c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF) return false;
    if (c >= 0x10000) {
        Put(out, 0xD800 + ((c - 0x10000) >> 10));
        Put(out, 0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
        Put(out, c);
    }
    return true;
}

char* Utf8Decoder::CompleteCut(std::string_view& bytes, char* out) noexcept {
    const std::size_t length = LengthOf(Byte(m_cut[0]));
    while (m_cutSize < length && !bytes.empty()) {
        m_cut[m_cutSize++] = bytes.front();
        bytes.remove_prefix(1);
    }
    if (m_cutSize == length) {
        if (!DecodeCharacter(m_cut.data(), length, out))
            m_fault = Fault::malformed;
        else
            m_cutSize = 0;
    }
    return out;
}

char* Utf8Decoder::Decode(std::string_view& bytes, char* out, const char* end) noexcept {
    if (m_cutSize != 0 && end - out >= 4) out = CompleteCut(bytes, out);
    const char* at = bytes.data();
    const char* const last = at + bytes.size();
    while (m_fault == Fault::none && at != last && end - out >= 4) {
        CopyAscii(at, last, out, end);
        if (at == last || end - out < 4) break;
        if (*at > 0) continue;
        const std::size_t length = LengthOf(Byte(*at));
        if (*at == 0) {
            m_fault = Fault::nul;
        } else if (length == 0) {
            m_fault = Fault::malformed;
        } else if (static_cast<std::size_t>(last - at) < length) {
            m_cutSize = static_cast<std::size_t>(last - at);
            std::memcpy(m_cut.data(), at, m_cutSize);
            at = last;
        } else if (DecodeCharacter(at, length, out)) {
            at += length;
        } else {
            m_fault = Fault::malformed;
        }
    }
    bytes.remove_prefix(static_cast<std::size_t>(at - bytes.data()));
    return out;
}

void Utf8Decoder::Finish() noexcept {
    if (m_cutSize != 0) m_fault = Fault::malformed;
}

}  // namespace qv
