#include "core/repository/history/historyrows.h"

#include <map>

namespace qv {

namespace {

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
    using Orders = std::map<std::pair<std::string, std::string>, std::string>;
    const auto fetch = [&](std::int64_t revision) {
        Orders orders;
        m_session.FetchOrders(m_project, revision,
                              [&](std::string_view parent, std::string_view table, std::int64_t, std::string_view ids) {
                                  orders[{std::string(parent), std::string(table)}] = ids;
                              });
        return orders;
    };
    const Orders before = fetch(earlier), after = fetch(later);
    const auto takeMissing = [&](const Orders& orders, const Orders& others) {
        for (const auto& [key, ids] : orders)
            if (const auto other = others.find(key); other == others.end() || other->second != ids) take(key.first);
    };
    takeMissing(before, after);
    takeMissing(after, before);
}

void HistoryRows::Versions(std::string_view id, const std::function<void(const RowTable&, const char*, std::int64_t, std::int64_t)>& take) {
    const std::vector<Cell> parameters = {Cell::Number(m_project), Cell::Text(id)};
    for (const RowTable& table : Schema::Get().rowTables()) {
        const std::size_t owner = &table == &Schema::Get().remainInfo() ? std::size_t{place::parentId} : std::size_t{place::id};
        RowArena arena;
        m_session.FetchWhere(table, {{place::project, Condition::equal}, {owner, Condition::equal}}, parameters, arena,
                             [&](const char* row, std::int64_t first, std::int64_t end) {
                                 take(table, row, first, end);
                                 RowArena::Release(row);
                             });
    }
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

std::vector<std::string> HistoryRows::PieceDigests() {
    const auto source =
        m_session.connection().Prepare(Query{&Schema::Get().pieces(), {piecetable::digest}, {{piecetable::project, Condition::equal}}});
    const Cell parameters[] = {Cell::Number(m_project)};
    std::vector<std::string> digests;
    Cell row[1];
    source->Start(parameters);
    while (source->Next(row)) digests.emplace_back(row[0].view);
    return digests;
}

void HistoryRows::RemovePieces(const std::vector<std::string>& digests) {
    const auto removal = m_session.connection().Prepare(
        Removal{&Schema::Get().pieces(), {{piecetable::project, Condition::equal}, {piecetable::digest, Condition::equal}}});
    for (const std::string& digest : digests) {
        const Cell parameters[] = {Cell::Number(m_project), Cell::Text(digest)};
        removal->Run(parameters);
    }
}

}  // namespace qv
