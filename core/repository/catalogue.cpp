#include "core/repository/catalogue.h"

#include "core/qvutils/text/asciifold.h"

namespace qv {

const CatalogueTable* FindTable(std::string_view name) {
    for (const CatalogueTable& table : CatalogueTables())
        if (table.name == name) return &table;
    return nullptr;
}

const CatalogueKind* FindKind(std::string_view tag) {
    for (const CatalogueKind& kind : CatalogueKinds())
        if (kind.tag == tag) return &kind;
    return nullptr;
}

const CatalogueColumn* FindColumn(const CatalogueTable& table, std::string_view name) {
    for (const CatalogueColumn& column : table.columns)
        if (!column.name.empty() && AsciiEqualsIgnoreCase(column.name, name)) return &column;
    return nullptr;
}

const CatalogueColumn* FindKey(const CatalogueTable& table, std::string_view key) {
    for (const CatalogueColumn& column : table.columns)
        if (!column.key.empty() && AsciiEqualsIgnoreCase(column.key, key)) return &column;
    return nullptr;
}

std::string_view NameOf(CellKind kind) {
    switch (kind) {
    case CellKind::text: return "text";
    case CellKind::number: return "number";
    case CellKind::flag: return "flag";
    case CellKind::date: return "date";
    }
    return "";
}

}  // namespace qv
