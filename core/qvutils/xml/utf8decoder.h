#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace qv {

/** Turns UTF-8 that comes in blocks into UTF-16, up to the first byte that no XML document may hold. */
class Utf8Decoder {
  public:
    enum class Fault { none, malformed, nul };

    void Reset() noexcept { *this = Utf8Decoder(); }
    /**
     * Decodes from the front of `bytes`, which it shortens, to `out` as far as there is room; returns the end of what it wrote.
     * `out` need not be aligned. At a fault it stops for good, behind the last good character.
     */
    char* Decode(std::string_view& bytes, char* out, const char* end) noexcept;
    /** The last block is through: a character that is cut off is a fault. */
    void Finish() noexcept;
    Fault fault() const noexcept { return m_fault; }
    /** Bytes taken for a character that is not written: its rest is to come, or makes none of it. */
    std::size_t held() const noexcept { return m_cutSize; }

  private:
    bool DecodeCharacter(const char* bytes, std::size_t length, char*& out) noexcept;
    char* CompleteCut(std::string_view& bytes, char* out) noexcept;

    Fault m_fault = Fault::none;
    /** The start of a character whose rest comes with the next block. */
    std::array<char, 4> m_cut{};
    std::size_t m_cutSize = 0;
};

}  // namespace qv
