#pragma once

#include <functional>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "core/qvutils/persist/ioobject.h"
#include "core/repository/history/changelist.h"
#include "core/repository/storesession.h"

namespace qv {

/** The path of an object, for a message; what an object logs because it has none is dropped. */
std::string PathOf(const IOObject& object);
/** "table T, id 'I', object 'P': ", the beginning of what is told of a row that failed. `object` may be null. */
std::string TellRow(std::string_view table, std::string_view id, const IOObject* object);

/**
 * Gathers what a save writes and brings it to the store table by table, in the order of the keys. The transaction begins with the
 * first rows that go out, so a save that writes nothing takes no lock; the project is then advanced from the revision that the save
 * is based on, so that of several saves of one revision a single one gets beyond that. A save that fits into one batch is run again
 * when the store asks for that. Failures raise StoreError, whose text names table, id and object.
 */
class RowWriter {
  public:
    using Watcher = std::function<void(std::size_t done, std::size_t total)>;

    explicit RowWriter(StoreSession& session);
    ~RowWriter();

    /** Everything goes to the list from now on, and nothing to the store; null ends that. The list is borrowed. */
    void SetComparison(ChangeList* changes) { m_changes = changes; }
    bool Comparing() const { return m_changes != nullptr; }

    /**
     * Called now and then with how much has gone out, and of how much; 0 until all is gathered. The two are equal in its last call,
     * directly before the commit. It may throw.
     */
    void WatchSending(Watcher watcher) { m_watcher = std::move(watcher); }
    /** Called with the revision directly behind the commit; it may not throw. */
    void WatchSaved(std::function<void(long revision)> watcher) { m_savedWatcher = std::move(watcher); }

    /** Begins anew, for a project that is not there yet when the number is 0. */
    void Start(std::int64_t project, std::int64_t base);
    /** Takes the row over. `object` is held until the row went out when it is counted, else borrowed; it may be null. */
    void Insert(const RowTable& table, const char* row, IOObject* object);
    /** Ends a stored row, and the texts of its version in other locales. The row is not kept. */
    void End(const RowTable& table, const char* row);
    void Order(std::string_view parent, const RowTable& table, std::string ids);
    void EndOrder(std::string_view parent, std::string_view table, std::int64_t first);

    bool WroteNothing() const { return !m_begun && m_pending == 0; }
    /**
     * Sends all, with the pieces of the document, the revision and the registry's entry, and commits. The revision's number and moment
     * are filled in here. `name` and `id` are null when they did not change.
     */
    void Commit(const std::string* id, const std::string* name, RevisionEntry entry, const std::vector<DocumentRecorder::Piece>& pieces);
    void Rollback() noexcept;

    std::int64_t project() const { return m_entry.number; }
    std::int64_t revision() const { return m_base + 1; }

  private:
    struct PendingRow {
        const char* row;
        QvSmartPtr<IOObject> held;
        IOObject* object;
    };
    struct PendingEnd {
        std::string id, parentId;
        std::int64_t version;
    };
    struct PendingTable {
        std::vector<PendingRow> rows;
        std::vector<PendingEnd> ends;
    };
    struct PendingOrder {
        std::string parent, ids;
        std::string_view table;
        /** Of the record to end; 0 for one to write. */
        std::int64_t first;
    };

    void Begin();
    void Sort();
    /** Brings to the store what was gathered, which stays gathered. */
    void Send();
    void SendRows(const RowTable& table, const PendingTable& pending);
    void SendOrders();
    void Flush();
    /** Writes the revision and the registry's entry, and commits. */
    void Close(const std::string* id, const std::string* name, const RevisionEntry& entry);
    void SendPieces(const std::vector<DocumentRecorder::Piece>& pieces);
    void EndTexts(std::string_view id, std::int64_t version);
    void Undo() noexcept;
    void Count(std::size_t bytes);
    std::size_t Gathered() const;
    /** One thing more has gone out. */
    void Went();
    void Forget() noexcept;

    StoreSession& m_session;
    ChangeList* m_changes = nullptr;
    ProjectEntry m_entry;
    std::int64_t m_base = 0;
    bool m_begun = false;
    /** Rows of the running transaction have been let go. */
    bool m_flushed = false;
    /** The objects that have texts in the store; looked up when many rows end. */
    std::optional<std::unordered_set<std::string>> m_textOwners;
    std::size_t m_textsEnded = 0;
    std::vector<PendingTable> m_tables;
    std::vector<PendingOrder> m_orders;
    /** Bytes gathered, and a little for each thing gathered. */
    std::size_t m_pending = 0;
    Watcher m_watcher;
    std::function<void(long revision)> m_savedWatcher;
    /** What has gone out in this save, what of that may be run again, and what goes out in all; 0 for not yet known. */
    std::size_t m_gone = 0, m_flushedCount = 0, m_total = 0;
};

}  // namespace qv
