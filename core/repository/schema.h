#pragma once

#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/repository/backend.h"
#include "core/repository/catalogue.h"

namespace qv {

/** Columns that stand at the same places in every table of rows. */
namespace place {
enum : std::size_t { project, id, version, first, end, parentId, parentVersion };
}

/** One table of rows: its description, its shape in a store, and where the columns of a row's cells stand. */
struct RowTable {
    const CatalogueTable* catalogue;
    /** Place among the tables. */
    std::size_t index;
    TableShape shape;
    bool hasParent;
    /** The columns that exist, without key and parent columns; the cell of columns[i] is cell i of a row. */
    std::vector<const CatalogueColumn*> columns;
    /** Places, among `columns`, of those that make a row differ, and of those that never do. */
    std::vector<std::size_t> body, versions;
    /** Place of the columns that tell kinds apart, name an object among its siblings, and number it among them; -1 where there is none. */
    int typeColumn = -1, nameColumn = -1, orderColumn = -1;

    /** Place in the shape of cell i. */
    std::size_t ShapePlace(std::size_t cell) const {
        return (hasParent ? std::size_t{place::parentVersion} + 1 : std::size_t{place::parentId}) + cell;
    }
    std::string_view name() const { return catalogue->name; }
};

/** The tables that hold no rows of objects. */
namespace ordertable {
enum : std::size_t { project, parent, table, first, end, ids };
}
namespace projecttable {
enum : std::size_t { project, id, name, head };
}
namespace revisiontable {
enum : std::size_t { project, revision, savedAt, author, message, document, documentDepth, documentBytes };
/** Those that came with the second format. */
inline constexpr std::size_t LATER_COLUMNS = 5;
}  // namespace revisiontable
namespace piecetable {
enum : std::size_t { project, digest, size, bytes };
}
namespace storetable {
enum : std::size_t { name, value };
}
/** The name under which REPO_STORE tells the format. */
inline constexpr std::string_view STORE_FORMAT = "format";

/** All tables of a store, made once from the catalogue. */
class Schema {
  public:
    static const Schema& Get();

    const std::vector<RowTable>& rowTables() const { return m_rowTables; }
    /** Null when there is none. */
    const RowTable* Find(std::string_view name) const;
    /** By the id column's name, which no two tables of objects share; the empty name is that of SM_FUNCTION, whose class tells none. */
    const RowTable* FindByIdColumn(std::string_view idColumn) const;
    const RowTable& remainInfo() const { return *m_remainInfo; }
    const RowTable& langText() const { return *m_langText; }

    const TableShape& orders() const { return m_orders; }
    const TableShape& projects() const { return m_projects; }
    const TableShape& revisions() const { return m_revisions; }
    const TableShape& pieces() const { return m_pieces; }
    const TableShape& store() const { return m_store; }
    std::vector<TableShape> AllShapes() const;

  private:
    Schema();
    std::vector<RowTable> m_rowTables;
    std::unordered_map<std::string_view, const RowTable*> m_byName, m_byIdColumn;
    const RowTable* m_remainInfo;
    const RowTable* m_langText;
    TableShape m_orders, m_projects, m_revisions, m_pieces, m_store;
};

}  // namespace qv
