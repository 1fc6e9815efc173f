#include "core/repository/savestate.h"

namespace qv {

namespace {

/** Few new ids are asked for one by one, so that a small save costs the same however long the past is; many, all together. */
constexpr std::size_t MOST_ASKED_ONE_BY_ONE = 200;

}  // namespace

SaveState::SaveState(StoreSession& session)
    : m_session(session), m_attributes(Schema::Get().rowTables().size()), m_row(new IOHashParam), m_history(new IOHashParam) {}

void SaveState::Start(std::int64_t project, std::int64_t base) {
    m_project = project;
    m_base = base;
    m_ids.Clear();
    m_rows.clear();
    m_rows.resize(Schema::Get().rowTables().size());
    m_ended.clear();
    m_ended.resize(Schema::Get().rowTables().size());
    m_endedAsked.assign(Schema::Get().rowTables().size(), 0);
    m_order.reset();
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
            m_ids.AddRow(table, rows->Row(index), rowcodec::Id(rows->Row(index)));
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
    m_row->clear();
    m_history->clear();
    object.getAttributes(*m_row, *m_history);
    return Attributes(table).Read(*m_row);
}

}  // namespace qv
