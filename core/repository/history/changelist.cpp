#include "core/repository/history/changelist.h"

#include <algorithm>

namespace qv {

namespace {

std::size_t CellNamed(const RowTable& table, std::string_view name) {
    std::size_t cell = 0;
    while (table.columns[cell]->name != name) ++cell;
    return cell;
}

std::optional<std::string> CellText(const RowTable& table, const char* row, std::size_t cell) {
    return row ? TextOf(rowcodec::BodyCell(table, row, cell), table.columns[cell]->kind) : std::nullopt;
}

void AddValue(std::string_view name, const std::optional<std::string>& before, const std::optional<std::string>& after,
              std::vector<SMRepositoryValue>& values) {
    if (before == after) return;
    const auto text = [](const std::optional<std::string>& value) { return I18NString(std::string_view(value ? *value : std::string())); };
    values.push_back({I18NString(name), before.has_value(), after.has_value(), text(before), text(after)});
}

}  // namespace

std::optional<std::string> TextOf(const Cell& cell, CellKind kind) {
    if (cell.kind == Cell::null) return std::nullopt;
    if (cell.kind == Cell::text) return std::string(cell.view);
    if (kind == CellKind::flag) return cell.number ? "true" : "false";
    if (kind != CellKind::date) return std::to_string(cell.number);
    char moment[MOMENT_SIZE];
    PrintMoment(cell.number, moment);
    return std::string(moment, MOMENT_SIZE);
}

ChangeList::~ChangeList() {
    for (const char* const row : m_shared) RowArena::Release(row);
}

void ChangeList::Take(const RowTable& table, const char* row, const char* Side::*side) {
    RowArena::Share(row);
    m_shared.push_back(row);
    const RowHead head = rowcodec::Head(table, row);
    Side* place;
    if (&table == &Schema::Get().remainInfo()) {
        place = &m_objects[std::string(head.parentId)].records[std::string(head.id)];
    } else if (&table == &Schema::Get().langText()) {
        const auto cell = [&](std::string_view name) { return rowcodec::BodyCell(table, row, CellNamed(table, name)).view; };
        place = &m_objects[std::string(head.id)].texts[std::string(cell("NAME")) + "[" + std::string(cell("LOCALE")) + "]"];
    } else {
        place = &m_objects[std::string(head.id)].row;
    }
    place->table = &table;
    place->*side = row;
}

void ChangeList::TextStands(const RowTable& texts, const char* row) {
    const auto owner = m_objects.find(std::string(rowcodec::Head(texts, row).id));
    if (owner != m_objects.end() && owner->second.row.before) Before(texts, row);
}

void ChangeList::AddNames(NameIndex& names) const {
    for (const auto& [id, object] : m_objects)
        if (object.row.after) names.Add(*object.row.table, object.row.after);
}

void ChangeList::AddColumns(const Side& side, std::vector<SMRepositoryValue>& values) {
    if (!side.table) return;
    const RowTable& table = *side.table;
    if (table.hasParent) {
        const auto parent = [&](const char* row) {
            return row ? std::optional(std::string(rowcodec::ParentId(table, row))) : std::nullopt;
        };
        AddValue(table.catalogue->parentId, parent(side.before), parent(side.after), values);
    }
    for (const std::size_t cell : table.body)
        AddValue(table.columns[cell]->name, CellText(table, side.before, cell), CellText(table, side.after, cell), values);
}

void ChangeList::AddPart(const std::string& name, const Side& side, std::size_t cell, std::vector<SMRepositoryValue>& values) {
    AddValue(name, CellText(*side.table, side.before, cell), CellText(*side.table, side.after, cell), values);
}

std::vector<SMRepositoryChange> ChangeList::Build(const NameIndex& names) const {
    std::vector<SMRepositoryChange> changes;
    for (const auto& [id, object] : m_objects) {
        SMRepositoryChange change;
        AddColumns(object.row, change.values);
        for (const auto& [name, side] : object.texts) AddPart(name, side, CellNamed(*side.table, "VALUE"), change.values);
        for (const auto& [name, side] : object.records) AddPart("record " + name, side, CellNamed(*side.table, "VALUE"), change.values);
        change.order = object.order;
        if (object.row.table && !object.row.before) change.what = SMRepositoryChange::added;
        if (object.row.table && !object.row.after) change.what = SMRepositoryChange::removed;
        if (change.what == SMRepositoryChange::changed && change.values.empty() && !change.order) continue;
        change.id = QvULString(std::string_view(id));
        if (const NameIndex::Place* const place = names.Find(id)) {
            change.kind = QvULString(std::string_view(place->kind));
            change.parentId = QvULString(std::string_view(place->parent));
            change.name = I18NString(std::string_view(place->name));
        }
        for (const std::string& name : names.Path(id)) change.path.push_back(I18NString(std::string_view(name)));
        changes.push_back(std::move(change));
    }
    std::stable_sort(changes.begin(), changes.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
    return changes;
}

}  // namespace qv
