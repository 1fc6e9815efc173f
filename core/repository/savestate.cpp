#include "core/repository/savestate.h"

namespace qv {

namespace {

/** Few new ids are asked for one by one, so that a small save costs the same however long the past is; many, all together. */
constexpr std::size_t MOST_ASKED_ONE_BY_ONE = 200;

}  // namespace

SaveState::SaveState(StoreSession& session) : m_session(session), m_attributes(Schema::Get().rowTables().size()) {}

void SaveState::Start(std::int64_t project, std::int64_t base) {
    m_project = project;
    m_base = base;
    m_ids.Clear();
    m_rows.clear();
    m_rows.resize(Schema::Get().rowTables().size());
    ForgetEnded();
    m_order.reset();
    m_texts.Start(empty());
    DropChanges();
}

void SaveState::ForgetEnded() {
    m_ended.clear();
    m_ended.resize(Schema::Get().rowTables().size());
    m_endedAsked.assign(Schema::Get().rowTables().size(), 0);
}

void SaveState::NoteRow(IdEntry& entry, const char* row) {
    m_rowNotes.push_back({&entry, row});
    if (row) RowArena::Share(row);
    m_texts.NoteRow(entry.id);
}

void SaveState::NoteRecord(TableRows::Index at, const char* row) {
    m_recordNotes.push_back({at, row});
    if (row) RowArena::Share(row);
}

void SaveState::DropChanges() {
    for (const RowNote& note : m_rowNotes)
        if (note.row) RowArena::Release(note.row);
    for (const RecordNote& note : m_recordNotes)
        if (note.row) RowArena::Release(note.row);
    m_rowNotes.clear();
    m_recordNotes.clear();
    m_texts.DropNotes();
    m_orderChanged = m_unknown = false;
}

void SaveState::Settle(std::int64_t project, std::int64_t base) {
    if (m_unknown) return Start(project, base);
    try {
        ApplyChanges();
    } catch (const std::exception&) {
        return Start(project, base);  // the save stands all the same
    }
    m_project = project;
    m_base = base;
    for (IdEntry& entry : m_ids.entries()) {
        entry.object = nullptr;
        entry.fate = IdEntry::open;
    }
}

/** Each note goes as soon as its row is in other hands. */
void SaveState::ApplyChanges() {
    if (m_orderChanged) m_order.reset();
    m_texts.Settle();
    if (!m_rowNotes.empty() || !m_recordNotes.empty()) ForgetEnded();
    for (; !m_rowNotes.empty(); m_rowNotes.pop_front()) {
        const auto [entry, row] = m_rowNotes.front();
        TableRows& rows = Rows(*entry->table);
        if (!row) {
            m_ids.DropRow(*entry);
            rows.Put(entry->at, nullptr);
            continue;
        }
        m_rowNotes.front().row = nullptr;
        entry->at = rows.Put(entry->row ? entry->at : TableRows::NONE, row);
        entry->row = row;
        entry->id = rowcodec::Id(row);
    }
    for (; !m_recordNotes.empty(); m_recordNotes.pop_front()) {
        TableRows& rows = Rows(Schema::Get().remainInfo());
        rows.Put(m_recordNotes.front().at, std::exchange(m_recordNotes.front().row, nullptr));
    }
    DropChanges();
}

TableRows& SaveState::Rows(const RowTable& table) {
    std::unique_ptr<TableRows>& rows = m_rows[table.index];
    if (rows) return *rows;
    auto fetched = std::make_unique<TableRows>(table);
    fetched->Fetch(m_session, m_project, m_base);
    rows = std::move(fetched);
    if (table.catalogue->idWithinParent) return *rows;
    try {
        for (TableRows::Index index = 0; index < rows->size(); ++index)
            m_ids.AddRow(table, rows->Row(index), rowcodec::Id(rows->Row(index)), index);
    } catch (...) {
        Start(m_project, m_base);  // a book of some of the ids would make the other rows look new
        throw;
    }
    return *rows;
}

void SaveState::FetchAll() {
    for (const RowTable& table : Schema::Get().rowTables())
        if (&table != &Schema::Get().langText()) Rows(table);
}

const SiblingOrder& SaveState::Order() {
    if (!m_order) {
        auto order = std::make_unique<SiblingOrder>();
        if (!empty()) order->Fetch(m_session, m_project, m_base);
        m_order = std::move(order);
    }
    return *m_order;
}

std::int64_t SaveState::EndedVersion(const RowTable& table, const RowHead& key) {
    if (empty()) return 0;
    auto& ended = m_ended[table.index];
    if (!ended && m_endedAsked[table.index] < MOST_ASKED_ONE_BY_ONE) {
        ++m_endedAsked[table.index];
        return m_session.EndedVersion(table, m_project, key);
    }
    if (!ended) ended = std::make_unique<std::unordered_map<std::string, std::int64_t>>(m_session.FetchEndedVersions(table, m_project));
    const auto found = ended->find(StoreSession::EndedKey(table, key));
    return found == ended->end() ? 0 : found->second;
}

std::vector<const char*> SaveState::Below(const RowTable& table, std::string_view parent) {
    TableRows& rows = Rows(table);
    std::vector<TableRows::Index> below;
    rows.Below(parent, below);
    std::erase_if(below, [&](TableRows::Index index) { return !rows.Row(index); });
    std::vector<std::string_view> ids;
    for (const TableRows::Index index : below) ids.push_back(rowcodec::Id(rows.Row(index)));
    std::vector<std::size_t> places;
    Order().Arrange(Order().Find(parent, table.name()), ids, places);
    std::vector<const char*> found;
    for (const std::size_t at : places) found.push_back(rows.Row(below[at]));
    return found;
}

AttributeReader& SaveState::Attributes(const RowTable& table) {
    std::unique_ptr<AttributeReader>& reader = m_attributes[table.index];
    if (!reader) reader = std::make_unique<AttributeReader>(table);
    return *reader;
}

std::string SaveState::ReadAttributes(const RowTable& table, IOObject& object) {
    return Attributes(table).Read(object);
}

}  // namespace qv
