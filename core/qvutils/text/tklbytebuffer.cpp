#include "core/qvutils/text/tklbytebuffer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <stdexcept>
#include <utility>

TklByteBuffer::TklByteBuffer(std::size_t, std::size_t) noexcept {}

TklByteBuffer::TklByteBuffer(const TklByteBuffer& other) {
    *this << other;
}

TklByteBuffer& TklByteBuffer::operator=(const TklByteBuffer& other) {
    if (this == &other) return *this;
    reset();
    return *this << other;
}

TklByteBuffer& TklByteBuffer::operator=(TklByteBuffer&& other) noexcept {
    std::swap(m_block, other.m_block);
    return *this;
}

TklByteBuffer::~TklByteBuffer() {
    std::free(m_block);
}

void TklByteBuffer::Resize(std::size_t capacity) {
    const bool fresh = m_block == nullptr;
    void* const block = std::realloc(m_block, sizeof(Block) + capacity + 1);
    if (!block) throw std::bad_alloc();
    m_block = static_cast<Block*>(block);
    m_block->capacity = capacity;
    if (fresh) SetSize(0);
}

void TklByteBuffer::SetSize(std::size_t size) noexcept {
    m_block->size = size;
    m_block->Bytes()[size] = '\0';
}

void TklByteBuffer::appendChars(const char* bytes, std::size_t length) {
    if (length == 0) return;
    const std::size_t old = pcount();
    if (length > SIZE_MAX / 4 - old) throw std::length_error("a byte buffer cannot be that long");
    const char* const own = str();
    const bool inside = std::greater_equal<>()(bytes, own) && std::less_equal<>()(bytes, own + old);
    const std::size_t place = inside ? static_cast<std::size_t>(bytes - own) : 0;
    const std::size_t capacity = m_block ? m_block->capacity : 0;
    if (!m_block || old + length > capacity) Resize(std::max(old + length, capacity + capacity / 2));
    std::memmove(m_block->Bytes() + old, inside ? m_block->Bytes() + place : bytes, length);
    SetSize(old + length);
}

void TklByteBuffer::reset() noexcept {
    if (m_block) SetSize(0);
}

void TklByteBuffer::reserve(std::size_t size) {
    if (size > SIZE_MAX / 4) throw std::length_error("a byte buffer cannot be that long");
    if (size > (m_block ? m_block->capacity : 0)) Resize(size);
}

void TklByteBuffer::setLength(std::size_t length) {
    const std::size_t old = pcount();
    if (length == old) return;
    reserve(length);
    if (length > old) std::memset(m_block->Bytes() + old, 0, length - old);
    SetSize(length);
}

void TklByteBuffer::shrink() {
    if (pcount() == 0)
        std::free(std::exchange(m_block, nullptr));
    else if (m_block->capacity > m_block->size)
        Resize(m_block->size);
}

TklByteBuffer& TklByteBuffer::operator<<(const char* text) {
    if (text) appendChars(text, std::strlen(text));
    return *this;
}

TklByteBuffer& TklByteBuffer::operator<<(const TklByteBuffer& other) {
    appendChars(other.str(), other.pcount());
    return *this;
}

TklByteBuffer& TklByteBuffer::operator<<(char byte) {
    appendChars(&byte, 1);
    return *this;
}
