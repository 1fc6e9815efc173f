#include "core/qvutils/xml/readermemory.h"

#include <bit>
#include <new>

namespace qv {

ReaderMemory::ReaderMemory() noexcept : m_used{&m_used, &m_used, 0} {}

ReaderMemory::~ReaderMemory() {
    while (m_used.next != &m_used) {
        Block* const block = m_used.next;
        m_used.next = block->next;
        ::operator delete(block);
    }
    for (Block* block : m_idle)
        while (block) {
            Block* const next = block->next;
            ::operator delete(block);
            block = next;
        }
}

void* ReaderMemory::allocate(XMLSize_t size) {
    const std::size_t sizeClass = static_cast<std::size_t>(std::bit_width(size > 16 ? size - 1 : 15));
    Block* block = nullptr;
    if (sizeClass < CLASSES && m_idle[sizeClass]) {
        block = m_idle[sizeClass];
        m_idle[sizeClass] = block->next;
    } else {
        if (size > SIZE_MAX / 2) throw std::bad_alloc();
        const std::size_t room = sizeClass < CLASSES ? std::size_t{1} << sizeClass : size;
        block = static_cast<Block*>(::operator new(sizeof(Block) + room));
    }
    *block = {m_used.next, &m_used, sizeClass};
    m_used.next->previous = block;
    m_used.next = block;
    return block + 1;
}

void ReaderMemory::deallocate(void* memory) {
    if (!memory) return;
    Block* const block = static_cast<Block*>(memory) - 1;
    block->previous->next = block->next;
    block->next->previous = block->previous;
    if (block->sizeClass < CLASSES) {
        block->next = m_idle[block->sizeClass];
        m_idle[block->sizeClass] = block;
    } else {
        ::operator delete(block);
    }
}

}  // namespace qv
