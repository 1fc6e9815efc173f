#include "core/repository/history/rowaudit.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "core/repository/history/nameindex.h"
#include "core/repository/siblingorder.h"

namespace qv {

namespace {

std::string Quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

}  // namespace

std::vector<std::string> RowAudit::Faults() {
    CheckHead();
    for (const RowTable& table : Schema::Get().rowTables())
        if (&table != &Schema::Get().remainInfo() && &table != &Schema::Get().langText()) TakeObjects(table);
    CheckParents();
    CheckRecords();
    CheckTexts();
    CheckOrders();
    return std::move(m_faults);
}

void RowAudit::Each(const RowTable& table, const std::function<void(const char*)>& take) {
    RowArena arena;
    m_session.FetchWhere(
        table, {{place::project, Condition::equal}, {place::first, Condition::atMost}, {place::end, Condition::nullOrAbove}},
        {Cell::Number(m_project), Cell::Number(m_revision), Cell::Number(m_revision)}, arena,
        [&](const char* row, std::int64_t, std::int64_t end) {
            take(row);
            if (end > m_entry.head)
                Find(table.name(), "version " + std::to_string(rowcodec::Version(row)) + " of " + Quoted(rowcodec::Id(row)) +
                                       " ends in revision " + std::to_string(end) + ", which is not there");
            RowArena::Release(row);
        });
}

void RowAudit::CheckHead() {
    m_entry = m_session.Project(m_project).value_or(ProjectEntry());
    const std::vector<RevisionEntry> revisions = m_session.Revisions(m_project);
    if (revisions.empty() || revisions.back().number != m_entry.head)
        Find("REPO_PROJECT", "its newest revision is " + std::to_string(m_entry.head) + ", and that of REPO_REVISION is " +
                                 (revisions.empty() ? "none" : std::to_string(revisions.back().number)));
}

void RowAudit::CheckEntry(const RowTable& table, const char* row) {
    if (m_entry.head != m_revision) return;
    const auto compare = [&](const std::string& what, std::string_view entry, std::string_view stored) {
        if (entry != stored) Find("REPO_PROJECT", "its " + what + " is " + Quoted(entry) + ", and that of SM_PROJECT is " + Quoted(stored));
    };
    compare("id", m_entry.id, rowcodec::Id(row));
    compare("name", m_entry.name, TextNamed(table, row, "NAME"));
}

void RowAudit::TakeObjects(const RowTable& table) {
    Each(table, [&](const char* row) {
        if (!table.hasParent) CheckEntry(table, row);
        const RowHead head = rowcodec::Head(table, row);
        const auto [object, isNew] = m_objects.try_emplace(std::string(head.id), Object{&table, head.version, std::string(head.parentId)});
        if (isNew) return;
        if (object->second.table == &table)
            Find(table.name(), "object " + Quoted(head.id) + " stands twice, in the versions " + std::to_string(object->second.version) +
                                   " and " + std::to_string(head.version));
        else
            Find(table.name(),
                 "the id " + Quoted(head.id) + " is that of an object in " + std::string(object->second.table->name()) + " too");
    });
}

void RowAudit::CheckParents() {
    std::vector<std::string> ids;
    std::size_t projects = 0;
    for (auto& [id, object] : m_objects) {
        ids.push_back(id);
        object.isReached = !object.table->hasParent;
        projects += object.isReached ? 1 : 0;
    }
    if (projects != 1) Find("SM_PROJECT", std::to_string(projects) + " rows stand, where there should be one");
    std::sort(ids.begin(), ids.end());
    for (const std::string& id : ids) CheckWayUp(id);
}

/** Tells of the object itself, not of those below it: its parent is missing, or it hangs below itself. */
void RowAudit::CheckWayUp(const std::string& id) {
    std::vector<Object*> way;
    auto at = m_objects.find(id);
    while (!at->second.isReached) {
        Object& object = at->second;
        const auto parent = m_objects.find(object.parent);
        const bool isRing = std::find(way.begin(), way.end(), &object) != way.end();
        if (parent == m_objects.end() || isRing) {
            Find(object.table->name(),
                 "object " + Quoted(at->first) +
                     (isRing ? " hangs below itself" : " hangs below " + Quoted(object.parent) + ", which does not stand"));
            object.isReached = true;
            break;
        }
        way.push_back(&object);
        at = parent;
    }
    for (Object* const passed : way) passed->isReached = true;
}

void RowAudit::CheckRecords() {
    const RowTable& table = Schema::Get().remainInfo();
    std::set<std::pair<std::string, std::string>> known;
    Each(table, [&](const char* row) {
        const RowHead head = rowcodec::Head(table, row);
        const std::string record = "record " + Quoted(head.id) + " of " + Quoted(head.parentId);
        if (!Stands(head.parentId)) Find(table.name(), record + " belongs to nothing that stands");
        if (!known.emplace(head.parentId, head.id).second) Find(table.name(), record + " stands twice");
    });
}

void RowAudit::CheckTexts() {
    const RowTable& table = Schema::Get().langText();
    std::set<std::tuple<std::string, std::string, std::string>> known;
    Each(table, [&](const char* row) {
        const RowHead head = rowcodec::Head(table, row);
        const std::string name(TextNamed(table, row, "NAME")), locale(TextNamed(table, row, "LOCALE")),
            text = name + "[" + locale + "] of " + Quoted(head.id);
        const auto owner = m_objects.find(std::string(head.id));
        if (owner == m_objects.end())
            Find(table.name(), text + " belongs to nothing that stands");
        else if (owner->second.version != head.version)
            Find(table.name(), text + " belongs to version " + std::to_string(head.version) + ", and version " +
                                   std::to_string(owner->second.version) + " stands");
        if (!known.emplace(std::string(head.id), name, locale).second) Find(table.name(), text + " stands twice");
    });
}

void RowAudit::CheckOrders() {
    const std::string_view name = Schema::Get().orders().name;
    std::set<std::pair<std::string, std::string>> known;
    m_session.FetchOrders(m_project, m_revision, [&](std::string_view parent, std::string_view table, std::int64_t, std::string_view ids) {
        const std::string order = "the order of " + std::string(table) + " below " + Quoted(parent);
        if (!Schema::Get().Find(table)) Find(name, order + " is that of no table");
        if (!Stands(parent)) Find(name, order + " belongs to nothing that stands");
        if (!known.emplace(parent, table).second) Find(name, order + " stands twice");
        std::set<std::string> listed;
        for (const std::string& id : SiblingOrder::Split(ids)) {
            if (id.empty()) Find(name, order + " lists an empty id");
            if (!listed.insert(id).second) Find(name, order + " lists " + Quoted(id) + " twice");
        }
    });
}

}  // namespace qv
