#include "core/repository/history/nameindex.h"

#include <algorithm>

#include "core/repository/storesession.h"

namespace qv {

namespace {

/** Columns that tell apart the kinds of rows that share a table. */
constexpr std::string_view KIND_COLUMNS[] = {"SECTION_TYPE_NAME", "QUERY_SUBJECT_TYPE_NAME", "QS_ITEM_TYPE_NAME", "ITEM_FOLDER_TYPE_NAME"};
/** A parent chain longer than this is a ring, which a damaged store may have. */
constexpr std::size_t DEEPEST = 1000;

/** The last name of "roles/role", without the figure of "definition2". */
std::string PlainTag(std::string_view tag) {
    tag = tag.substr(tag.rfind('/') + 1);
    return std::string(tag.substr(0, tag.find_last_not_of("0123456789") + 1));
}

}  // namespace

std::string KindOf(const RowTable& table, const char* row) {
    for (std::size_t cell = 0; cell < table.columns.size(); ++cell)
        for (const std::string_view column : KIND_COLUMNS)
            if (table.columns[cell]->name == column) return std::string(rowcodec::BodyCell(table, row, cell).view);
    for (const CatalogueKind& kind : CatalogueKinds())
        if (kind.table == table.name()) return PlainTag(kind.tag);
    return std::string(table.name());
}

std::string_view TextNamed(const RowTable& table, const char* row, std::string_view column) {
    for (std::size_t cell = 0; cell < table.columns.size(); ++cell)
        if (table.columns[cell]->name == column) return rowcodec::BodyCell(table, row, cell).view;
    return {};
}

std::int64_t OrderOf(const RowTable& table, const char* row) {
    return table.orderColumn < 0 ? 0 : rowcodec::BodyCell(table, row, static_cast<std::size_t>(table.orderColumn)).number;
}

void NameIndex::Fetch(StoreSession& session, std::int64_t project, std::int64_t revision) {
    for (const RowTable& table : Schema::Get().rowTables()) {
        if (&table == &Schema::Get().remainInfo() || &table == &Schema::Get().langText()) continue;
        RowArena arena;
        session.FetchRows(table, project, revision, arena, [&](const char* row) {
            Add(table, row);
            RowArena::Release(row);
        });
    }
}

NameIndex::Place NameIndex::PlaceOf(const RowTable& table, const char* row) {
    Place place{&table, {}, std::string(rowcodec::ParentId(table, row)), KindOf(table, row), OrderOf(table, row)};
    if (table.nameColumn >= 0) place.name = rowcodec::BodyCell(table, row, static_cast<std::size_t>(table.nameColumn)).view;
    return place;
}

void NameIndex::Add(const RowTable& table, const char* row) {
    m_places[std::string(rowcodec::Id(row))] = PlaceOf(table, row);
}

const NameIndex::Place* NameIndex::Find(std::string_view id) const {
    const auto found = m_places.find(std::string(id));
    return found == m_places.end() ? nullptr : &found->second;
}

std::vector<std::string> NameIndex::Path(const Place& innermost) const {
    std::vector<std::string> path;
    for (const Place* place = &innermost; place && path.size() < DEEPEST; place = Find(place->parent))
        path.push_back(place->name.empty() ? place->kind : place->name);
    std::reverse(path.begin(), path.end());
    return path;
}

std::vector<std::string> NameIndex::Path(std::string_view id) const {
    const Place* const place = Find(id);
    return place ? Path(*place) : std::vector<std::string>();
}

}  // namespace qv
