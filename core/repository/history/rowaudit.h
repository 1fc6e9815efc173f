#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "core/repository/storesession.h"

namespace qv {

/** Holds the rows of a revision against each other: what readers would not find, or would find twice. */
class RowAudit {
  public:
    RowAudit(StoreSession& session, std::int64_t project, std::int64_t revision)
        : m_session(session), m_project(project), m_revision(revision) {}

    /** A text for each fault. */
    std::vector<std::string> Faults();

  private:
    struct Object {
        const RowTable* table;
        std::int64_t version;
        std::string parent;
        /** Its way up is known to end where it should. */
        bool isReached = false;
    };

    /** The rows of a table that stand, and, told at once, those that end in a revision that is not there. */
    void Each(const RowTable& table, const std::function<void(const char* row)>& take);
    void Find(std::string_view table, const std::string& what) { m_faults.push_back(std::string(table) + ": " + what); }
    bool Stands(std::string_view id) const { return m_objects.count(std::string(id)) != 0; }
    void TakeObjects(const RowTable& table);
    void CheckHead();
    /** Holds the registry's entry against the newest project row, which it repeats. */
    void CheckEntry(const RowTable& table, const char* row);
    void CheckParents();
    void CheckWayUp(const std::string& id);
    void CheckRecords();
    void CheckTexts();
    void CheckOrders();

    StoreSession& m_session;
    std::int64_t m_project, m_revision;
    /** As it was at the beginning. */
    ProjectEntry m_entry;
    std::unordered_map<std::string, Object> m_objects;
    std::vector<std::string> m_faults;
};

}  // namespace qv
