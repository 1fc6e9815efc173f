#include "core/repository/history/changelist.h"

#include <algorithm>
#include <unordered_map>

#include "core/repository/ascendingnumbers.h"

namespace qv {

namespace {

std::size_t CellNamed(const RowTable& table, std::string_view name) {
    std::size_t cell = 0;
    while (table.columns[cell]->name != name) ++cell;
    return cell;
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

void ChangeList::Take(const RowTable& table, const char* row, Version Side::*side) {
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
    place->*side = {&table, row};
}

void ChangeList::TextStands(const RowTable& texts, const char* row) {
    const auto owner = m_objects.find(std::string(rowcodec::Head(texts, row).id));
    if (owner != m_objects.end() && owner->second.row.before.row) Before(texts, row);
}

void ChangeList::AddNames(NameIndex& names) const {
    for (const auto& [id, object] : m_objects)
        if (const auto& [table, row] = object.row.after; row) names.Add(*table, row);
}

ChangeList::Object ChangeList::Object::Half(Version Side::*side) const {
    Object half;
    half.row.*side = row.*side;
    const auto take = [side](const Parts& from, Parts& to) {
        for (const auto& [name, part] : from)
            if ((part.*side).row) to[name].*side = part.*side;
    };
    take(records, half.records);
    take(texts, half.texts);
    return half;
}

bool ChangeList::Object::StaysNumbered() const {
    const auto& [before, after] = row;
    return before.row && before.table == after.table && before.table->orderColumn >= 0 &&
           rowcodec::ParentId(*before.table, before.row) == rowcodec::ParentId(*after.table, after.row);
}

ChangeList::Ids ChangeList::OnlyRenumbered(const NameIndex& names) const {
    struct Sibling {
        std::string_view id;
        std::int64_t before, after;
    };
    std::unordered_map<std::string_view, std::vector<Sibling>> families;
    for (const auto& [id, object] : m_objects) {
        const auto& [before, after] = object.row;
        if (object.StaysNumbered() && OrderOf(*before.table, before.row) != OrderOf(*after.table, after.row))
            families[rowcodec::ParentId(*after.table, after.row)];
    }
    if (families.empty()) return {};
    names.Each([&](const std::string& id, const NameIndex::Place& place) {
        const auto family = families.find(place.parent);
        if (family == families.end() || place.table->orderColumn < 0) return;
        const auto known = m_objects.find(id);
        if (known == m_objects.end() || (!known->second.row.before.row && !known->second.row.after.row))
            return family->second.push_back({id, place.order, place.order});
        const auto& [before, after] = known->second.row;
        if (known->second.StaysNumbered())
            family->second.push_back({id, OrderOf(*before.table, before.row), OrderOf(*after.table, after.row)});
    });
    Ids renumbered;
    for (auto& [parent, siblings] : families) {
        std::sort(siblings.begin(), siblings.end(), [](const Sibling& a, const Sibling& b) { return a.before < b.before; });
        std::vector<NumberedSibling> numbered;
        for (const Sibling& sibling : siblings) numbered.push_back({sibling.before, sibling.after, sibling.before == sibling.after, 0});
        const std::vector<bool> stays = LongestAscent(numbered);
        for (std::size_t at = 0; at < siblings.size(); ++at)
            if (stays[at]) renumbered.insert(siblings[at].id);
    }
    return renumbered;
}

void ChangeList::AddColumns(const Side& side, bool renumbered, std::vector<SMRepositoryValue>& values) {
    const RowTable* const table = side.after.table ? side.after.table : side.before.table;
    if (!table) return;
    if (table->hasParent) {
        const auto parent = [](const Version& version) {
            return version.row ? std::optional(std::string(rowcodec::ParentId(*version.table, version.row))) : std::nullopt;
        };
        AddValue(table->catalogue->parentId, parent(side.before), parent(side.after), values);
    }
    const auto text = [](const Version& version, std::size_t cell) {
        return version.row ? TextOf(rowcodec::BodyCell(*version.table, version.row, cell), version.table->columns[cell]->kind)
                           : std::nullopt;
    };
    for (const std::size_t cell : table->body) {
        if (renumbered && static_cast<int>(cell) == table->orderColumn) continue;
        AddValue(table->columns[cell]->name, text(side.before, cell), text(side.after, cell), values);
    }
}

void ChangeList::AddPart(const std::string& name, const Side& side, std::vector<SMRepositoryValue>& values) {
    const auto text = [](const Version& version) {
        if (!version.row) return std::optional<std::string>();
        const std::size_t cell = CellNamed(*version.table, "VALUE");
        return TextOf(rowcodec::BodyCell(*version.table, version.row, cell), version.table->columns[cell]->kind);
    };
    AddValue(name, text(side.before), text(side.after), values);
}

void ChangeList::AddChange(const std::string& id, const Object& object, const NameIndex& names, bool renumbered,
                           std::vector<SMRepositoryChange>& changes) {
    SMRepositoryChange change;
    AddColumns(object.row, renumbered, change.values);
    for (const auto& [name, side] : object.texts) AddPart(name, side, change.values);
    for (const auto& [name, side] : object.records) AddPart("record " + name, side, change.values);
    change.order = object.order;
    const auto& [before, after] = object.row;
    if (after.row && !before.row) change.what = SMRepositoryChange::added;
    if (before.row && !after.row) change.what = SMRepositoryChange::removed;
    if (change.what == SMRepositoryChange::changed && change.values.empty() && !change.order) return;
    change.id = QvULString(std::string_view(id));
    const Version& own = after.row ? after : before;
    std::optional<NameIndex::Place> place;
    if (own.row)
        place = NameIndex::PlaceOf(*own.table, own.row);
    else if (const NameIndex::Place* const known = names.Find(id))
        place = *known;
    if (place) {
        change.kind = QvULString(std::string_view(place->kind));
        change.parentId = QvULString(std::string_view(place->parent));
        change.name = I18NString(std::string_view(place->name));
        for (const std::string& name : names.Path(*place)) change.path.push_back(I18NString(std::string_view(name)));
    }
    changes.push_back(std::move(change));
}

std::vector<SMRepositoryChange> ChangeList::Build(const NameIndex& names) const {
    std::vector<SMRepositoryChange> changes;
    const Ids renumbered = OnlyRenumbered(names);
    for (const auto& [id, object] : m_objects) {
        if (!object.IsAnotherNow()) {
            AddChange(id, object, names, renumbered.count(id) != 0, changes);
            continue;
        }
        AddChange(id, object.Half(&Side::before), names, false, changes);
        Object now = object.Half(&Side::after);
        now.order = object.order;
        AddChange(id, now, names, false, changes);
    }
    std::stable_sort(changes.begin(), changes.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
    return changes;
}

}  // namespace qv
