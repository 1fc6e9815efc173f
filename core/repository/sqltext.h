#pragma once

#include <string>

#include "core/repository/backend.h"

namespace qv {

/** Where the SQL of one kind of store differs from that of another. */
struct SqlDialect {
    /** Stands before the number of a parameter. */
    char parameter;
    /** Unquoted names are small letters to the store, so quoted ones must be too. */
    bool smallNames;
    const char* (*typeName)(ColumnType);
    /** Comes behind the type of a text that is a part of a key; and behind the closing bracket of a table. */
    const char *keyText, *tableEnd;
};

/** Statements for what the interface describes. They hold names of tables, columns and kinds and places of parameters, nothing else. */
class SqlText {
  public:
    explicit constexpr SqlText(const SqlDialect& dialect) : m_dialect(dialect) {}

    std::string CreateTable(const TableShape& table) const;
    std::string AddColumn(const TableShape& table, std::size_t column) const;
    std::string CreateView(const ViewShape& view) const;
    std::string Select(const Query& query) const;
    std::string Update(const Change& change) const;
    std::string Delete(const Removal& removal) const;

    std::string Quoted(std::string_view name) const;
    std::string ColumnList(const TableShape& table) const;
    std::string ColumnList(const TableShape& table, const std::vector<std::size_t>& columns) const;

  private:
    std::string Definition(const TableShape& table, std::size_t column) const;
    std::string Where(const TableShape& table, const std::vector<Condition>& conditions, std::size_t parameters) const;

    const SqlDialect& m_dialect;
};

/** The texts that `print` makes of the items, with a separator between them. */
template <class Items, class Print>
std::string JoinedSql(const Items& items, const char* separator, Print&& print) {
    std::string text;
    for (const auto& item : items) {
        if (!text.empty()) text += separator;
        text += print(item);
    }
    return text;
}

}  // namespace qv
