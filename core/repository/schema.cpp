#include "core/repository/schema.h"

namespace qv {

namespace {

constexpr std::string_view NAMES_OF_SIBLINGS[] = {"NAME", "KEY"};

ColumnType TypeOf(CellKind kind) {
    switch (kind) {
    case CellKind::number: return ColumnType::integer;
    case CellKind::flag: return ColumnType::flag;
    case CellKind::date: return ColumnType::moment;
    case CellKind::text: break;
    }
    return ColumnType::text;
}

TableShape::Column Required(std::string_view name, ColumnType type) {
    return {std::string(name), type, true};
}

TableShape::Column Optional(std::string_view name, ColumnType type) {
    return {std::string(name), type, false};
}

TableShape RowShape(const RowTable& table) {
    const CatalogueTable& catalogue = *table.catalogue;
    TableShape shape;
    shape.name = catalogue.name;
    shape.columns = {Required("PROJECT_NO", ColumnType::integer), Required(catalogue.id, ColumnType::text),
                     Required(catalogue.version, ColumnType::integer), Required("FIRST_REVISION", ColumnType::integer),
                     Optional("END_REVISION", ColumnType::integer)};
    if (table.hasParent) {
        shape.columns.push_back(Required(catalogue.parentId, ColumnType::text));
        shape.columns.push_back(Required(catalogue.parentVersion, ColumnType::integer));
    }
    for (const CatalogueColumn* column : table.columns) shape.columns.push_back(Optional(column->name, TypeOf(column->kind)));

    if (catalogue.idWithinParent) {
        shape.key = {place::project, place::parentId, place::id, place::version};
    } else if (catalogue.name == LANG_TEXT) {
        shape.key = {place::project, place::id, place::version, table.ShapePlace(0), table.ShapePlace(1), place::first};
        shape.replaces = true;
        for (const std::size_t part : shape.key) shape.columns[part].required = true;
    } else {
        shape.key = {place::project, place::id, place::version};
    }
    return shape;
}

RowTable MakeRowTable(const CatalogueTable& catalogue, std::size_t index) {
    RowTable table{&catalogue, index, {}, !catalogue.parentId.empty(), {}, {}, {}};
    for (const CatalogueColumn& column : catalogue.columns) {
        if (column.name.empty()) continue;
        const std::size_t cell = table.columns.size();
        table.columns.push_back(&column);
        (column.comparing == Comparing::never ? table.versions : table.body).push_back(cell);
        if (column.group == KeyGroup::objectType) table.typeColumn = static_cast<int>(cell);
        if (column.group == KeyGroup::order && catalogue.name != REMAIN_INFO) table.orderColumn = static_cast<int>(cell);
        for (const std::string_view name : NAMES_OF_SIBLINGS)
            if (column.name == name && table.nameColumn < 0) table.nameColumn = static_cast<int>(cell);
    }
    table.shape = RowShape(table);
    return table;
}

}  // namespace

Schema::Schema() {
    for (const CatalogueTable& catalogue : CatalogueTables()) m_rowTables.push_back(MakeRowTable(catalogue, m_rowTables.size()));
    for (const RowTable& table : m_rowTables) m_byName.emplace(table.name(), &table);
    m_remainInfo = m_byName.at(REMAIN_INFO);
    m_langText = m_byName.at(LANG_TEXT);
    for (const RowTable& table : m_rowTables)
        if (&table != m_remainInfo && &table != m_langText) m_byIdColumn.emplace(table.catalogue->id, &table);
    m_byIdColumn.emplace("", m_byName.at("SM_FUNCTION"));

    m_orders = {
        "REPO_ORDER",
        {Required("PROJECT_NO", ColumnType::integer), Required("PARENT_ID", ColumnType::text), Required("TABLE_NAME", ColumnType::text),
         Required("FIRST_REVISION", ColumnType::integer), Optional("END_REVISION", ColumnType::integer), Required("IDS", ColumnType::text)},
        {ordertable::project, ordertable::parent, ordertable::table, ordertable::first}};
    m_projects = {"REPO_PROJECT",
                  {Required("PROJECT_NO", ColumnType::integer), Required("PROJECT_ID", ColumnType::text),
                   Required("NAME", ColumnType::text), Required("HEAD_REVISION", ColumnType::integer)},
                  {projecttable::project}};
    m_revisions = {"REPO_REVISION",
                   {Required("PROJECT_NO", ColumnType::integer), Required("REVISION_NO", ColumnType::integer),
                    Required("SAVED_AT", ColumnType::moment), Optional("AUTHOR", ColumnType::text), Optional("MESSAGE", ColumnType::text),
                    Optional("DOCUMENT", ColumnType::text), Optional("DOCUMENT_DEPTH", ColumnType::integer),
                    Optional("DOCUMENT_BYTES", ColumnType::integer)},
                   {revisiontable::project, revisiontable::revision}};
    m_pieces = {"REPO_PIECE",
                {Required("PROJECT_NO", ColumnType::integer), Required("DIGEST", ColumnType::text), Required("SIZE", ColumnType::integer),
                 Required("BYTES", ColumnType::bytes)},
                {piecetable::project, piecetable::digest}};
    // a piece is its digest, so one that came a second time is the same
    m_pieces.replaces = true;
    m_store = {"REPO_STORE", {Required("NAME", ColumnType::text), Required("VALUE", ColumnType::text)}, {storetable::name}};
}

const Schema& Schema::Get() {
    static const Schema schema;
    return schema;
}

const RowTable* Schema::Find(std::string_view name) const {
    const auto found = m_byName.find(name);
    return found == m_byName.end() ? nullptr : found->second;
}

const RowTable* Schema::FindByIdColumn(std::string_view idColumn) const {
    const auto found = m_byIdColumn.find(idColumn);
    return found == m_byIdColumn.end() ? nullptr : found->second;
}

std::vector<TableShape> Schema::AllShapes() const {
    std::vector<TableShape> shapes = {m_store, m_projects, m_revisions, m_pieces, m_orders};
    for (const RowTable& table : m_rowTables) shapes.push_back(table.shape);
    return shapes;
}

}  // namespace qv
