#include "core/repository/projectreader.h"

#include <algorithm>

namespace qv {

namespace {

/** The taker of records; those of rows are one more than the place of their kind. */
constexpr std::uintptr_t RECORD_TAKER = 255;

std::uintptr_t TakerOf(const CatalogueKind& kind) {
    return static_cast<std::uintptr_t>(&kind - CatalogueKinds().data()) + 1;
}

/** True when a row that went to `taker` may be one that `kind` asks for. */
bool Overlap(const CatalogueKind& kind, std::uintptr_t taker) {
    const std::span<const CatalogueKind> kinds = CatalogueKinds();
    if (taker == 0 || taker > kinds.size()) return false;
    const CatalogueKind& other = kinds[taker - 1];
    return kind.typeColumn.empty() || other.typeColumn.empty() || kind.type == other.type;
}

}  // namespace

void ProjectReader::Pin(std::int64_t project, std::int64_t revision) {
    m_project = project;
    m_revision = revision;
    m_tables.clear();
    m_tables.resize(Schema::Get().rowTables().size());
    m_oldRecords.reset();
    m_order.reset();
}

TableRows& ProjectReader::Rows(const RowTable& table) {
    if (m_tables.empty()) m_tables.resize(Schema::Get().rowTables().size());
    std::unique_ptr<TableRows>& rows = m_tables[table.index].rows;
    if (!rows) {
        auto fetched = std::make_unique<TableRows>(table);
        fetched->Fetch(m_session, m_project, m_revision);
        rows = std::move(fetched);
    }
    return *rows;
}

template <class Conflict>
void ProjectReader::Bring(const RowTable& table, std::string_view parent, std::vector<TableRows::Index>& below, Conflict&& mayConflict) {
    TableRows& rows = Rows(table);
    rows.Below(parent, below);
    if (std::none_of(below.begin(), below.end(), [&](TableRows::Index index) { return mayConflict(rows.Taker(index)); })) return;
    m_tables[table.index].rows.reset();
    m_tables[table.index].stays = true;
    Rows(table).Below(parent, below);
}

void ProjectReader::Arrange(const RowTable& table, std::string_view parent, std::vector<TableRows::Index>& rows) {
    if (rows.size() < 2) return;
    if (!m_order) {
        m_order = std::make_unique<SiblingOrder>();
        m_order->Fetch(m_session, m_project, m_revision);
    }
    m_ids.clear();
    for (const TableRows::Index index : rows) m_ids.push_back(rowcodec::Id(Rows(table).Row(index)));
    m_order->Arrange(m_order->Find(parent, table.name()), m_ids, m_places);
    m_others.clear();
    for (const std::size_t at : m_places) m_others.push_back(rows[at]);
    rows.swap(m_others);
}

RowLayout& ProjectReader::Layout(const CatalogueKind* kind, const RowTable& table) {
    const std::size_t at = kind ? TakerOf(*kind) : 0;
    if (m_layouts.empty()) m_layouts.resize(CatalogueKinds().size() + 1);
    if (!m_layouts[at]) m_layouts[at] = new RowLayout(table, kind);
    return *m_layouts[at];
}

void ProjectReader::HandOut(const RowTable& table, RowLayout& layout, TableRows::Index index, std::uintptr_t taker,
                            std::string_view computedType, IOArrayParam& results) {
    Table& held = m_tables[table.index];
    const char* row;
    if (held.stays) {
        row = held.rows->Row(index);
        RowArena::Share(row);
    } else {
        row = held.rows->Take(index, taker);
    }
    results.push_back(layout.MakeRow(row, computedType).get());
}

bool ProjectReader::MayHaveRows(std::string_view kindName, std::string_view parent) {
    const RowTable* table = &Schema::Get().remainInfo();
    if (kindName != table->name()) {
        const CatalogueKind* const kind = FindKind(kindName);
        if (!kind) return false;
        table = Schema::Get().Find(kind->table);
    }
    Rows(*table).Below(parent, m_below);
    return !m_below.empty();
}

void ProjectReader::ReadProject(IOArrayParam& results) {
    ReadKind(*FindKind("project"), "", results);
}

void ProjectReader::ReadKind(const CatalogueKind& kind, std::string_view parent, IOArrayParam& results) {
    const RowTable& table = *Schema::Get().Find(kind.table);
    Bring(table, parent, m_below, [&](std::uintptr_t taker) { return Overlap(kind, taker); });
    TableRows& rows = Rows(table);
    const auto other = [&](TableRows::Index index) {
        const char* const row = rows.Row(index);
        return !row || (!kind.type.empty() && rowcodec::BodyCell(table, row, static_cast<std::size_t>(table.typeColumn)).view != kind.type);
    };
    m_below.erase(std::remove_if(m_below.begin(), m_below.end(), other), m_below.end());
    Arrange(table, parent, m_below);
    RowLayout& layout = Layout(&kind, table);
    for (const TableRows::Index index : m_below) {
        const std::string_view type = kind.computedType ? TypeFromDefinition(rowcodec::Id(rows.Row(index))) : std::string_view();
        HandOut(table, layout, index, TakerOf(kind), type, results);
    }
}

std::string_view ProjectReader::TypeFromDefinition(std::string_view subject) {
    static const RowTable& DEFINITION = *Schema::Get().Find("SM_DEFINITION");
    Bring(DEFINITION, subject, m_others, [](std::uintptr_t taker) { return taker != 0; });
    if (m_others.empty()) return "";
    const char* const row = Rows(DEFINITION).Row(m_others.front());
    const auto holds = [row](std::string_view column) {
        for (const std::size_t cell : DEFINITION.body)
            if (DEFINITION.columns[cell]->name == column) return rowcodec::BodyCell(DEFINITION, row, cell).kind != Cell::null;
        return false;
    };
    if (holds("TABLE_TYPE") || holds("MULTIDB")) return "dbQuery";
    return holds("GENERATE_SQL") ? "modelQuery" : "";
}

void ProjectReader::ReadRecords(std::string_view owner, std::int64_t ownerVersion, bool anyVersion, IOArrayParam& results) {
    const RowTable& table = Schema::Get().remainInfo();
    Bring(table, owner, m_below, [](std::uintptr_t taker) { return taker == RECORD_TAKER; });
    TableRows& rows = Rows(table);
    RowLayout& layout = Layout(nullptr, table);
    std::size_t found = 0, newer = 0;
    Arrange(table, owner, m_below);
    for (const TableRows::Index index : m_below) {
        const RowHead head = rowcodec::Head(table, rows.Row(index));
        if (!anyVersion && head.parentVersion != ownerVersion) {
            newer += head.parentVersion > ownerVersion;
            continue;
        }
        ++found;
        HandOut(table, layout, index, RECORD_TAKER, {}, results);
    }
    if (found == 0 && newer > 0) ReadOldRecords(owner, ownerVersion, results);
}

void ProjectReader::ReadOldRecords(std::string_view owner, std::int64_t ownerVersion, IOArrayParam& results) {
    const RowTable& table = Schema::Get().remainInfo();
    if (!m_oldRecords) {
        m_oldRecords = std::make_unique<TableRows>(table);
        m_oldRecords->FetchEnded(m_session, m_project);
    }
    m_oldRecords->Below(owner, m_below);
    std::vector<const char*> newest;
    for (const TableRows::Index index : m_below) {
        const char* const row = m_oldRecords->Row(index);
        const RowHead head = rowcodec::Head(table, row);
        if (head.parentVersion != ownerVersion) continue;
        const auto same = std::find_if(newest.begin(), newest.end(), [&](const char* other) { return rowcodec::Id(other) == head.id; });
        if (same == newest.end())
            newest.push_back(row);
        else if (rowcodec::Version(*same) < head.version)
            *same = row;
    }
    for (const char* const row : newest) {
        RowArena::Share(row);
        results.push_back(Layout(nullptr, table).MakeRow(row, {}).get());
    }
}

}  // namespace qv
