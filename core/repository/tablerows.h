#pragma once

#include <cstdint>
#include <vector>

#include "core/repository/storesession.h"

namespace qv {

/** The rows of one table that were fetched together, found by their parent. It owns those that were not taken. */
class TableRows {
  public:
    using Index = std::uint32_t;

    explicit TableRows(const RowTable& table) : m_table(table) {}
    TableRows(const TableRows&) = delete;
    TableRows& operator=(const TableRows&) = delete;
    ~TableRows();

    /** Fetches what stood in the revision; a revision of 0 has nothing. */
    void Fetch(StoreSession& session, std::int64_t project, std::int64_t revision);
    void FetchEnded(StoreSession& session, std::int64_t project);

    const RowTable& table() const { return m_table; }
    std::size_t size() const { return m_rows.size(); }
    /** Null when it was taken. */
    const char* Row(Index index) const { return Taker(index) ? nullptr : m_rows[index]; }
    /** Who took a row; 0 when nobody has. */
    std::uintptr_t Taker(Index index) const {
        const auto address = reinterpret_cast<std::uintptr_t>(m_rows[index]);
        return address < TAKERS ? address : 0;
    }
    /** Gives the row away, to a taker of 1 to 255. */
    const char* Take(Index index, std::uintptr_t taker);
    /**
     * Takes over a row and puts it in the place of another, or behind all when the index is NONE; null in place of the row leaves the
     * place as if the row there had been taken. Gives the place.
     */
    Index Put(Index index, const char* row);
    static constexpr Index NONE = UINT32_MAX;

    /** The rows below a parent, taken ones too, in the order in which they were fetched. `out` is cleared first. */
    void Below(std::string_view parent, std::vector<Index>& out);

  private:
    /** The row is the collection's from now on. */
    void Add(const char* row);
    static constexpr std::uintptr_t TAKERS = 256;

    /** Finds out, when somebody first asks, which rows hang below which parent. */
    void Group();

    /** The chain of the rows whose parents' ids have one hash: as good as one parent, but checked again where rows are handed out. */
    struct Head {
        std::uint64_t hash = 0;
        Index first = NONE;
    };
    const RowTable& m_table;
    std::vector<const char*> m_rows;
    std::vector<Index> m_next;
    std::vector<Head> m_heads;
    bool m_grouped = false;
};

}  // namespace qv
