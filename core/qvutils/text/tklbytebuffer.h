#pragma once

#include <cstddef>
#include <string_view>

#include "core/qvutils/base/smapi.h"

/**
 * A growing byte buffer. The initial size and the growth are hints: nothing is allocated before the first byte, since models
 * hold buffers by the million, and growth is never less than geometric. Without content it is one null pointer.
 */
class SM_API TklByteBuffer {
  public:
    explicit TklByteBuffer(std::size_t initialSize = 0, std::size_t growth = 0) noexcept;
    TklByteBuffer(const TklByteBuffer& other);
    TklByteBuffer(TklByteBuffer&& other) noexcept : m_block(other.m_block) { other.m_block = nullptr; }
    TklByteBuffer& operator=(const TklByteBuffer& other);
    TklByteBuffer& operator=(TklByteBuffer&& other) noexcept;
    ~TklByteBuffer();

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
    const char* str() const noexcept { return m_block ? m_block->Bytes() : ""; }
    std::size_t pcount() const noexcept { return m_block ? m_block->size : 0; }
    std::string_view view() const noexcept { return {str(), pcount()}; }

  private:
    /** Stands before the bytes. */
    struct Block {
        std::size_t size;
        std::size_t capacity;
        char* Bytes() noexcept { return reinterpret_cast<char*>(this + 1); }
    };

    void Resize(std::size_t capacity);
    void SetSize(std::size_t size) noexcept;

    Block* m_block = nullptr;
};
