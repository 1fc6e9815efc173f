#include "core/repository/storesession.h"

#include <algorithm>

namespace qv {

StoreSession::StoreSession(StoreBackend& backend)
    : m_schema(Schema::Get()), m_connection(backend.Connect()), m_tables(m_schema.rowTables().size()) {}

RowSource& StoreSession::Prepared(std::unique_ptr<RowSource>& slot, const Query& query) {
    if (!slot) {
        slot = m_connection->Prepare(query);
        ++m_counters.statementsPrepared;
    }
    return *slot;
}

RowChange& StoreSession::Prepared(std::unique_ptr<RowChange>& slot, const Change& change) {
    if (!slot) {
        slot = m_connection->Prepare(change);
        ++m_counters.statementsPrepared;
    }
    return *slot;
}

RowInsert& StoreSession::PreparedInsert(std::unique_ptr<RowInsert>& slot, const TableShape& table) {
    if (!slot) {
        slot = m_connection->PrepareInsert(table);
        ++m_counters.statementsPrepared;
    }
    return *slot;
}

std::vector<std::size_t> StoreSession::RowColumns(const RowTable& table) {
    std::vector<std::size_t> columns = {place::id, place::version};
    if (table.hasParent) columns.insert(columns.end(), {place::parentId, place::parentVersion});
    for (std::size_t cell = 0; cell < table.columns.size(); ++cell) columns.push_back(table.ShapePlace(cell));
    return columns;
}

ProjectEntry StoreSession::Entry(std::span<const Cell> row) {
    return {row[projecttable::project].number, std::string(row[projecttable::id].view), std::string(row[projecttable::name].view),
            row[projecttable::head].number};
}

std::vector<ProjectEntry> StoreSession::Projects() {
    using namespace projecttable;
    RowSource& source = Prepared(m_projects, {&m_schema.projects(), {project, id, name, head}, {}});
    std::vector<ProjectEntry> entries;
    Cell row[4];
    source.Start({});
    while (source.Next(row)) entries.push_back(Entry(row));
    return entries;
}

std::optional<ProjectEntry> StoreSession::Project(std::int64_t number) {
    using namespace projecttable;
    RowSource& source = Prepared(m_project, {&m_schema.projects(), {project, id, name, head}, {{project, Condition::equal}}});
    std::optional<ProjectEntry> entry;
    const Cell parameters[] = {Cell::Number(number)};
    Cell row[4];
    source.Start(parameters);
    while (source.Next(row)) entry = Entry(row);
    return entry;
}

Cell StoreSession::SavedAt(std::int64_t projectNo, std::int64_t revisionNo) {
    using namespace revisiontable;
    RowSource& source =
        Prepared(m_revision, {&m_schema.revisions(), {savedAt}, {{project, Condition::equal}, {revision, Condition::equal}}});
    const Cell parameters[] = {Cell::Number(projectNo), Cell::Number(revisionNo)};
    Cell moment, row[1];
    source.Start(parameters);
    while (source.Next(row)) moment = row[0];
    return moment;
}

void StoreSession::Take(const RowTable& table, RowSource& source, RowArena& arena, const std::function<void(const char*)>& take) {
    const std::size_t heads = table.hasParent ? 4 : 2;
    m_cells.assign(heads + table.columns.size(), {});
    while (source.Next(m_cells)) {
        RowHead head;
        head.id = m_cells[0].view;
        head.version = m_cells[1].number;
        if (table.hasParent) {
            head.parentId = m_cells[2].view;
            head.parentVersion = m_cells[3].number;
        }
        take(rowcodec::Encode(arena, table, head, std::span<const Cell>(m_cells).subspan(heads)));
        ++m_counters.rowsRead;
    }
}

void StoreSession::FetchRows(const RowTable& table, std::int64_t project, std::int64_t revision, RowArena& arena,
                             const std::function<void(const char*)>& take) {
    RowSource& source =
        Prepared(Of(table).standing,
                 {&table.shape,
                  RowColumns(table),
                  {{place::project, Condition::equal}, {place::first, Condition::atMost}, {place::end, Condition::nullOrAbove}}});
    const Cell parameters[] = {Cell::Number(project), Cell::Number(revision), Cell::Number(revision)};
    source.Start(parameters);
    Take(table, source, arena, take);
}

RowSource& StoreSession::EndedRows(const RowTable& table, std::int64_t project) {
    RowSource& source = Prepared(Of(table).ended,
                                 {&table.shape, RowColumns(table), {{place::project, Condition::equal}, {place::end, Condition::notNull}}});
    const Cell parameters[] = {Cell::Number(project)};
    source.Start(parameters);
    return source;
}

void StoreSession::FetchEndedRows(const RowTable& table, std::int64_t project, RowArena& arena,
                                  const std::function<void(const char*)>& take) {
    Take(table, EndedRows(table, project), arena, take);
}

std::string StoreSession::EndedKey(const RowTable& table, const RowHead& head) {
    if (!table.catalogue->idWithinParent) return std::string(head.id);
    return std::string(head.parentId) + '\0' + std::string(head.id);
}

std::unordered_map<std::string, std::int64_t> StoreSession::FetchEndedVersions(const RowTable& table, std::int64_t project) {
    std::unordered_map<std::string, std::int64_t> versions;
    RowSource& source = EndedRows(table, project);
    m_cells.assign(RowColumns(table).size(), {});
    while (source.Next(m_cells)) {
        const RowHead head{m_cells[0].view, 0, table.hasParent ? m_cells[2].view : std::string_view(), 0};
        std::int64_t& last = versions[EndedKey(table, head)];
        last = std::max(last, m_cells[1].number);
        ++m_counters.rowsRead;
    }
    return versions;
}

void StoreSession::FetchOrders(std::int64_t projectNo, std::int64_t revision,
                               const std::function<void(std::string_view, std::string_view, std::int64_t, std::string_view)>& take) {
    using namespace ordertable;
    RowSource& source = Prepared(m_orders, {&m_schema.orders(),
                                            {parent, ordertable::table, first, ids},
                                            {{project, Condition::equal}, {first, Condition::atMost}, {end, Condition::nullOrAbove}}});
    const Cell parameters[] = {Cell::Number(projectNo), Cell::Number(revision), Cell::Number(revision)};
    Cell row[4];
    source.Start(parameters);
    while (source.Next(row)) {
        take(row[0].view, row[1].view, row[2].number, row[3].view);
        ++m_counters.rowsRead;
    }
}

void StoreSession::InsertRow(const RowTable& table, std::int64_t project, std::int64_t revision, const char* row) {
    m_cells.assign(table.shape.columns.size(), {});
    const RowHead head = rowcodec::Head(table, row);
    m_cells[place::project] = Cell::Number(project);
    m_cells[place::id] = Cell::Text(head.id);
    m_cells[place::version] = Cell::Number(head.version);
    m_cells[place::first] = Cell::Number(revision);
    if (table.hasParent) {
        m_cells[place::parentId] = Cell::Text(head.parentId);
        m_cells[place::parentVersion] = Cell::Number(head.parentVersion);
    }
    rowcodec::Cells(table, row, std::span(m_cells).subspan(table.ShapePlace(0)));
    PreparedInsert(Of(table).insert, table.shape).Add(m_cells);
    ++m_counters.rowsWritten;
}

void StoreSession::FinishRows(const RowTable& table) {
    if (Of(table).insert) Of(table).insert->Finish();
    if (Of(table).end) Of(table).end->Finish();
}

void StoreSession::EndRow(const RowTable& table, std::int64_t project, std::int64_t revision, const RowHead& key) {
    Change change{&table.shape, {place::end}, {}};
    for (const std::size_t part : table.shape.key) change.where.push_back({part, Condition::equal});
    RowChange& end = Prepared(Of(table).end, change);
    std::vector<Cell> parameters = {Cell::Number(revision)};
    for (const std::size_t part : table.shape.key) {
        switch (part) {
        case place::project: parameters.push_back(Cell::Number(project)); break;
        case place::id: parameters.push_back(Cell::Text(key.id)); break;
        case place::version: parameters.push_back(Cell::Number(key.version)); break;
        default: parameters.push_back(Cell::Text(key.parentId)); break;
        }
    }
    end.Add(parameters);
    ++m_counters.rowsEnded;
}

void StoreSession::AddOne(std::unique_ptr<RowInsert>& slot, const TableShape& table, std::initializer_list<Cell> row) {
    RowInsert& insert = PreparedInsert(slot, table);
    insert.Add(std::span<const Cell>(row.begin(), row.size()));
    insert.Finish();
    ++m_counters.rowsWritten;
}

void StoreSession::InsertOrder(std::int64_t project, std::string_view parent, std::string_view table, std::int64_t revision,
                               std::string_view ids) {
    const Cell row[] = {Cell::Number(project), Cell::Text(parent), Cell::Text(table), Cell::Number(revision), Cell{}, Cell::Text(ids)};
    PreparedInsert(m_insertOrder, m_schema.orders()).Add(row);
    ++m_counters.rowsWritten;
}

void StoreSession::EndOrder(std::int64_t projectNo, std::string_view parentId, std::string_view tableName, std::int64_t firstRevision,
                            std::int64_t revision) {
    using namespace ordertable;
    Change change{&m_schema.orders(), {end}, {}};
    for (const std::size_t part : m_schema.orders().key) change.where.push_back({part, Condition::equal});
    const Cell parameters[] = {Cell::Number(revision), Cell::Number(projectNo), Cell::Text(parentId), Cell::Text(tableName),
                               Cell::Number(firstRevision)};
    Prepared(m_endOrder, change).Add(parameters);
    ++m_counters.rowsEnded;
}

void StoreSession::FinishOrders() {
    if (m_insertOrder) m_insertOrder->Finish();
    if (m_endOrder) m_endOrder->Finish();
}

void StoreSession::InsertProject(const ProjectEntry& entry) {
    AddOne(m_insertProject, m_schema.projects(),
           {Cell::Number(entry.number), Cell::Text(entry.id), Cell::Text(entry.name), Cell::Number(entry.head)});
}

void StoreSession::LockRegistry() {
    using namespace storetable;
    RowChange& touch = Prepared(m_lockRegistry, {&m_schema.store(), {name}, {{name, Condition::equal}}});
    const Cell parameters[] = {Cell::Text(STORE_FORMAT), Cell::Text(STORE_FORMAT)};
    if (touch.Run(parameters) != 1) throw StoreError("The repository does not tell its format.");
}

bool StoreSession::AdvanceHead(std::int64_t projectNo, std::int64_t expected, std::int64_t next) {
    using namespace projecttable;
    RowChange& advance = Prepared(m_advanceHead, {&m_schema.projects(), {head}, {{project, Condition::equal}, {head, Condition::equal}}});
    const Cell parameters[] = {Cell::Number(next), Cell::Number(projectNo), Cell::Number(expected)};
    return advance.Run(parameters) == 1;
}

void StoreSession::NameProject(std::int64_t projectNo, const std::string& projectId, const std::string& projectName) {
    using namespace projecttable;
    RowChange& change = Prepared(m_nameProject, {&m_schema.projects(), {id, name}, {{project, Condition::equal}}});
    const Cell parameters[] = {Cell::Text(projectId), Cell::Text(projectName), Cell::Number(projectNo)};
    change.Run(parameters);
}

void StoreSession::InsertRevision(std::int64_t project, std::int64_t revision, std::int64_t moment) {
    AddOne(m_insertRevision, m_schema.revisions(), {Cell::Number(project), Cell::Number(revision), Cell::Number(moment)});
}

}  // namespace qv
