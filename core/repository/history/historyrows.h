#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/repository/siblingorder.h"

namespace qv {

/** Questions about rows that ended, asked seldom: their statements are prepared for each use. Rows given are the receiver's. */
class HistoryRows {
  public:
    HistoryRows(StoreSession& session, std::int64_t project) : m_session(session), m_project(project) {}

    /** The rows that stood in `earlier` and not in `later` (then `stoodEarlier`), or the other way round. */
    void Changed(const RowTable& table, std::int64_t earlier, std::int64_t later, RowArena& arena,
                 const std::function<void(const char* row, bool stoodEarlier)>& take);
    /** The parents whose children of one table, as far as both revisions have them, stand in another order. */
    void ChangedOrders(std::int64_t earlier, std::int64_t later, const std::function<void(std::string_view parent)>& take);
    /** Every row that ever stood in which a column has a text; or, without a text, every one that has ended. Told by its end, 0 for none.
     */
    void Ends(const RowTable& table, std::size_t column, std::string_view text, const std::function<void(std::int64_t end)>& take);
    std::int64_t CountStanding(const RowTable& table, std::int64_t revision);

    /** Takes away the rows that had ended when `oldest` came. */
    std::int64_t RemoveEnded(const TableShape& table, std::size_t endColumn, std::int64_t oldest);
    std::int64_t RemoveRevisionsBefore(std::int64_t oldest);
    void RemovePieces(const std::vector<std::string>& digests, const std::function<void()>& watch);

  private:
    /** The ids of children in their order, by their parent. */
    using ChildIds = std::map<std::string, std::vector<std::string>>;

    ChildIds OrderedChildren(const RowTable& table, std::int64_t revision, const SiblingOrder& order, ChildIds parents);

    StoreSession& m_session;
    std::int64_t m_project;
};

}  // namespace qv
