#include "core/repository/ownerrecords.h"

#include <algorithm>

namespace qv {

namespace {

const RowTable& Table() {
    return Schema::Get().remainInfo();
}

std::size_t CellOfColumn(std::string_view name) {
    std::size_t cell = 0;
    while (Table().columns[cell]->name != name) ++cell;
    return cell;
}

std::string_view ElementId(const char* row) {
    static const std::size_t cell = CellOfColumn("ELEMENT_ID");
    return rowcodec::BodyCell(Table(), row, cell).view;
}

std::string_view ValueOf(const char* row) {
    static const std::size_t cell = CellOfColumn("VALUE");
    return rowcodec::BodyCell(Table(), row, cell).view;
}

}  // namespace

void OwnerRecords::Clear() {
    for (const Record& record : m_records) RowArena::Release(record.row);
    m_records.clear();
    m_loaded = false;
    m_lookedUp = SIZE_MAX;
}

void OwnerRecords::Load(SaveState& state, std::string_view owner) {
    if (m_loaded) return;
    m_loaded = true;
    if (state.empty()) return;
    TableRows& rows = state.Rows(Table());
    std::vector<TableRows::Index> below;
    rows.Below(owner, below);
    for (const TableRows::Index index : below) {
        const char* const row = rows.Row(index);
        if (!row) continue;
        const RowHead head = rowcodec::Head(Table(), row);
        m_records.push_back({std::string(head.id), head.version, head.parentVersion, row, index, 0});
        RowArena::Share(row);
    }
}

bool OwnerRecords::LookUp(std::string_view elementId, RemainingInfoEntry& entry) {
    m_lookedUp = SIZE_MAX;
    for (std::size_t at = 0; at < m_records.size(); ++at) {
        if (m_lookedUp != SIZE_MAX && m_records[m_lookedUp].uses <= m_records[at].uses) continue;
        if (ElementId(m_records[at].row) == elementId) m_lookedUp = at;
    }
    if (m_lookedUp == SIZE_MAX) return false;
    Record& found = m_records[m_lookedUp];
    ++found.uses;
    entry.version = found.version;
    entry.parentVersion = found.parentVersion;
    const std::string_view value = ValueOf(found.row);
    entry.value.assign(value.data(), static_cast<int>(value.size()));
    return true;
}

void OwnerRecords::Write(SaveState& state, RowWriter& writer, RowArena& arena, IOObject* owner) {
    AttributeReader& attributes = state.Attributes(Table());
    RowHead head = attributes.head;
    // a look-up that was answered with the record of another name was not about that one
    if (m_lookedUp != SIZE_MAX && m_records[m_lookedUp].name != head.id) --m_records[m_lookedUp].uses;
    m_lookedUp = SIZE_MAX;
    const auto known = std::find_if(m_records.begin(), m_records.end(), [&](const Record& record) { return record.name == head.id; });
    if (known == m_records.end()) {
        head.version = std::max(head.version, state.EndedVersion(Table(), head) + 1);
    } else {
        head.version = std::max(head.version, known->version + 1);
        writer.End(Table(), known->row);
    }
    const char* const row = rowcodec::Encode(arena, Table(), head, attributes.cells);
    RowUse use(row);
    if (known == m_records.end()) {
        m_records.push_back({std::string(head.id), head.version, head.parentVersion, row, TableRows::NONE, 1});
        state.NoteRecord(TableRows::NONE, row);
    } else {
        // a record that is written twice in one save has no place yet
        if (known->at == TableRows::NONE) state.NoteUnknown();
        state.NoteRecord(known->at, row);
        RowArena::Release(known->row);
        known->version = head.version;
        known->parentVersion = head.parentVersion;
        known->row = row;
        known->uses = std::max(known->uses, 1);
    }
    RowArena::Share(row);
    writer.Insert(Table(), use.HandOn(), owner);
}

void OwnerRecords::EndRest(SaveState& state, RowWriter& writer) {
    const std::span<const std::string_view> unread = UnreadRecords();
    for (const Record& record : m_records) {
        if (record.uses != 0 || std::find(unread.begin(), unread.end(), record.name) != unread.end()) continue;
        writer.End(Table(), record.row);
        state.NoteRecord(record.at, nullptr);
    }
}

}  // namespace qv
