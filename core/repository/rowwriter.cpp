#include "core/repository/rowwriter.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "core/qvutils/diag/diagnostics.h"
#include "core/repository/celldate.h"

namespace qv {

namespace {

/** What is gathered before it goes out. Bigger batches are better sorted; this much is small beside the model being saved. */
constexpr std::size_t BATCH_BYTES = 64 * 1024 * 1024;
constexpr std::size_t OVERHEAD = 64;
/** How often a transaction is run that the store undoes for the sake of others. */
constexpr int TRIES = 5;
/** Texts of few objects are ended at once; for many it pays to know who has any. */
constexpr std::size_t FEW_OWNERS = 16;
/** How many rows go out between two calls of who watches. */
constexpr std::size_t ROWS_PER_CALL = 256;

[[noreturn]] void RaiseFor(const StoreError& error, std::string_view table, std::string_view id, const IOObject* object) {
    if (error.reason() != StoreError::failed) throw error;
    throw StoreError(TellRow(table, id, object) + error.message(), error.reason());
}

/** For rows that went out together, so that the store alone can tell which one it was. */
[[noreturn]] void RaiseFor(const StoreError& error, std::string_view table) {
    if (error.reason() != StoreError::failed) throw error;
    throw StoreError("table " + std::string(table) + ": " + error.message(), error.reason());
}

}  // namespace

std::string PathOf(const IOObject& object) {
    struct : SMLogSink {
        void Take(const QvLogEvent&, const SMSourceContext*) override {}
    } quiet;
    const SMLogScope scope(quiet);
    I18NString path;
    object.getPath(path);
    return std::string(path.utf8());
}

std::string TellRow(std::string_view table, std::string_view id, const IOObject* object) {
    std::string text = "table " + std::string(table) + ", id '" + std::string(id) + "'";
    if (object) text += ", object '" + PathOf(*object) + "'";
    return text + ": ";
}

RowWriter::RowWriter(StoreSession& session) : m_session(session), m_tables(Schema::Get().rowTables().size()) {}

RowWriter::~RowWriter() {
    Rollback();
}

void RowWriter::Start(std::int64_t project, std::int64_t base) {
    Rollback();
    m_textOwners.reset();
    m_textsEnded = 0;
    m_entry = {};
    m_entry.number = project;
    m_base = base;
    m_gone = m_flushedCount = m_total = 0;
}

std::size_t RowWriter::Gathered() const {
    std::size_t count = m_orders.size();
    for (const PendingTable& table : m_tables) count += table.rows.size() + table.ends.size();
    return count;
}

void RowWriter::Went() {
    if (++m_gone % ROWS_PER_CALL == 0 && m_watcher) m_watcher(m_gone, m_total);
}

void RowWriter::Count(std::size_t bytes) {
    m_pending += bytes + OVERHEAD;
    if (m_pending <= BATCH_BYTES) return;
    try {
        Flush();
    } catch (const StoreError& error) {
        if (error.reason() == StoreError::again) throw StoreError(error.message(), StoreError::busy);
        throw;
    }
}

void RowWriter::Insert(const RowTable& table, const char* row, IOObject* object) {
    if (m_changes) {
        m_changes->After(table, row);
        return RowArena::Release(row);
    }
    // an object that nobody counts stands on a stack, where a reference taken and given back would delete it
    const bool counted = object && object->getReferenceCount() > 0;
    RowUse use(row);
    m_tables[table.index].rows.push_back({row, counted ? object : nullptr, object});
    use.HandOn();
    Count(rowcodec::Size(row));
}

void RowWriter::End(const RowTable& table, const char* row) {
    if (m_changes) return m_changes->Before(table, row);
    const RowHead key = rowcodec::Head(table, row);
    m_tables[table.index].ends.push_back({std::string(key.id), std::string(key.parentId), key.version});
    Count(key.id.size() + key.parentId.size());
}

void RowWriter::Order(std::string_view parent, const RowTable& table, std::string ids) {
    if (m_changes) return m_changes->Order(parent);
    const std::size_t bytes = ids.size();
    m_orders.push_back({std::string(parent), std::move(ids), table.name(), 0});
    Count(bytes);
}

void RowWriter::EndOrder(std::string_view parent, std::string_view table, std::int64_t first) {
    if (m_changes) return m_changes->Order(parent);
    m_orders.push_back({std::string(parent), {}, table, first});
    Count(0);
}

void RowWriter::Begin() {
    if (m_begun) return;
    m_session.Begin();
    m_begun = true;
    if (m_base == 0) {
        // those who make projects go one after the other, or two would take one number
        m_session.LockRegistry();
        m_entry = {};
        for (const ProjectEntry& entry : m_session.Projects()) m_entry.number = std::max(m_entry.number, entry.number);
        ++m_entry.number;
        m_entry.head = revision();
        m_session.InsertProject(m_entry);
        return;
    }
    // what comes first makes other saves of the project wait for this one, and then see that they came too late
    if (!m_session.AdvanceHead(m_entry.number, m_base, revision())) throw StoreError("", StoreError::movedOn);
}

void RowWriter::EndTexts(std::string_view id, std::int64_t version) {
    if (m_textsEnded < FEW_OWNERS) {
        ++m_textsEnded;
        return m_session.EndTexts(m_entry.number, revision(), id, version);
    }
    if (!m_textOwners) m_textOwners = m_session.TextOwners(m_entry.number);
    if (m_textOwners->count(std::string(id)) != 0) m_session.EndTexts(m_entry.number, revision(), id, version);
}

void RowWriter::SendRows(const RowTable& table, const PendingTable& pending) {
    for (const PendingRow& row : pending.rows) {
        try {
            m_session.InsertRow(table, m_entry.number, revision(), row.row);
        } catch (const StoreError& error) {
            RaiseFor(error, table.name(), rowcodec::Id(row.row), row.object);
        }
        Went();
    }
    for (const PendingEnd& end : pending.ends) {
        try {
            m_session.EndRow(table, m_entry.number, revision(), {end.id, end.version, end.parentId, 0});
            if (&table != &Schema::Get().remainInfo()) EndTexts(end.id, end.version);
        } catch (const StoreError& error) {
            RaiseFor(error, table.name(), end.id, nullptr);
        }
        Went();
    }
    try {
        m_session.FinishRows(table);
    } catch (const StoreError& error) {
        RaiseFor(error, table.name());
    }
}

void RowWriter::SendOrders() {
    for (const PendingOrder& order : m_orders) {
        try {
            if (order.first == 0)
                m_session.InsertOrder(m_entry.number, order.parent, order.table, revision(), order.ids);
            else
                m_session.EndOrder(m_entry.number, order.parent, order.table, order.first, revision());
        } catch (const StoreError& error) {
            RaiseFor(error, "REPO_ORDER", order.parent, nullptr);
        }
        Went();
    }
    try {
        m_session.FinishOrders();
    } catch (const StoreError& error) {
        RaiseFor(error, "REPO_ORDER");
    }
}

void RowWriter::Sort() {
    const auto before = [](const PendingRow& a, const PendingRow& b) { return rowcodec::Id(a.row) < rowcodec::Id(b.row); };
    for (PendingTable& table : m_tables)
        if (!std::is_sorted(table.rows.begin(), table.rows.end(), before)) std::stable_sort(table.rows.begin(), table.rows.end(), before);
}

void RowWriter::Send() {
    Begin();
    if (m_pending == 0) return;
    for (const RowTable& table : Schema::Get().rowTables()) SendRows(table, m_tables[table.index]);
    SendOrders();
}

void RowWriter::Flush() {
    Sort();
    Send();
    Forget();
    m_flushed = true;
    m_flushedCount = m_gone;
}

void RowWriter::SendPieces(const std::vector<DocumentRecorder::Piece>& pieces) {
    for (const DocumentRecorder::Piece& piece : pieces) {
        m_session.InsertPiece(m_entry.number, piece);
        Went();
    }
    m_session.FinishPieces();
}

void RowWriter::Close(const std::string* id, const std::string* name, const RevisionEntry& entry) {
    if (id) {
        m_session.LockRegistry();
        for (const ProjectEntry& other : m_session.Projects())
            if (!other.id.empty() && other.id == *id && other.number != m_entry.number)
                throw StoreError("The repository has another project with the id '" + *id +
                                 "'. Save into that one, or give this one another id.");
    }
    if (id && name) m_session.NameProject(m_entry.number, *id, *name);
    m_session.InsertRevision(m_entry.number, entry);
    if (m_watcher) m_watcher(m_gone, m_gone);
    m_session.Commit();
    m_begun = false;
    if (m_savedWatcher) m_savedWatcher(static_cast<long>(revision()));
}

void RowWriter::Commit(const std::string* id, const std::string* name, RevisionEntry entry,
                       const std::vector<DocumentRecorder::Piece>& pieces) {
    entry.number = revision();
    entry.savedAt = CellOf(QvDate(true));
    Sort();
    m_total = m_flushedCount + Gathered() + pieces.size();
    for (int tries = 1;; ++tries) {
        m_gone = m_flushedCount;
        try {
            Send();
            SendPieces(pieces);
            Close(id, name, entry);
            break;
        } catch (const StoreError& error) {
            if (error.reason() != StoreError::again) throw;
            if (m_flushed || tries == TRIES) throw StoreError(error.message(), StoreError::busy);
            // all of it is still here
            Undo();
            std::this_thread::sleep_for(std::chrono::milliseconds(10) * tries);
        }
    }
    Forget();
}

void RowWriter::Undo() noexcept {
    if (m_begun) m_session.Rollback();
    m_begun = false;
}

void RowWriter::Rollback() noexcept {
    Undo();
    Forget();
    m_flushed = false;
}

void RowWriter::Forget() noexcept {
    for (PendingTable& table : m_tables) {
        for (PendingRow& row : table.rows)
            if (row.row) RowArena::Release(row.row);
        table.rows.clear();
        table.ends.clear();
    }
    m_orders.clear();
    m_pending = 0;
}

}  // namespace qv
