#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/repository/documents/documentrecorder.h"
#include "core/repository/rowcodec.h"
#include "core/repository/smrepository.h"

namespace qv {

/** The registry's entry of a project. */
struct ProjectEntry {
    std::int64_t number = 0;
    std::string id, name;
    std::int64_t head = 0;
};

/** What the registry tells of a revision. */
struct RevisionEntry {
    std::int64_t number = 0;
    Cell savedAt;
    std::string author, message;
    /** None when the save came without a document. */
    std::optional<DocumentRoot> document;
};

/**
 * A connection with the statements that a context needs: a fixed number for each table, each prepared at its first use and kept.
 * Nothing that is asked here depends on how many objects a model has.
 */
class StoreSession {
  public:
    explicit StoreSession(StoreBackend& backend);

    std::vector<ProjectEntry> Projects();
    std::optional<ProjectEntry> Project(std::int64_t number);
    /** By number. */
    std::vector<RevisionEntry> Revisions(std::int64_t project);
    std::optional<RevisionEntry> Revision(std::int64_t project, std::int64_t revision);
    /** A piece of a document, packed. */
    std::optional<std::string> Piece(std::int64_t project, const std::string& digest);
    /** The digests of all pieces of a project's documents. */
    void EachPiece(std::int64_t project, const std::function<void(const std::string& digest)>& take);
    /**
     * Raises StoreError when the revision is not there. As a prune takes a revision away together with its rows, what was read of it before
     * is whole when it is still there.
     */
    void RequireRevision(std::int64_t project, std::int64_t revision);
    /** The rows of a table that stood in a revision, which must still be there behind the last. The compact rows are the receiver's. */
    void FetchRows(const RowTable& table, std::int64_t project, std::int64_t revision, RowArena& arena,
                   const std::function<void(const char* row)>& take);
    /** The rows that fit the conditions; the statement is prepared for this once. */
    void FetchWhere(const RowTable& table, std::vector<Condition> where, const std::vector<Cell>& parameters, RowArena& arena,
                    const std::function<void(const char* row, std::int64_t first, std::int64_t end)>& take);
    /** The same for several sets of parameters, one after the other. */
    void FetchWhereEach(const RowTable& table, std::vector<Condition> where, const std::vector<std::vector<Cell>>& parameters,
                        RowArena& arena, const std::function<void(const char* row, std::int64_t first, std::int64_t end)>& take);
    /** The orders that stood in a revision, which must still be there behind the last; 0 has none. */
    void FetchOrders(
        std::int64_t project, std::int64_t revision,
        const std::function<void(std::string_view parent, std::string_view table, std::int64_t first, std::string_view ids)>& take);
    /** What a table's ids are unique by, as one text. */
    static std::string EndedKey(const RowTable& table, const RowHead& head);
    /** The last version among the ended rows of each id, by `EndedKey`. */
    std::unordered_map<std::string, std::int64_t> FetchEndedVersions(const RowTable& table, std::int64_t project);
    /** The same for one id; 0 when none of its rows has ended. */
    std::int64_t EndedVersion(const RowTable& table, std::int64_t project, const RowHead& key);
    /** The rows that have ended, replaced ones among them. */
    void FetchEndedRows(const RowTable& table, std::int64_t project, RowArena& arena, const std::function<void(const char* row)>& take);

    void Begin() { m_connection->Begin(); }
    void Commit() { m_connection->Commit(); }
    void Rollback() noexcept { m_connection->Rollback(); }
    void InsertRow(const RowTable& table, std::int64_t project, std::int64_t revision, const char* row);
    void FinishRows(const RowTable& table);
    void EndRow(const RowTable& table, std::int64_t project, std::int64_t revision, const RowHead& key);
    /** The objects that have texts in other locales, now or in a version that ended. */
    std::unordered_set<std::string> TextOwners(std::int64_t project);
    /** Ends what stands of the texts of a version of an object, if there are any. */
    void EndTexts(std::int64_t project, std::int64_t revision, std::string_view id, std::int64_t version);
    void InsertOrder(std::int64_t project, std::string_view parent, std::string_view table, std::int64_t revision, std::string_view ids);
    void EndOrder(std::int64_t project, std::string_view parent, std::string_view table, std::int64_t first, std::int64_t revision);
    void FinishOrders();
    /** Until the transaction ends, nobody else makes a project or gives one another id. */
    void LockRegistry();
    void InsertProject(const ProjectEntry& entry);
    /** False when the head is not the one expected: another save came first. */
    bool AdvanceHead(std::int64_t project, std::int64_t expected, std::int64_t head);
    void NameProject(std::int64_t project, const std::string& id, const std::string& name);
    void InsertRevision(std::int64_t project, const RevisionEntry& entry);
    void InsertPiece(std::int64_t project, const DocumentRecorder::Piece& piece);
    void FinishPieces();

    StoreConnection& connection() { return *m_connection; }
    /** Of the store, for messages. */
    const std::string& Name() const { return m_name; }
    SMRepositoryCounters& counters() { return m_counters; }

  private:
    /** The statements on one table of rows. */
    struct TableStatements {
        std::unique_ptr<RowSource> standing, ended, endedOfId;
        std::unique_ptr<RowInsert> insert;
        std::unique_ptr<RowChange> end;
    };

    RowSource& Prepared(std::unique_ptr<RowSource>& slot, const Query& query);
    RowChange& Prepared(std::unique_ptr<RowChange>& slot, const Change& change);
    RowInsert& PreparedInsert(std::unique_ptr<RowInsert>& slot, const TableShape& table);
    TableStatements& Of(const RowTable& table) { return m_tables[table.index]; }
    RowSource& EndedRows(const RowTable& table, std::int64_t project);
    void AddOne(std::unique_ptr<RowInsert>& slot, const TableShape& table, std::initializer_list<Cell> row);
    /** Takes the rows of a source that was started. */
    void Take(const RowTable& table, RowSource& source, RowArena& arena, const std::function<void(const char* row)>& take);
    /** Raises StoreError for a cell at hand that is not what its column takes: a store of the caller's may hand out anything. */
    void CheckKinds(const RowTable& table, std::size_t heads) const;
    /** A row of the cells at hand. */
    const char* Encode(const RowTable& table, RowArena& arena);
    /** The columns of a row, in the order of key, place and cells. */
    static std::vector<std::size_t> RowColumns(const RowTable& table);
    static ProjectEntry Entry(std::span<const Cell> row);
    Query RevisionQuery(std::vector<Condition> where) const;
    static std::vector<RevisionEntry> TakeRevisions(RowSource& source);

    const Schema& m_schema;
    const std::string m_name;
    std::unique_ptr<StoreConnection> m_connection;
    SMRepositoryCounters m_counters;
    std::vector<TableStatements> m_tables;
    std::unique_ptr<RowSource> m_projects, m_project, m_revisions, m_revision, m_piece, m_pieceDigests, m_orders, m_textOwners;
    std::unique_ptr<RowChange> m_lockRegistry, m_advanceHead, m_nameProject, m_endOrder, m_endTexts;
    std::unique_ptr<RowInsert> m_insertProject, m_insertRevision, m_insertPiece, m_insertOrder;
    std::vector<Cell> m_cells;
};

}  // namespace qv
