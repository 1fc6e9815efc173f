#pragma once

#include <cstddef>
#include <utility>

namespace qv {

/**
 * Memory of rows in their compact form. Rows stand in chunks; a chunk goes when its last row is released, so what is read from a
 * store shrinks while the model that is made of it grows.
 */
class RowArena {
  public:
    RowArena() = default;
    RowArena(const RowArena&) = delete;
    RowArena& operator=(const RowArena&) = delete;
    /** Rows that were not released outlive their arena. */
    ~RowArena() { Leave(); }

    /** Space for a row of up to `size` bytes; `Commit` makes it one. */
    char* Reserve(std::size_t size);
    void Commit(std::size_t size);
    /** Bytes of the rows committed so far. */
    std::size_t size() const { return m_size; }

    /** One more user of a row, who releases it too. */
    static void Share(const char* row);
    static void Release(const char* row);

  private:
    struct Chunk;
    static Chunk* ChunkOf(const char* row);
    void Leave();

    Chunk* m_chunk = nullptr;
    std::size_t m_used = 0;
    std::size_t m_size = 0;
};

/** A use of a row, given back unless it is handed on: for the steps between that may raise. */
class RowUse {
  public:
    explicit RowUse(const char* row) noexcept : m_row(row) {}
    RowUse(const RowUse&) = delete;
    RowUse& operator=(const RowUse&) = delete;
    ~RowUse() {
        if (m_row) RowArena::Release(m_row);
    }
    const char* get() const noexcept { return m_row; }
    const char* HandOn() noexcept { return std::exchange(m_row, nullptr); }

  private:
    const char* m_row;
};

}  // namespace qv
