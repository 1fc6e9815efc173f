#include "core/repository/history/objectrows.h"

#include <algorithm>

#include "core/repository/history/nameindex.h"

namespace qv {

namespace {

/** Rows of `child` below a row of `parent` have no address, but for namespaces among sections. */
struct PartTables {
    std::string_view parent, child;
};
constexpr PartTables PARTS[] = {
    {"SM_SECTION_TYPE", "SM_SECTION_TYPE"},       {"SM_QUERY_SUBJECT", "SM_DEFINITION"},
    {"SM_UPDATE_SUBJECT", "SM_DEFINITION"},       {"SM_QUERY_SUBJECT", "SM_DETERMINANT"},
    {"SM_QUERY_SUBJECT", "SM_QUERY_ITEM_FOLDER"}, {"SM_HIERARCHY", "SM_QUERY_ITEM_FOLDER"},
    {"SM_LEVEL", "SM_QUERY_ITEM_FOLDER"},         {"SM_QUERY_ITEM_FOLDER", "SM_QUERY_ITEM_FOLDER"},
    {"SM_QUERY_ITEM", "SM_PROMPTINFO"},           {"SM_QUERY_ITEM", "SM_ROLES"},
    {"SM_CALCULATION", "SM_PROMPTINFO"},          {"SM_PARAMETER_MAP", "SM_PARAMETER_MAP_ENTRY"},
};

/** Parts of these tables, which can be many, have neither records nor texts in other locales. */
constexpr std::string_view PLAIN_PARTS[] = {"SM_DETERMINANT", "SM_PROMPTINFO", "SM_PARAMETER_MAP_ENTRY"};

bool IsPart(const RowTable& table, const char* row) {
    return KindOf(table, row) != "namespace";
}

bool IsOfObjects(const RowTable& table) {
    return &table != &Schema::Get().remainInfo() && &table != &Schema::Get().langText();
}

}  // namespace

ObjectRows::ObjectRows(StoreSession& session, std::int64_t project, std::string_view id) : m_session(session), m_project(project) {
    m_holders.push_back({std::string(id), 0, {}});
    m_places.emplace(id, 0);
    try {
        FetchObject();
        Owners owners;
        for (const Row& row : m_holders.front().rows) owners[row.table->name()].insert(std::string(id));
        FetchParts(std::move(owners));
        FetchRecordsAndTexts();
    } catch (...) {
        Release();
        throw;
    }
}

ObjectRows::~ObjectRows() {
    Release();
}

void ObjectRows::Release() {
    for (const Holder& holder : m_holders)
        for (const Row& row : holder.rows) RowArena::Release(row.row);
}

void ObjectRows::Keep(std::size_t holder, const RowTable& table, const char* row, std::int64_t first, std::int64_t end) {
    RowUse use(row);
    m_holders[holder].rows.push_back({&table, row, first, end});
    use.HandOn();
}

void ObjectRows::FetchObject() {
    RowArena arena;
    const std::vector<Cell> parameters = {Cell::Number(m_project), Cell::Text(m_holders.front().id)};
    for (const RowTable& table : Schema::Get().rowTables())
        if (IsOfObjects(table))
            m_session.FetchWhere(table, {{place::project, Condition::equal}, {place::id, Condition::equal}}, parameters, arena,
                                 [&](const char* row, std::int64_t first, std::int64_t end) { Keep(0, table, row, first, end); });
}

void ObjectRows::FetchParts(Owners owners) {
    while (!owners.empty()) {
        Owners found;
        for (const PartTables& part : PARTS)
            if (const auto above = owners.find(part.parent); above != owners.end())
                FetchBelow(*Schema::Get().Find(part.child), above->second, found);
        owners = std::move(found);
    }
}

void ObjectRows::FetchBelow(const RowTable& table, const std::set<std::string>& owners, Owners& found) {
    // a table is not sorted by parents: of several owners at once it is gone through once
    std::vector<Condition> where = {{place::project, Condition::equal}};
    std::vector<Cell> parameters = {Cell::Number(m_project)};
    if (owners.size() == 1) {
        where.push_back({place::parentId, Condition::equal});
        parameters.push_back(Cell::Text(*owners.begin()));
    }
    RowArena arena;
    m_session.FetchWhere(table, std::move(where), parameters, arena, [&](const char* fetched, std::int64_t first, std::int64_t end) {
        RowUse use(fetched);
        const std::string id(rowcodec::Id(fetched)), parent(rowcodec::ParentId(table, fetched));
        if (owners.count(parent) == 0 || !IsPart(table, fetched)) return;
        const auto [at, isNew] = m_places.try_emplace(id, m_holders.size());
        if (isNew) {
            m_holders.push_back({id, m_places.at(parent), {}});
            found[table.name()].insert(id);
        }
        if (at->second != 0) Keep(at->second, table, use.HandOn(), first, end);
    });
}

void ObjectRows::FetchRecordsAndTexts() {
    std::vector<std::vector<Cell>> parameters;
    for (std::size_t at = 0; at < m_holders.size(); ++at) {
        const Holder& holder = m_holders[at];
        const bool isPlain =
            at > 0 && std::find(std::begin(PLAIN_PARTS), std::end(PLAIN_PARTS), holder.rows.front().table->name()) != std::end(PLAIN_PARTS);
        if (!isPlain) parameters.push_back({Cell::Number(m_project), Cell::Text(holder.id)});
    }
    RowArena arena;
    const auto fetch = [&](const RowTable& table, std::size_t owner) {
        m_session.FetchWhereEach(table, {{place::project, Condition::equal}, {owner, Condition::equal}}, parameters, arena,
                                 [&](const char* row, std::int64_t first, std::int64_t end) {
                                     RowUse use(row);
                                     const auto id = owner == place::id ? rowcodec::Id(row) : rowcodec::ParentId(table, row);
                                     const auto holder = m_places.find(std::string(id));
                                     if (holder != m_places.end()) Keep(holder->second, table, use.HandOn(), first, end);
                                 });
    };
    fetch(Schema::Get().remainInfo(), place::parentId);
    fetch(Schema::Get().langText(), place::id);
}

std::string ObjectRows::PartName(std::size_t at) const {
    const Holder& holder = m_holders[at];
    if (at == 0) return {};
    const auto newest = std::max_element(holder.rows.begin(), holder.rows.end(), [](const Row& a, const Row& b) {
        return std::pair(IsOfObjects(*a.table), a.first) < std::pair(IsOfObjects(*b.table), b.first);
    });
    const NameIndex::Place place = NameIndex::PlaceOf(*newest->table, newest->row);
    const std::string name = place.name.empty() ? std::string(TextNamed(*newest->table, newest->row, "KEY")) : place.name;
    const std::string own = place.kind + (name.empty() ? "" : " [" + name + "]");
    return holder.around == 0 ? own : PartName(holder.around) + "." + own;
}

}  // namespace qv
