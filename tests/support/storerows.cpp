#include "tests/support/storerows.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

std::string Told(const qv::Cell& cell) {
    switch (cell.kind) {
    case qv::Cell::integer: return std::to_string(cell.number);
    case qv::Cell::text: return "'" + std::string(cell.view) + "'";
    case qv::Cell::null: break;
    }
    return "-";
}

Lines RowsOf(qv::StoreConnection& connection, const qv::TableShape& shape, const std::string& hidden) {
    std::vector<std::size_t> columns(shape.columns.size());
    std::iota(columns.begin(), columns.end(), 0);
    const auto source = connection.Prepare(qv::Query{&shape, columns, {}});
    source->Start({});
    std::vector<qv::Cell> row(columns.size());
    Lines lines;
    while (source->Next(row)) {
        std::string line;
        for (std::size_t at = 0; at < row.size(); ++at)
            line += (at ? " " : "  ") + shape.columns[at].name + "=" + (shape.columns[at].name == hidden ? "*" : Told(row[at]));
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

std::string AllRows(qv::StoreBackend& backend, const StoreTables& tables, const std::string& hidden) {
    const auto connection = backend.Connect();
    std::string text;
    for (const qv::TableShape& shape : tables) {
        text += shape.name + "\n";
        for (const std::string& line : RowsOf(*connection, shape, hidden)) text += line + "\n";
    }
    return text;
}

std::size_t ColumnOf(const qv::TableShape& shape, std::string_view name) {
    std::size_t column = 0;
    while (shape.columns.at(column).name != name) ++column;
    return column;
}

constexpr std::size_t ID_LENGTH = 36;

bool IsFreshId(std::string_view text, std::size_t at) {
    if (at + ID_LENGTH > text.size() || text[at + 8] != '-' || text[at + 13] != '-' || text[at + 18] != '-' || text[at + 23] != '-')
        return false;
    return text.find_first_not_of("0123456789abcdef-", at) >= at + ID_LENGTH;
}

}  // namespace

std::string RowsOf(qv::StoreBackend& backend, const StoreTables& tables) {
    return AllRows(backend, tables, "");
}

std::string RowsButForTimes(qv::StoreBackend& backend, const StoreTables& tables) {
    const std::string text = AllRows(backend, tables, "SAVED_AT");
    // fresh ids grow with time, so that their rank tells which of them is which
    std::map<std::string_view, std::size_t> ranks;
    for (std::size_t at = 0; at < text.size(); ++at)
        if (IsFreshId(text, at)) ranks.emplace(std::string_view(text).substr(at, ID_LENGTH), 0);
    std::size_t rank = 0;
    for (auto& entry : ranks) entry.second = ++rank;
    std::string told;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (!IsFreshId(text, at)) {
            told += text[at];
            continue;
        }
        told += "fresh" + std::to_string(ranks[std::string_view(text).substr(at, ID_LENGTH)]);
        at += ID_LENGTH - 1;
    }
    return told;
}

void SetInRows(qv::StoreBackend& backend, const StoreTables& tables, std::string_view table, std::string_view column, const qv::Cell& value,
               std::string_view where, std::string_view text) {
    const auto found = std::find_if(tables.begin(), tables.end(), [&](const qv::TableShape& shape) { return shape.name == table; });
    const qv::TableShape& shape = *found;
    const auto connection = backend.Connect();
    connection->Begin();
    {
        std::vector<qv::Condition> conditions;
        std::vector<qv::Cell> parameters = {value};
        if (!where.empty()) {
            conditions = {{ColumnOf(shape, where), qv::Condition::equal}};
            parameters.push_back(qv::Cell::Text(text));
        }
        connection->Prepare(qv::Change{&shape, {ColumnOf(shape, column)}, conditions})->Run(parameters);
    }
    connection->Commit();
}
