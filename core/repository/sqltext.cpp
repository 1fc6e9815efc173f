#include "core/repository/sqltext.h"

#include <algorithm>

namespace qv {

std::string SqlText::Quoted(std::string_view name) const {
    std::string text(name);
    if (m_dialect.smallNames)
        for (char& character : text)
            if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    return '"' + text + '"';
}

std::string SqlText::ColumnList(const TableShape& table) const {
    return JoinedSql(table.columns, ", ", [this](const TableShape::Column& column) { return Quoted(column.name); });
}

std::string SqlText::ColumnList(const TableShape& table, const std::vector<std::size_t>& columns) const {
    return JoinedSql(columns, ", ", [&](std::size_t column) { return Quoted(table.columns[column].name); });
}

std::string SqlText::Definition(const TableShape& table, std::size_t place) const {
    const TableShape::Column& column = table.columns[place];
    const bool inKey = std::find(table.key.begin(), table.key.end(), place) != table.key.end();
    return Quoted(column.name) + " " + m_dialect.typeName(column.type) +
           (inKey && column.type == ColumnType::text ? m_dialect.keyText : "") + (column.required ? " NOT NULL" : "");
}

std::string SqlText::CreateTable(const TableShape& table) const {
    std::size_t place = 0;
    const std::string columns = JoinedSql(table.columns, ", ", [&](const TableShape::Column&) { return Definition(table, place++); });
    return "CREATE TABLE " + Quoted(table.name) + " (" + columns + ", PRIMARY KEY (" + ColumnList(table, table.key) + "))" +
           m_dialect.tableEnd;
}

std::string SqlText::AddColumn(const TableShape& table, std::size_t column) const {
    return "ALTER TABLE " + Quoted(table.name) + " ADD COLUMN " + Definition(table, column);
}

std::string SqlText::CreateView(const ViewShape& view) const {
    const std::string type =
        view.type.empty() ? "" : " AND " + Quoted(view.table->columns[view.typeColumn].name) + " = '" + view.type + "'";
    return "CREATE VIEW " + Quoted(view.name) + " AS SELECT " + ColumnList(*view.table, view.columns) + " FROM " +
           Quoted(view.table->name) + " WHERE " + Quoted(view.table->columns[view.isNull].name) + " IS NULL" + type;
}

std::string SqlText::Select(const Query& query) const {
    return "SELECT " + ColumnList(*query.table, query.columns) + " FROM " + Quoted(query.table->name) + Where(*query.table, query.where, 0);
}

std::string SqlText::Update(const Change& change) const {
    std::size_t parameters = 0;
    const std::string set = JoinedSql(change.set, ", ", [&](std::size_t column) {
        return Quoted(change.table->columns[column].name) + " = " + m_dialect.parameter + std::to_string(++parameters);
    });
    return "UPDATE " + Quoted(change.table->name) + " SET " + set + Where(*change.table, change.where, parameters);
}

std::string SqlText::Delete(const Removal& removal) const {
    return "DELETE FROM " + Quoted(removal.table->name) + Where(*removal.table, removal.where, 0);
}

std::string SqlText::Where(const TableShape& table, const std::vector<Condition>& conditions, std::size_t parameters) const {
    if (conditions.empty()) return "";
    return " WHERE " + JoinedSql(conditions, " AND ", [&](const Condition& condition) -> std::string {
               const std::string name = Quoted(table.columns[condition.column].name);
               if (condition.test == Condition::notNull) return name + " IS NOT NULL";
               const std::string parameter = m_dialect.parameter + std::to_string(++parameters);
               switch (condition.test) {
               case Condition::atMost: return name + " <= " + parameter;
               case Condition::above: return name + " > " + parameter;
               case Condition::nullOrAbove: return "(" + name + " IS NULL OR " + name + " > " + parameter + ")";
               default: return name + " = " + parameter;
               }
           });
}

}  // namespace qv
