#pragma once

#include <array>
#include <cstddef>

#include <xercesc/framework/MemoryManager.hpp>

namespace qv {

/**
 * The memory of one reader. Blocks are used again, since a short document costs little more than its allocations. A lack of
 * memory is a plain std::bad_alloc; the XML library loses blocks on the way of an exception through its constructors, and they
 * are freed with this.
 */
class ReaderMemory final : public xercesc::MemoryManager {
  public:
    ReaderMemory() noexcept;
    ~ReaderMemory() override;
    /** No exception of the library leaves the reader. */
    xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }
    void* allocate(XMLSize_t size) override;
    void deallocate(void* memory) override;

  private:
    /** Stands before the memory. All blocks in use hang in one ring, the idle ones in a list for their size. */
    struct alignas(std::max_align_t) Block {
        Block* next;
        Block* previous;
        std::size_t sizeClass;
    };
    /** Blocks of class n have 2^n bytes; larger ones than the last class are not kept. */
    static constexpr std::size_t CLASSES = 21;

    Block m_used;
    std::array<Block*, CLASSES> m_idle{};
};

}  // namespace qv
