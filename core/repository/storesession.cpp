#include "core/repository/storesession.h"

#include <algorithm>

namespace qv {

StoreSession::StoreSession(StoreBackend& backend)
    : m_schema(Schema::Get()), m_name(backend.Name()), m_connection(backend.Connect()), m_tables(m_schema.rowTables().size()) {}

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

Query StoreSession::RevisionQuery(std::vector<Condition> where) const {
    using namespace revisiontable;
    return {&m_schema.revisions(), {revision, savedAt, author, message, document, documentDepth, documentBytes}, std::move(where)};
}

std::vector<RevisionEntry> StoreSession::TakeRevisions(RowSource& source) {
    std::vector<RevisionEntry> entries;
    Cell row[7];
    while (source.Next(row)) {
        RevisionEntry entry{row[0].number, row[1], std::string(row[2].view), std::string(row[3].view), {}};
        if (row[4].kind != Cell::null) entry.document = DocumentRoot{std::string(row[4].view), row[5].number, row[6].number};
        entries.push_back(std::move(entry));
    }
    std::sort(entries.begin(), entries.end(), [](const RevisionEntry& a, const RevisionEntry& b) { return a.number < b.number; });
    return entries;
}

std::vector<RevisionEntry> StoreSession::Revisions(std::int64_t projectNo) {
    using namespace revisiontable;
    RowSource& source = Prepared(m_revisions, RevisionQuery({{project, Condition::equal}}));
    const Cell parameters[] = {Cell::Number(projectNo)};
    source.Start(parameters);
    return TakeRevisions(source);
}

std::optional<RevisionEntry> StoreSession::Revision(std::int64_t projectNo, std::int64_t revisionNo) {
    using namespace revisiontable;
    RowSource& source = Prepared(m_revision, RevisionQuery({{project, Condition::equal}, {revision, Condition::equal}}));
    const Cell parameters[] = {Cell::Number(projectNo), Cell::Number(revisionNo)};
    source.Start(parameters);
    std::vector<RevisionEntry> entries = TakeRevisions(source);
    return entries.empty() ? std::nullopt : std::optional(std::move(entries.front()));
}

std::optional<std::string> StoreSession::Piece(std::int64_t projectNo, const std::string& digestText) {
    using namespace piecetable;
    RowSource& source = Prepared(m_piece, {&m_schema.pieces(), {bytes}, {{project, Condition::equal}, {digest, Condition::equal}}});
    const Cell parameters[] = {Cell::Number(projectNo), Cell::Text(digestText)};
    std::optional<std::string> piece;
    Cell row[1];
    source.Start(parameters);
    while (source.Next(row)) piece = std::string(row[0].view);
    return piece;
}

void StoreSession::EachPiece(std::int64_t projectNo, const std::function<void(const std::string&)>& take) {
    using namespace piecetable;
    RowSource& source = Prepared(m_pieceDigests, {&m_schema.pieces(), {digest}, {{project, Condition::equal}}});
    const Cell parameters[] = {Cell::Number(projectNo)};
    std::string text;
    Cell row[1];
    source.Start(parameters);
    while (source.Next(row)) take(text.assign(row[0].view));
}

void StoreSession::RequireRevision(std::int64_t projectNo, std::int64_t revisionNo) {
    if (Revision(projectNo, revisionNo)) return;
    const std::optional<ProjectEntry> entry = Project(projectNo);
    const bool isNewest = entry && entry->head == revisionNo;
    throw StoreError("Revision " + std::to_string(revisionNo) +
                         " is not in the repository; a prune may have removed it while it was read. Ask for one that is there.",
                     isNewest ? StoreError::failed : StoreError::movedOn);
}

void StoreSession::CheckKinds(const RowTable& table, std::size_t heads) const {
    const auto check = [&](std::size_t at, bool takesText, std::string_view column) {
        if (m_cells[at].kind != Cell::null && (m_cells[at].kind == Cell::text) != takesText)
            throw StoreError("Column " + table.shape.name + "." + std::string(column) +
                             " holds a value of another kind, so it is damaged. Bring back a copy of the repository.");
    };
    const CatalogueTable& catalogue = *table.catalogue;
    const std::string_view names[] = {catalogue.id, catalogue.version, catalogue.parentId, catalogue.parentVersion};
    for (std::size_t at = 0; at < heads; ++at) check(at, at % 2 == 0, names[at]);
    for (std::size_t cell = 0; cell < table.columns.size(); ++cell)
        check(heads + cell, table.columns[cell]->kind == CellKind::text, table.columns[cell]->name);
}

const char* StoreSession::Encode(const RowTable& table, RowArena& arena) {
    const std::size_t heads = table.hasParent ? 4 : 2;
    CheckKinds(table, heads);
    RowHead head;
    head.id = m_cells[0].view;
    head.version = m_cells[1].number;
    if (table.hasParent) {
        head.parentId = m_cells[2].view;
        head.parentVersion = m_cells[3].number;
    }
    ++m_counters.rowsRead;
    return rowcodec::Encode(arena, table, head, std::span<const Cell>(m_cells).subspan(heads, table.columns.size()));
}

void StoreSession::Take(const RowTable& table, RowSource& source, RowArena& arena, const std::function<void(const char*)>& take) {
    m_cells.assign(RowColumns(table).size(), {});
    while (source.Next(m_cells)) take(Encode(table, arena));
}

void StoreSession::FetchWhere(const RowTable& table, std::vector<Condition> where, const std::vector<Cell>& parameters, RowArena& arena,
                              const std::function<void(const char*, std::int64_t, std::int64_t)>& take) {
    FetchWhereEach(table, std::move(where), {parameters}, arena, take);
}

void StoreSession::FetchWhereEach(const RowTable& table, std::vector<Condition> where, const std::vector<std::vector<Cell>>& parameters,
                                  RowArena& arena, const std::function<void(const char*, std::int64_t, std::int64_t)>& take) {
    std::vector<std::size_t> columns = RowColumns(table);
    columns.insert(columns.end(), {place::first, place::end});
    const auto source = m_connection->Prepare(Query{&table.shape, columns, std::move(where)});
    for (const std::vector<Cell>& set : parameters) {
        source->Start(set);
        m_cells.assign(columns.size(), {});
        while (source->Next(m_cells)) {
            const std::int64_t first = m_cells[columns.size() - 2].number, end = m_cells[columns.size() - 1].number;
            take(Encode(table, arena), first, end);
        }
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
    if (revision > 0) RequireRevision(project, revision);
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

std::int64_t StoreSession::EndedVersion(const RowTable& table, std::int64_t project, const RowHead& key) {
    std::vector<Condition> where = {{place::project, Condition::equal}, {place::id, Condition::equal}, {place::end, Condition::notNull}};
    std::vector<Cell> parameters = {Cell::Number(project), Cell::Text(key.id)};
    if (table.catalogue->idWithinParent) {
        where.insert(where.begin() + 1, {place::parentId, Condition::equal});
        parameters.insert(parameters.begin() + 1, Cell::Text(key.parentId));
    }
    RowSource& source = Prepared(Of(table).endedOfId, {&table.shape, {place::version}, std::move(where)});
    source.Start(parameters);
    std::int64_t last = 0;
    Cell row[1];
    while (source.Next(row)) last = std::max(last, row[0].number);
    return last;
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
    if (revision > 0) RequireRevision(projectNo, revision);
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

std::unordered_set<std::string> StoreSession::TextOwners(std::int64_t project) {
    RowSource& source = Prepared(m_textOwners, {&m_schema.langText().shape, {place::id}, {{place::project, Condition::equal}}});
    const Cell parameters[] = {Cell::Number(project)};
    std::unordered_set<std::string> owners;
    Cell row[1];
    source.Start(parameters);
    while (source.Next(row)) owners.emplace(row[0].view);
    return owners;
}

void StoreSession::EndTexts(std::int64_t project, std::int64_t revision, std::string_view id, std::int64_t version) {
    const Change change{&m_schema.langText().shape,
                        {place::end},
                        {{place::project, Condition::equal}, {place::id, Condition::equal}, {place::version, Condition::equal}}};
    const Cell parameters[] = {Cell::Number(revision), Cell::Number(project), Cell::Text(id), Cell::Number(version)};
    m_counters.rowsEnded += static_cast<long>(Prepared(m_endTexts, change).Run(parameters));
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
    if (touch.Run(parameters) != 1) throw StoreError("The repository does not tell its format, so it is damaged. Bring back a copy of it.");
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

void StoreSession::InsertRevision(std::int64_t project, const RevisionEntry& entry) {
    const auto textOrNull = [](const std::string& text) { return text.empty() ? Cell{} : Cell::Text(text); };
    const bool documented = entry.document.has_value();
    AddOne(m_insertRevision, m_schema.revisions(),
           {Cell::Number(project), Cell::Number(entry.number), entry.savedAt, textOrNull(entry.author), textOrNull(entry.message),
            documented ? Cell::Text(entry.document->digest) : Cell{}, documented ? Cell::Number(entry.document->depth) : Cell{},
            documented ? Cell::Number(entry.document->bytes) : Cell{}});
}

void StoreSession::InsertPiece(std::int64_t project, const DocumentRecorder::Piece& piece) {
    const Cell row[] = {Cell::Number(project), Cell::Text(piece.digest), Cell::Number(static_cast<std::int64_t>(piece.bytes)),
                        Cell::Text(piece.packed)};
    PreparedInsert(m_insertPiece, m_schema.pieces()).Add(row);
    ++m_counters.rowsWritten;
}

void StoreSession::FinishPieces() {
    if (m_insertPiece) m_insertPiece->Finish();
}

}  // namespace qv
