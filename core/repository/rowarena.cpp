#include "core/repository/rowarena.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace qv {

namespace {

constexpr std::size_t CHUNK = 64 * 1024;
/** Stands before each row: how far the row is from the start of its chunk. */
using Back = std::uint32_t;

}  // namespace

struct RowArena::Chunk {
    /** Rows not released, and one for the arena as long as it fills the chunk. */
    std::size_t users;
    std::size_t capacity;

    char* Bytes() { return reinterpret_cast<char*>(this); }
    void Drop() {
        if (--users == 0) std::free(this);
    }
};

char* RowArena::Reserve(std::size_t size) {
    const std::size_t need = sizeof(Back) + size;
    if (!m_chunk || m_used + need > m_chunk->capacity) {
        Leave();
        const std::size_t capacity = std::max(CHUNK, sizeof(Chunk) + need);
        void* const block = std::malloc(capacity);
        if (!block) throw std::bad_alloc();
        m_chunk = ::new (block) Chunk{1, capacity};
        m_used = sizeof(Chunk);
    }
    return m_chunk->Bytes() + m_used + sizeof(Back);
}

void RowArena::Commit(std::size_t size) {
    const auto back = static_cast<Back>(m_used + sizeof(Back));
    std::memcpy(m_chunk->Bytes() + m_used, &back, sizeof(Back));
    m_used += sizeof(Back) + size;
    m_size += size;
    ++m_chunk->users;
}

RowArena::Chunk* RowArena::ChunkOf(const char* row) {
    Back back;
    std::memcpy(&back, row - sizeof(Back), sizeof(Back));
    return reinterpret_cast<Chunk*>(const_cast<char*>(row) - back);
}

void RowArena::Share(const char* row) {
    ++ChunkOf(row)->users;
}

void RowArena::Release(const char* row) {
    ChunkOf(row)->Drop();
}

void RowArena::Leave() {
    if (m_chunk) m_chunk->Drop();
    m_chunk = nullptr;
}

}  // namespace qv
