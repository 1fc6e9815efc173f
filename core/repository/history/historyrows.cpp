#include "core/repository/history/historyrows.h"

#include <unordered_set>

namespace qv {

namespace {

/** Those of the ids that are among the others, too. */
std::vector<std::string> OnlyOf(std::vector<std::string> ids, const std::vector<std::string>& others) {
    const std::unordered_set<std::string> known(others.begin(), others.end());
    std::erase_if(ids, [&](const std::string& id) { return known.count(id) == 0; });
    return ids;
}

std::vector<Condition> StoodEarlierOnly(std::size_t first, std::size_t end) {
    return {{first, Condition::atMost}, {end, Condition::above}, {end, Condition::atMost}};
}

std::vector<Condition> StandsLaterOnly(std::size_t first, std::size_t end) {
    return {{first, Condition::above}, {first, Condition::atMost}, {end, Condition::nullOrAbove}};
}

std::vector<Condition> OfProject(std::size_t project, std::vector<Condition> conditions) {
    conditions.insert(conditions.begin(), {project, Condition::equal});
    return conditions;
}

}  // namespace

void HistoryRows::Changed(const RowTable& table, std::int64_t earlier, std::int64_t later, RowArena& arena,
                          const std::function<void(const char*, bool)>& take) {
    const Cell project = Cell::Number(m_project), from = Cell::Number(earlier), to = Cell::Number(later);
    m_session.FetchWhere(table, OfProject(place::project, StoodEarlierOnly(place::first, place::end)), {project, from, from, to}, arena,
                         [&](const char* row, std::int64_t, std::int64_t) { take(row, true); });
    m_session.FetchWhere(table, OfProject(place::project, StandsLaterOnly(place::first, place::end)), {project, from, to, to}, arena,
                         [&](const char* row, std::int64_t, std::int64_t) { take(row, false); });
}

void HistoryRows::ChangedOrders(std::int64_t earlier, std::int64_t later, const std::function<void(std::string_view)>& take) {
    SiblingOrder before, after;
    before.Fetch(m_session, m_project, earlier);
    after.Fetch(m_session, m_project, later);
    std::map<const RowTable*, ChildIds> suspects;
    const auto suspect = [&](const SiblingOrder& orders, const SiblingOrder& others) {
        orders.Each([&](std::string_view parent, std::string_view table, const SiblingOrder::Record& record) {
            const SiblingOrder::Record* const other = others.Find(parent, table);
            if (other && other->ids == record.ids) return;
            if (const RowTable* const known = Schema::Get().Find(table)) suspects[known].try_emplace(std::string(parent));
        });
    };
    suspect(before, after);
    suspect(after, before);
    for (const auto& [table, parents] : suspects) {
        const ChildIds earlierIds = OrderedChildren(*table, earlier, before, parents),
                       laterIds = OrderedChildren(*table, later, after, parents);
        for (const auto& [parent, none] : parents)
            if (OnlyOf(earlierIds.at(parent), laterIds.at(parent)) != OnlyOf(laterIds.at(parent), earlierIds.at(parent))) take(parent);
    }
}

HistoryRows::ChildIds HistoryRows::OrderedChildren(const RowTable& table, std::int64_t revision, const SiblingOrder& order,
                                                   ChildIds parents) {
    RowArena arena;
    m_session.FetchRows(table, m_project, revision, arena, [&](const char* row) {
        if (const auto parent = parents.find(std::string(rowcodec::ParentId(table, row))); parent != parents.end())
            parent->second.emplace_back(rowcodec::Id(row));
        RowArena::Release(row);
    });
    for (auto& [parent, ids] : parents) {
        std::vector<std::size_t> places;
        order.Arrange(order.Find(parent, table.name()), {ids.begin(), ids.end()}, places);
        std::vector<std::string> ordered;
        for (const std::size_t at : places) ordered.push_back(std::move(ids[at]));
        ids = std::move(ordered);
    }
    return parents;
}

void HistoryRows::Ends(const RowTable& table, std::size_t column, std::string_view text, const std::function<void(std::int64_t)>& take) {
    std::vector<Condition> where = {{place::project, Condition::equal}};
    std::vector<Cell> parameters = {Cell::Number(m_project)};
    if (text.empty()) {
        where.push_back({place::end, Condition::notNull});
    } else {
        where.push_back({column, Condition::equal});
        parameters.push_back(Cell::Text(text));
    }
    const auto source = m_session.connection().Prepare(Query{&table.shape, {place::end}, std::move(where)});
    source->Start(parameters);
    Cell row[1];
    while (source->Next(row)) take(row[0].kind == Cell::null ? 0 : row[0].number);
}

std::int64_t HistoryRows::CountStanding(const RowTable& table, std::int64_t revision) {
    const auto source = m_session.connection().Prepare(
        Query{&table.shape,
              {place::version},
              {{place::project, Condition::equal}, {place::first, Condition::atMost}, {place::end, Condition::nullOrAbove}}});
    const Cell parameters[] = {Cell::Number(m_project), Cell::Number(revision), Cell::Number(revision)};
    source->Start(parameters);
    std::int64_t count = 0;
    Cell row[1];
    while (source->Next(row)) ++count;
    return count;
}

std::int64_t HistoryRows::RemoveEnded(const TableShape& table, std::size_t endColumn, std::int64_t oldest) {
    const Cell parameters[] = {Cell::Number(m_project), Cell::Number(oldest)};
    return m_session.connection()
        .Prepare(Removal{&table, {{place::project, Condition::equal}, {endColumn, Condition::atMost}}})
        ->Run(parameters);
}

std::int64_t HistoryRows::RemoveRevisionsBefore(std::int64_t oldest) {
    const Cell parameters[] = {Cell::Number(m_project), Cell::Number(oldest - 1)};
    return m_session.connection()
        .Prepare(
            Removal{&Schema::Get().revisions(), {{revisiontable::project, Condition::equal}, {revisiontable::revision, Condition::atMost}}})
        ->Run(parameters);
}

void HistoryRows::RemovePieces(const std::vector<std::string>& digests, const std::function<void()>& watch) {
    const auto removal = m_session.connection().Prepare(
        Removal{&Schema::Get().pieces(), {{piecetable::project, Condition::equal}, {piecetable::digest, Condition::equal}}});
    for (const std::string& digest : digests) {
        const Cell parameters[] = {Cell::Number(m_project), Cell::Text(digest)};
        watch();
        removal->Run(parameters);
    }
}

}  // namespace qv
