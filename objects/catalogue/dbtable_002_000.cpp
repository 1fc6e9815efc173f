#include "objects/catalogue/dbtable_002_000.h"

#include <algorithm>

namespace schema_002_000 {

DBTable::~DBTable() {
    for (const QvSmartPtr<DBColumn>& column : m_columns) column->m_listings.tables.erase(this);
}

void DBTable::AddColumn(DBColumn* column) {
    if (!column) return;
    m_columns.emplace_back(column);
    ++column->m_listings.tables[this];
}

void DBTable::RemoveColumn(DBColumn* column) {
    const auto found =
        std::find_if(m_columns.begin(), m_columns.end(), [column](const QvSmartPtr<DBColumn>& listed) { return listed.get() == column; });
    if (found == m_columns.end()) return;
    Unlist(*column);
    m_columns.erase(found);
    m_index.Forget();
}

void DBTable::Unlist(DBColumn& column) {
    auto& tables = column.m_listings.tables;
    const auto own = tables.find(this);
    if (--own->second == 0) tables.erase(own);
}

DBColumn* DBTable::FindColumnById(const QvULString& id) const {
    const auto idAt = [this](std::size_t at) { return m_columns[at]->GetId().utf8(); };
    const long place = m_index.Find(id.utf8(), m_columns.size(), m_epoch, idAt, [this](std::size_t at) { return m_columns[at].get(); });
    return place < 0 ? nullptr : m_columns[static_cast<std::size_t>(place)].get();
}

void DBTable::NoteIdChange(const DBColumn& column, const QvULString& to) {
    if (column.GetId() == to) return;
    if (column.GetId().empty())
        m_epoch.NoteNamed(&column);
    else
        m_epoch.NoteRenamed();
}

}  // namespace schema_002_000
