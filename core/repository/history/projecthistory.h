#pragma once

#include <functional>
#include <vector>

#include "core/repository/history/historyrows.h"
#include "core/repository/smrepositoryhistory.h"
#include "core/repository/storesession.h"

namespace qv {

SMRepositoryRevision Told(const RevisionEntry& entry);

/** What the rows of a project tell of its past. */
class ProjectHistory {
  public:
    ProjectHistory(StoreSession& session, std::int64_t project) : m_session(session), m_project(project), m_rows(session, project) {}

    std::vector<SMRepositoryRevision> Revisions();
    /** What is different in `to` from what stood in `from`, which may be the later one; a revision of 0 has nothing. */
    std::vector<SMRepositoryChange> Changes(std::int64_t from, std::int64_t to);
    /** How many objects `Changes` would tell of; from nothing at all at the cost of counting rows. */
    SMRepositoryChangeCounts CountChanges(std::int64_t from, std::int64_t to);
    /** Revisions after which a row of one of the names ended, or a folder's, the newest first; none when no row ever had the last name. */
    std::vector<long> LastRevisionsOf(const std::vector<std::string>& names);
    /** The revisions in which the object, its records, texts or parts came, changed or went, by number. */
    std::vector<SMRepositoryRevision> RevisionsOf(std::string_view id);
    /** Each value that stands, those of parts behind the object's own, with the revision that set it. Empty when the object does not stand.
     */
    std::vector<SMRepositoryBlame> Blame(std::string_view id);
    using Watch = std::function<void(bool committing)>;
    /** Removes what is needed by none of the newest `keep` revisions, in one transaction. `watch` is that of SMRepository. */
    SMRepositoryPruned Prune(std::int64_t keep, const Watch& watch);

  private:
    void RemoveBefore(const std::vector<RevisionEntry>& kept, SMRepositoryPruned& pruned, const Watch& watch);
    std::int64_t RemoveRows(std::int64_t oldest, const Watch& watch);
    std::size_t RemovePieces(const std::vector<RevisionEntry>& kept, const Watch& watch);

    StoreSession& m_session;
    std::int64_t m_project;
    HistoryRows m_rows;
};

}  // namespace qv
