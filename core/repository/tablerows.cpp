#include "core/repository/tablerows.h"

#include <bit>
#include <functional>

namespace qv {

namespace {

std::uint64_t HashOf(std::string_view text) {
    return std::hash<std::string_view>()(text);
}

}  // namespace

TableRows::~TableRows() {
    for (Index index = 0; index < m_rows.size(); ++index)
        if (!Taker(index)) RowArena::Release(m_rows[index]);
}

void TableRows::Fetch(StoreSession& session, std::int64_t project, std::int64_t revision) {
    RowArena arena;
    if (revision > 0) session.FetchRows(m_table, project, revision, arena, [this](const char* row) { Add(row); });
}

void TableRows::FetchEnded(StoreSession& session, std::int64_t project) {
    RowArena arena;
    session.FetchEndedRows(m_table, project, arena, [this](const char* row) { Add(row); });
}

void TableRows::Add(const char* row) {
    RowUse use(row);
    m_rows.push_back(row);
    use.HandOn();
}

const char* TableRows::Take(Index index, std::uintptr_t taker) {
    const char* const row = m_rows[index];
    m_rows[index] = reinterpret_cast<const char*>(taker);
    return row;
}

TableRows::Index TableRows::Put(Index index, const char* row) {
    if (index == NONE) {
        Add(row);
        m_grouped = false;
        return static_cast<Index>(m_rows.size() - 1);
    }
    const char* const old = m_rows[index];
    if (row) m_grouped = m_grouped && rowcodec::ParentId(m_table, row) == rowcodec::ParentId(m_table, old);
    m_rows[index] = row ? row : reinterpret_cast<const char*>(std::uintptr_t{1});
    RowArena::Release(old);
    return index;
}

void TableRows::Group() {
    m_grouped = true;
    if (m_rows.empty()) return;
    m_next.assign(m_rows.size(), NONE);
    m_heads.assign(std::bit_ceil(m_rows.size() + m_rows.size() / 2 + 1), {});  // never full: a search ends at a free place
    for (auto index = static_cast<Index>(m_rows.size()); index-- > 0;) {
        if (Taker(index)) continue;
        const std::uint64_t hash = HashOf(rowcodec::ParentId(m_table, m_rows[index]));
        std::size_t slot = hash & (m_heads.size() - 1);
        while (m_heads[slot].first != NONE && m_heads[slot].hash != hash) slot = (slot + 1) & (m_heads.size() - 1);
        m_next[index] = m_heads[slot].first;
        m_heads[slot] = {hash, index};
    }
}

void TableRows::Below(std::string_view parent, std::vector<Index>& out) {
    out.clear();
    if (!m_grouped) Group();
    if (m_rows.empty()) return;
    const std::uint64_t hash = HashOf(parent);
    std::size_t slot = hash & (m_heads.size() - 1);
    while (m_heads[slot].first != NONE && m_heads[slot].hash != hash) slot = (slot + 1) & (m_heads.size() - 1);
    for (Index index = m_heads[slot].first; index != NONE; index = m_next[index])
        if (Taker(index) || rowcodec::ParentId(m_table, m_rows[index]) == parent) out.push_back(index);
}

}  // namespace qv
