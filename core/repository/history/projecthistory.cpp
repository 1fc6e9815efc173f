#include "core/repository/history/projecthistory.h"

#include <algorithm>
#include <map>
#include <set>

#include "core/repository/celldate.h"
#include "core/repository/documents/documentreader.h"
#include "core/repository/history/changelist.h"
#include "core/repository/history/objectrows.h"

namespace qv {

namespace {

I18NString Text(std::string_view text) {
    return I18NString(text);
}

bool IsOfObjects(const RowTable& table) {
    return &table != &Schema::Get().remainInfo() && &table != &Schema::Get().langText();
}

/** The values that one row tells of its owner, by the names that people see. */
std::map<std::string, std::string> ValuesOf(const RowTable& table, const char* row) {
    std::map<std::string, std::string> values;
    const auto text = [&](std::size_t cell) { return TextOf(rowcodec::BodyCell(table, row, cell), table.columns[cell]->kind); };
    const auto named = [&](std::string_view name) { return std::string(TextNamed(table, row, name)); };
    if (&table == &Schema::Get().remainInfo())
        values["record " + std::string(rowcodec::Id(row))] = named("VALUE");
    else if (&table == &Schema::Get().langText())
        values[named("NAME") + "[" + named("LOCALE") + "]"] = named("VALUE");
    else
        for (const std::size_t cell : table.body)
            if (const auto value = text(cell)) values[std::string(table.columns[cell]->name)] = *value;
    return values;
}

bool Stands(const ObjectRows::Holder& holder) {
    return std::any_of(holder.rows.begin(), holder.rows.end(),
                       [](const ObjectRows::Row& row) { return row.end == 0 && IsOfObjects(*row.table); });
}

/** A value as it stands, and the revision that set it. */
struct Standing {
    std::string name, text;
    std::int64_t since;
};

/** By name. A value has stood as far as it reaches back without a gap or another one. */
std::vector<Standing> StandingValues(const ObjectRows::Holder& holder) {
    struct Run {
        std::string text;
        std::int64_t first, end;
    };
    std::map<std::string, std::vector<Run>> runs;
    for (const ObjectRows::Row& row : holder.rows)
        for (const auto& [name, text] : ValuesOf(*row.table, row.row)) runs[name].push_back({text, row.first, row.end});
    std::vector<Standing> standing;
    for (auto& [name, versions] : runs) {
        std::sort(versions.begin(), versions.end(), [](const Run& a, const Run& b) { return a.first > b.first; });
        if (versions.front().end != 0) continue;
        std::int64_t since = versions.front().first;
        for (auto older = versions.begin() + 1; older != versions.end(); ++older) {
            if (older->end != since || older->text != versions.front().text) break;
            since = older->first;
        }
        standing.push_back({name, versions.front().text, since});
    }
    return standing;
}

}  // namespace

SMRepositoryRevision Told(const RevisionEntry& entry) {
    return {static_cast<long>(entry.number),
            DateOf(entry.savedAt.number),
            Text(entry.author),
            Text(entry.message),
            entry.document.has_value(),
            Text(entry.document ? entry.document->digest : std::string()),
            entry.document ? static_cast<std::size_t>(entry.document->bytes) : 0};
}

std::vector<SMRepositoryRevision> ProjectHistory::Revisions() {
    std::vector<SMRepositoryRevision> revisions;
    for (const RevisionEntry& entry : m_session.Revisions(m_project)) revisions.push_back(Told(entry));
    return revisions;
}

std::vector<SMRepositoryChange> ProjectHistory::Changes(std::int64_t from, std::int64_t to) {
    const bool backwards = from > to;
    const std::int64_t earlier = std::min(from, to), later = std::max(from, to);
    ChangeList list;
    RowArena arena;
    const auto take = [&](const RowTable& table, const char* row, bool stoodEarlier) {
        stoodEarlier != backwards ? list.Before(table, row) : list.After(table, row);
        RowArena::Release(row);
    };
    for (const RowTable& table : Schema::Get().rowTables())
        m_rows.Changed(table, earlier, later, arena, [&](const char* row, bool stoodEarlier) { take(table, row, stoodEarlier); });
    m_rows.ChangedOrders(earlier, later, [&](std::string_view parent) { list.Order(parent); });

    NameIndex names;
    if (from > 0) names.Fetch(m_session, m_project, from);
    if (to > 0) names.Fetch(m_session, m_project, to);
    return list.Build(names);
}

SMRepositoryChangeCounts ProjectHistory::CountChanges(std::int64_t from, std::int64_t to) {
    SMRepositoryChangeCounts counts;
    if (from > 0) {
        for (const SMRepositoryChange& change : Changes(from, to))
            ++(change.what == SMRepositoryChange::added     ? counts.added
               : change.what == SMRepositoryChange::removed ? counts.removed
                                                            : counts.changed);
        return counts;
    }
    for (const RowTable& table : Schema::Get().rowTables())
        if (IsOfObjects(table)) counts.added += static_cast<std::size_t>(m_rows.CountStanding(table, to));
    m_session.RequireRevision(m_project, to);
    return counts;
}

std::vector<long> ProjectHistory::LastRevisionsOf(const std::vector<std::string>& names) {
    std::set<std::int64_t> revisions;
    bool isKnown = false;
    const auto take = [&](std::int64_t end) {
        if (end > 1) revisions.insert(end - 1);
    };
    for (const RowTable& table : Schema::Get().rowTables()) {
        if (!IsOfObjects(table)) continue;
        // folders leave no trace in addresses, and yet what they hold has another one when they move
        const bool isFolder = table.name() == "SM_SECTION_TYPE" || table.name() == "SM_QUERY_ITEM_FOLDER";
        if (isFolder) m_rows.Ends(table, 0, {}, take);
        if (table.nameColumn < 0) continue;
        const std::size_t column = table.ShapePlace(static_cast<std::size_t>(table.nameColumn));
        for (const std::string& name : names) {
            if (name.empty()) continue;
            m_rows.Ends(table, column, name, [&](std::int64_t end) {
                isKnown |= name == names.back();
                take(end);
            });
        }
    }
    if (!isKnown) return {};
    return {revisions.rbegin(), revisions.rend()};
}

std::vector<SMRepositoryRevision> ProjectHistory::RevisionsOf(std::string_view id) {
    std::set<std::int64_t> numbers;
    const ObjectRows object(m_session, m_project, id);
    for (const ObjectRows::Holder& holder : object.Holders())
        for (const ObjectRows::Row& row : holder.rows) {
            numbers.insert(row.first);
            if (row.end != 0) numbers.insert(row.end);
        }
    std::vector<SMRepositoryRevision> revisions;
    for (const RevisionEntry& entry : m_session.Revisions(m_project))
        if (numbers.count(entry.number) != 0) revisions.push_back(Told(entry));
    return revisions;
}

std::vector<SMRepositoryBlame> ProjectHistory::Blame(std::string_view id) {
    const ObjectRows object(m_session, m_project, id);
    if (!Stands(object.Holders().front())) return {};
    std::map<std::int64_t, SMRepositoryRevision> revisions;
    for (const RevisionEntry& entry : m_session.Revisions(m_project)) revisions.emplace(entry.number, Told(entry));
    std::map<std::pair<std::string, std::size_t>, std::vector<Standing>> byName;
    for (std::size_t at = 0; at < object.Holders().size(); ++at)
        if (Stands(object.Holders()[at])) byName[{object.PartName(at), at}] = StandingValues(object.Holders()[at]);
    std::vector<SMRepositoryBlame> blame;
    for (const auto& [part, values] : byName)
        for (const Standing& value : values) {
            SMRepositoryBlame line{Text(part.first.empty() ? value.name : part.first + "." + value.name), Text(value.text), {}};
            if (const auto known = revisions.find(value.since); known != revisions.end())
                line.revision = known->second;
            else
                line.revision.number = static_cast<long>(value.since);  // pruned: at least since then
            blame.push_back(std::move(line));
        }
    return blame;
}

std::int64_t ProjectHistory::RemoveRows(std::int64_t oldest, const Watch& watch) {
    std::int64_t rows = 0;
    for (const RowTable& table : Schema::Get().rowTables()) {
        watch(false);
        rows += m_rows.RemoveEnded(table.shape, place::end, oldest);
    }
    return rows + m_rows.RemoveEnded(Schema::Get().orders(), ordertable::end, oldest);
}

std::size_t ProjectHistory::RemovePieces(const std::vector<RevisionEntry>& kept, const Watch& watch) {
    std::unordered_set<std::string> needed;
    DocumentReader reader(m_session, m_project);
    for (const RevisionEntry& entry : kept)
        if (entry.document) reader.Collect(*entry.document, needed);
    std::vector<std::string> unneeded;
    m_session.EachPiece(m_project, [&](const std::string& digest) {
        if (needed.count(digest) == 0) unneeded.push_back(digest);
    });
    m_rows.RemovePieces(unneeded, [&] { watch(false); });
    return unneeded.size();
}

void ProjectHistory::RemoveBefore(const std::vector<RevisionEntry>& kept, SMRepositoryPruned& pruned, const Watch& watch) {
    pruned.oldest = static_cast<long>(kept.front().number);
    pruned.revisions = static_cast<long>(m_rows.RemoveRevisionsBefore(pruned.oldest));
    pruned.rows = static_cast<long>(RemoveRows(pruned.oldest, watch));
    pruned.pieces = static_cast<long>(RemovePieces(kept, watch));
}

SMRepositoryPruned ProjectHistory::Prune(std::int64_t keep, const Watch& watch) {
    const Watch watched = watch ? watch : [](bool) {};
    SMRepositoryPruned pruned;
    m_session.Begin();
    try {
        // a change of the registry's entry, even to what it is, holds off saves, which might bring back a piece that is about to go
        const std::optional<ProjectEntry> entry = m_session.Project(m_project);
        if (!entry || !m_session.AdvanceHead(m_project, entry->head, entry->head)) throw StoreError("", StoreError::movedOn);
        std::vector<RevisionEntry> revisions = m_session.Revisions(m_project);
        const std::size_t kept = std::min(revisions.size(), static_cast<std::size_t>(std::max<std::int64_t>(keep, 1)));
        revisions.erase(revisions.begin(), revisions.end() - static_cast<std::ptrdiff_t>(kept));
        if (!revisions.empty()) RemoveBefore(revisions, pruned, watched);
        watched(true);
        m_session.Commit();
    } catch (...) {
        m_session.Rollback();
        throw;
    }
    return pruned;
}

}  // namespace qv
