#pragma once

#include <memory>
#include <vector>

#include "core/qvutils/params/ioparams.h"
#include "core/repository/siblingorder.h"
#include "core/repository/storedrow.h"
#include "core/repository/tablerows.h"

namespace qv {

/**
 * Answers reads of one project from tables that were fetched whole, all at one revision. Rows leave it when they are handed out, so
 * that memory goes over to the model; a group that is asked for once more brings its table back, which then stays.
 */
class ProjectReader {
  public:
    explicit ProjectReader(StoreSession& session) : m_session(session) {}

    /** Forgets what was fetched and reads what stood in the revision from now on. A revision of 0 has no rows. */
    void Pin(std::int64_t project, std::int64_t revision);

    /** False when no row of the kind, or no record, stands below the parent. A kind that is not known has none. */
    bool MayHaveRows(std::string_view kindName, std::string_view parent);
    void ReadProject(IOArrayParam& results);
    void ReadKind(const CatalogueKind& kind, std::string_view parent, IOArrayParam& results);
    /** One record for each name: the newest whose owner had the version, or the newest at all. */
    void ReadRecords(std::string_view owner, std::int64_t ownerVersion, bool anyVersion, IOArrayParam& results);

  private:
    struct Table {
        std::unique_ptr<TableRows> rows;
        /** Rows are shared out instead of given away. */
        bool stays = false;
    };

    TableRows& Rows(const RowTable& table);
    /** Fetches the table again when rows below the parent went to a taker that `mayConflict` names. */
    template <class Conflict>
    void Bring(const RowTable& table, std::string_view parent, std::vector<TableRows::Index>& below, Conflict&& mayConflict);
    void Arrange(const RowTable& table, std::string_view parent, std::vector<TableRows::Index>& rows);
    void HandOut(const RowTable& table, RowLayout& layout, TableRows::Index index, std::uintptr_t taker, std::string_view computedType,
                 IOArrayParam& results);
    /** The kind of query that an update subject's definition holds; its own table does not tell. */
    std::string_view TypeFromDefinition(std::string_view subject);
    void ReadOldRecords(std::string_view owner, std::int64_t ownerVersion, IOArrayParam& results);
    RowLayout& Layout(const CatalogueKind* kind, const RowTable& table);

    StoreSession& m_session;
    std::int64_t m_project = 0, m_revision = 0;
    std::vector<Table> m_tables;
    std::unique_ptr<TableRows> m_oldRecords;
    std::unique_ptr<SiblingOrder> m_order;
    std::vector<QvSmartPtr<RowLayout>> m_layouts;
    std::vector<TableRows::Index> m_below, m_others;
    std::vector<std::string_view> m_ids;
    std::vector<std::size_t> m_places;
};

}  // namespace qv
