#include "core/repository/postgres/postgresrows.h"

#include <algorithm>
#include <cstdlib>

namespace qv::postgres {

namespace {

/** What is gathered before it goes out. */
constexpr std::size_t COPY_BYTES = 64 * 1024;
constexpr std::size_t GATHERED_BYTES = 4 * 1024 * 1024;
constexpr std::int64_t GATHERED_ROWS = 20'000;

/** The beginning of bulk rows in binary form: a signature, no flags, no extension. */
constexpr std::string_view COPY_HEAD("PGCOPY\n\377\r\n\0\0\0\0\0\0\0\0\0", 19);

const char* TypeName(ColumnType type) {
    switch (type) {
    case ColumnType::integer: return "BIGINT";
    case ColumnType::flag: return "BOOLEAN";
    case ColumnType::moment: return "TIMESTAMP";
    case ColumnType::bytes: return "BYTEA";
    case ColumnType::text: break;
    }
    return "TEXT";
}

/** Keys are ordered by their bytes, so that no locale of the server, or a newer one, can ever put them into disorder. */
constexpr SqlDialect POSTGRES = {'$', true, TypeName, " COLLATE \"C\"", ""};

constexpr SqlText SQL(POSTGRES);

/** "unnest($1::BIGINT[], ...)" for parameters that are arrays, one for each of the columns. */
std::string Unnested(const TableShape& table, const std::vector<std::size_t>& columns) {
    std::size_t parameter = 0;
    return "unnest(" +
           JoinedSql(
               columns, ", ",
               [&](std::size_t column) { return "$" + std::to_string(++parameter) + "::" + TypeName(table.columns[column].type) + "[]"; }) +
           ")";
}

std::vector<std::size_t> AllColumns(const TableShape& table) {
    std::vector<std::size_t> columns(table.columns.size());
    for (std::size_t at = 0; at < columns.size(); ++at) columns[at] = at;
    return columns;
}

std::string CopySql(const TableShape& table) {
    return "COPY " + SQL.Quoted(table.name) + " (" + SQL.ColumnList(table) + ") FROM STDIN (FORMAT binary)";
}

std::string ReplaceSql(const TableShape& table) {
    std::vector<std::size_t> others = AllColumns(table);
    std::erase_if(others, [&](std::size_t column) { return std::find(table.key.begin(), table.key.end(), column) != table.key.end(); });
    const std::string set = JoinedSql(others, ", ", [&](std::size_t column) {
        const std::string name = SQL.Quoted(table.columns[column].name);
        return name + " = excluded." + name;
    });
    return "INSERT INTO " + SQL.Quoted(table.name) + " (" + SQL.ColumnList(table) + ") SELECT * FROM " +
           Unnested(table, AllColumns(table)) + " ON CONFLICT (" + SQL.ColumnList(table, table.key) + ") DO UPDATE SET " + set;
}

std::vector<std::size_t> ParametersOf(const std::vector<std::size_t>& set, const std::vector<Condition>& where) {
    std::vector<std::size_t> columns = set;
    for (const Condition& condition : where)
        if (condition.test != Condition::notNull) columns.push_back(condition.column);
    return columns;
}

/** The change for many rows, its parameters being arrays; empty when its conditions are not all of the kind that finds one row. */
std::string GatheredUpdateSql(const Change& change) {
    const TableShape& table = *change.table;
    for (const Condition& condition : change.where)
        if (condition.test != Condition::equal) return "";
    const std::vector<std::size_t> parameters = ParametersOf(change.set, change.where);
    std::size_t place = 0;
    const std::string set = JoinedSql(
        change.set, ", ", [&](std::size_t column) { return SQL.Quoted(table.columns[column].name) + " = v.p" + std::to_string(place++); });
    const std::string where = JoinedSql(change.where, " AND ", [&](const Condition& condition) {
        return "t." + SQL.Quoted(table.columns[condition.column].name) + " = v.p" + std::to_string(place++);
    });
    std::size_t name = 0;
    return "UPDATE " + SQL.Quoted(table.name) + " AS t SET " + set + " FROM " + Unnested(table, parameters) + " AS v (" +
           JoinedSql(parameters, ", ", [&](std::size_t) { return "p" + std::to_string(name++); }) + ") WHERE " + where;
}

std::vector<WireArray> ArraysFor(const TableShape& table, const std::vector<std::size_t>& columns) {
    std::vector<WireArray> arrays;
    for (const std::size_t column : columns) arrays.emplace_back(table.columns[column].type);
    return arrays;
}

WireParameters Gathered(std::vector<WireArray>& arrays, const TableShape& table, const std::vector<std::size_t>& columns) {
    WireParameters parameters;
    for (std::size_t at = 0; at < arrays.size(); ++at) parameters.AddArray(table.columns[columns[at]].type, arrays[at].Bytes());
    return parameters;
}

WireParameters Bound(std::span<const Cell> cells, const TableShape& table, const std::vector<std::size_t>& columns) {
    if (cells.size() != columns.size()) throw StoreError("A statement was given another number of parameters than it has.");
    WireParameters parameters;
    for (std::size_t at = 0; at < cells.size(); ++at) parameters.Add(cells[at], table.columns[columns[at]]);
    return parameters;
}

std::int64_t Affected(const Result& result) {
    return std::strtoll(PQcmdTuples(result.get()), nullptr, 10);
}

}  // namespace

const SqlText& Sql() {
    return SQL;
}

Source::Source(Link& link, const Query& query)
    : m_link(link), m_sql(SQL.Select(query)), m_table(*query.table), m_parameters(ParametersOf({}, query.where)) {
    for (const std::size_t column : query.columns) m_types.push_back(m_table.columns[column].type);
}

void Source::Start(std::span<const Cell> parameters) {
    m_link.Abandon(*this);
    m_kept.clear();
    m_row.reset();
    m_asking = false;
    m_link.Ask(m_sql, Bound(parameters, m_table, m_parameters), *this);
    m_asking = true;
}

void Source::Settle() {
    while (Result row = m_link.NextRow()) m_kept.push_back(std::move(row));
    m_asking = false;
}

bool Source::Next(std::span<Cell> row) {
    if (m_asking) {
        m_row = m_link.NextRow();
        m_asking = m_row != nullptr;
    } else if (!m_kept.empty()) {
        m_row = std::move(m_kept.front());
        m_kept.pop_front();
    } else {
        m_row.reset();
    }
    const PGresult* const result = m_row.get();
    if (!result) return false;
    for (std::size_t at = 0; at < m_types.size(); ++at) {
        const auto column = static_cast<int>(at);
        const int length = PQgetlength(result, 0, column);
        row[at] = length == 0 && PQgetisnull(result, 0, column) ? Cell() : GetCell(PQgetvalue(result, 0, column), length, m_types[at]);
    }
    return true;
}

ChangeRows::ChangeRows(Link& link, const Change& change)
    : m_link(link),
      m_sql(SQL.Update(change)),
      m_gatheredSql(GatheredUpdateSql(change)),
      m_table(*change.table),
      m_parameters(ParametersOf(change.set, change.where)),
      m_gathered(ArraysFor(m_table, m_parameters)) {}

ChangeRows::ChangeRows(Link& link, const Removal& removal)
    : m_link(link), m_sql(SQL.Delete(removal)), m_table(*removal.table), m_parameters(ParametersOf({}, removal.where)) {}

std::int64_t ChangeRows::Run(std::span<const Cell> cells) {
    const WireParameters parameters = Bound(cells, m_table, m_parameters);
    return Affected(m_link.Run(m_sql, &parameters));
}

void ChangeRows::Add(std::span<const Cell> cells) {
    if (m_gatheredSql.empty() || cells.size() != m_parameters.size()) return RowChange::Add(cells);
    if (m_transaction != m_link.Transaction()) Clear();
    for (std::size_t at = 0; at < cells.size(); ++at) m_gathered[at].Add(cells[at], m_table.columns[m_parameters[at]]);
    if (++m_count == GATHERED_ROWS) Finish();
}

void ChangeRows::Finish() {
    if (m_count == 0 || m_transaction != m_link.Transaction()) return;
    const WireParameters parameters = Gathered(m_gathered, m_table, m_parameters);
    const std::int64_t missing = m_count - Affected(m_link.Run(m_gatheredSql, &parameters));
    Clear();
    if (missing != 0) throw StoreError("The row to change is not in the store.");
}

void ChangeRows::Clear() {
    m_transaction = m_link.Transaction();
    m_count = 0;
    for (WireArray& array : m_gathered) array.Clear();
}

CopyRows::CopyRows(Link& link, const TableShape& table) : m_link(link), m_sql(CopySql(table)), m_table(table) {}

void CopyRows::Add(std::span<const Cell> row) {
    if (m_transaction != m_link.Transaction()) m_copying = false;
    if (!m_copying) {
        m_transaction = m_link.Transaction();
        m_link.BeginCopy(m_sql, *this);
        m_copying = true;
        m_buffer = COPY_HEAD;
    }
    PutInt16(m_buffer, static_cast<std::int16_t>(row.size()));
    for (std::size_t at = 0; at < row.size(); ++at) PutCell(m_buffer, row[at], m_table.columns[at]);
    if (m_buffer.size() < COPY_BYTES) return;
    m_link.SendCopy(m_buffer);
    m_buffer.clear();
}

void CopyRows::Settle() {
    if (!m_copying || m_transaction != m_link.Transaction()) return;
    m_copying = false;
    PutInt16(m_buffer, -1);
    m_link.SendCopy(m_buffer);
    m_link.EndCopy();
}

void CopyRows::Finish() {
    Settle();
}

ReplaceRows::ReplaceRows(Link& link, const TableShape& table)
    : m_link(link), m_sql(ReplaceSql(table)), m_table(table), m_columns(ArraysFor(table, AllColumns(table))) {}

void ReplaceRows::Add(std::span<const Cell> row) {
    if (m_transaction != m_link.Transaction()) Clear();
    m_key.clear();
    for (const std::size_t part : m_table.key) PutCell(m_key, row[part], m_table.columns[part]);
    if (m_bytes > GATHERED_BYTES || m_keys.contains(m_key)) Finish();
    m_keys.insert(m_key);
    for (std::size_t at = 0; at < row.size(); ++at) {
        m_columns[at].Add(row[at], m_table.columns[at]);
        m_bytes += row[at].view.size() + sizeof(std::int64_t);
    }
}

void ReplaceRows::Finish() {
    if (m_keys.empty() || m_transaction != m_link.Transaction()) return;
    const WireParameters parameters = Gathered(m_columns, m_table, AllColumns(m_table));
    m_link.Run(m_sql, &parameters);
    Clear();
}

void ReplaceRows::Clear() {
    m_transaction = m_link.Transaction();
    m_keys.clear();
    m_bytes = 0;
    for (WireArray& array : m_columns) array.Clear();
}

}  // namespace qv::postgres
