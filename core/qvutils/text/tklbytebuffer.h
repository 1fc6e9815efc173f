#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/qvutils/base/smapi.h"

/**
 * A growing byte buffer. The initial size and the growth are hints: nothing is allocated before the first byte, since models
 * hold buffers by the million, and growth is never less than geometric.
 */
class SM_API TklByteBuffer {
  public:
    explicit TklByteBuffer(std::size_t initialSize = 0, std::size_t growth = 0) noexcept;

    void appendChars(const char* bytes, std::size_t length);
    /** Forgets the content, keeps the memory. */
    void reset() noexcept;
    void reserve(std::size_t size);
    /** Cuts the content, or lengthens it with zero bytes. */
    void setLength(std::size_t length);
    /** Gives back what is reserved beyond the content. */
    void shrink();
    TklByteBuffer& operator<<(const char* text);
    TklByteBuffer& operator<<(const TklByteBuffer& other);
    TklByteBuffer& operator<<(char byte);

    /** The bytes, followed by a NUL that does not count. */
    const char* str() const noexcept;
    std::size_t pcount() const noexcept;
    std::string_view view() const noexcept { return {str(), pcount()}; }

  private:
    std::string m_bytes;
};
