#include "core/repository/sqlite/sqlitesql.h"

namespace qv::sqlite {

namespace {

std::string Quoted(std::string_view name) {
    return '"' + std::string(name) + '"';
}

const char* TypeName(ColumnType type) {
    switch (type) {
    case ColumnType::integer: return "INTEGER";
    case ColumnType::flag: return "BOOLEAN";
    case ColumnType::moment: return "TIMESTAMP";
    case ColumnType::bytes: return "BLOB";
    case ColumnType::text: break;
    }
    return "TEXT";
}

template <class Items, class Print>
std::string Joined(const Items& items, const char* separator, Print&& print) {
    std::string text;
    for (const auto& item : items) {
        if (!text.empty()) text += separator;
        text += print(item);
    }
    return text;
}

std::string ColumnList(const TableShape& table, const std::vector<std::size_t>& columns) {
    return Joined(columns, ", ", [&](std::size_t column) { return Quoted(table.columns[column].name); });
}

std::string Where(const TableShape& table, const std::vector<Condition>& conditions, std::size_t parameters) {
    if (conditions.empty()) return "";
    return " WHERE " + Joined(conditions, " AND ", [&](const Condition& condition) -> std::string {
               const std::string name = Quoted(table.columns[condition.column].name);
               if (condition.test == Condition::notNull) return name + " IS NOT NULL";
               const std::string parameter = "?" + std::to_string(++parameters);
               switch (condition.test) {
               case Condition::atMost: return name + " <= " + parameter;
               case Condition::above: return name + " > " + parameter;
               case Condition::nullOrAbove: return "(" + name + " IS NULL OR " + name + " > " + parameter + ")";
               default: return name + " = " + parameter;
               }
           });
}

std::string Definition(const TableShape::Column& column) {
    return Quoted(column.name) + " " + TypeName(column.type) + (column.required ? " NOT NULL" : "");
}

}  // namespace

std::string CreateTable(const TableShape& table) {
    const std::string columns = Joined(table.columns, ", ", Definition);
    // without a row number of its own a table is its primary key: a project's rows stand together
    return "CREATE TABLE " + Quoted(table.name) + " (" + columns + ", PRIMARY KEY (" + ColumnList(table, table.key) + ")) WITHOUT ROWID";
}

std::string AddColumn(const TableShape& table, const TableShape::Column& column) {
    return "ALTER TABLE " + Quoted(table.name) + " ADD COLUMN " + Definition(column);
}

std::string CreateView(const ViewShape& view) {
    const std::string type =
        view.type.empty() ? "" : " AND " + Quoted(view.table->columns[view.typeColumn].name) + " = '" + view.type + "'";
    return "CREATE VIEW " + Quoted(view.name) + " AS SELECT " + ColumnList(*view.table, view.columns) + " FROM " +
           Quoted(view.table->name) + " WHERE " + Quoted(view.table->columns[view.isNull].name) + " IS NULL" + type;
}

std::string Select(const Query& query) {
    return "SELECT " + ColumnList(*query.table, query.columns) + " FROM " + Quoted(query.table->name) + Where(*query.table, query.where, 0);
}

std::string Update(const Change& change) {
    std::size_t parameters = 0;
    const std::string set = Joined(change.set, ", ", [&](std::size_t column) {
        return Quoted(change.table->columns[column].name) + " = ?" + std::to_string(++parameters);
    });
    return "UPDATE " + Quoted(change.table->name) + " SET " + set + Where(*change.table, change.where, parameters);
}

std::string Delete(const Removal& removal) {
    return "DELETE FROM " + Quoted(removal.table->name) + Where(*removal.table, removal.where, 0);
}

std::string Insert(const TableShape& table) {
    const std::string names = Joined(table.columns, ", ", [](const TableShape::Column& column) { return Quoted(column.name); });
    const std::string values = Joined(table.columns, ", ", [](const TableShape::Column&) { return "?"; });
    return std::string(table.replaces ? "INSERT OR REPLACE" : "INSERT") + " INTO " + Quoted(table.name) + " (" + names + ") VALUES (" +
           values + ")";
}

}  // namespace qv::sqlite
