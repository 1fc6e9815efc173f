#include "core/repository/rowwriter.h"

#include <algorithm>

#include "core/repository/celldate.h"

namespace qv {

namespace {

/** What is gathered before it goes out. Bigger batches are better sorted; this much is small beside the model being saved. */
constexpr std::size_t BATCH_BYTES = 64 * 1024 * 1024;
constexpr std::size_t OVERHEAD = 64;

[[noreturn]] void RaiseFor(const StoreError& error, std::string_view table, std::string_view id, const IOObject* object) {
    if (error.reason() != StoreError::failed) throw error;
    throw StoreError(TellRow(table, id, object) + error.message(), error.reason());
}

}  // namespace

std::string TellRow(std::string_view table, std::string_view id, const IOObject* object) {
    std::string text = "table " + std::string(table) + ", id '" + std::string(id) + "'";
    if (object) {
        I18NString path;
        object->getPath(path);
        text += ", object '" + std::string(path.utf8()) + "'";
    }
    return text + ": ";
}

RowWriter::RowWriter(StoreSession& session) : m_session(session), m_tables(Schema::Get().rowTables().size()) {}

RowWriter::~RowWriter() {
    Rollback();
}

void RowWriter::Start(std::int64_t project, std::int64_t base) {
    Rollback();
    m_entry = {};
    m_entry.number = project;
    m_base = base;
}

void RowWriter::Count(std::size_t bytes) {
    m_pending += bytes + OVERHEAD;
    if (m_pending > BATCH_BYTES) Flush();
}

void RowWriter::Insert(const RowTable& table, const char* row, IOObject* object) {
    // an object that nobody counts stands on a stack, where a reference taken and given back would delete it
    const bool counted = object && object->getReferenceCount() > 0;
    m_tables[table.index].rows.push_back({row, counted ? object : nullptr, object});
    Count(rowcodec::Size(row));
}

void RowWriter::End(const RowTable& table, const RowHead& key) {
    m_tables[table.index].ends.push_back({std::string(key.id), std::string(key.parentId), key.version});
    Count(key.id.size() + key.parentId.size());
}

void RowWriter::Order(std::string_view parent, const RowTable& table, std::string ids) {
    const std::size_t bytes = ids.size();
    m_orders.push_back({std::string(parent), std::move(ids), table.name(), 0});
    Count(bytes);
}

void RowWriter::EndOrder(std::string_view parent, std::string_view table, std::int64_t first) {
    m_orders.push_back({std::string(parent), {}, table, first});
    Count(0);
}

void RowWriter::Begin() {
    if (m_begun) return;
    m_session.Begin();
    m_begun = true;
    if (m_entry.number != 0) {
        const std::optional<ProjectEntry> entry = m_session.Project(m_entry.number);
        if (!entry || entry->head != m_base) throw StoreError("", StoreError::movedOn);
        m_entry = *entry;
        return;
    }
    for (const ProjectEntry& entry : m_session.Projects()) m_entry.number = std::max(m_entry.number, entry.number);
    ++m_entry.number;
    m_session.InsertProject(m_entry);
}

void RowWriter::FlushRows(const RowTable& table, PendingTable& pending) {
    const auto before = [](const PendingRow& a, const PendingRow& b) { return rowcodec::Id(a.row) < rowcodec::Id(b.row); };
    if (!std::is_sorted(pending.rows.begin(), pending.rows.end(), before))
        std::stable_sort(pending.rows.begin(), pending.rows.end(), before);
    for (PendingRow& row : pending.rows) {
        try {
            m_session.InsertRow(table, m_entry.number, revision(), row.row);
        } catch (const StoreError& error) {
            RaiseFor(error, table.name(), rowcodec::Id(row.row), row.object);
        }
        RowArena::Release(std::exchange(row.row, nullptr));
    }
    pending.rows.clear();
    try {
        m_session.FinishRows(table);
    } catch (const StoreError& error) {
        RaiseFor(error, table.name(), "", nullptr);
    }
    for (const PendingEnd& end : pending.ends) {
        try {
            m_session.EndRow(table, m_entry.number, revision(), {end.id, end.version, end.parentId, 0});
        } catch (const StoreError& error) {
            RaiseFor(error, table.name(), end.id, nullptr);
        }
    }
    pending.ends.clear();
}

void RowWriter::FlushOrders() {
    for (const PendingOrder& order : m_orders) {
        try {
            if (order.first == 0)
                m_session.InsertOrder(m_entry.number, order.parent, order.table, revision(), order.ids);
            else
                m_session.EndOrder(m_entry.number, order.parent, order.table, order.first, revision());
        } catch (const StoreError& error) {
            RaiseFor(error, "REPO_ORDER", order.parent, nullptr);
        }
    }
    m_orders.clear();
}

void RowWriter::Flush() {
    if (m_pending == 0) return;
    Begin();
    for (const RowTable& table : Schema::Get().rowTables()) FlushRows(table, m_tables[table.index]);
    FlushOrders();
    m_pending = 0;
}

void RowWriter::Commit(const std::string* id, const std::string* name) {
    Flush();
    Begin();
    if (id) m_entry.id = *id;
    if (name) m_entry.name = *name;
    for (const ProjectEntry& other : m_session.Projects())
        if (id && !other.id.empty() && other.id == *id && other.number != m_entry.number)
            throw StoreError("The repository has another project with the id '" + *id + "'.");
    const ProjectEntry advanced{m_entry.number, m_entry.id, m_entry.name, revision()};
    if (!m_session.AdvanceProject(advanced, m_base)) throw StoreError("", StoreError::movedOn);
    m_session.InsertRevision(m_entry.number, revision(), CellOf(QvDate(true)).number);
    m_session.Commit();
    m_begun = false;
}

void RowWriter::Rollback() noexcept {
    if (m_begun) m_session.Rollback();
    m_begun = false;
    Forget();
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
