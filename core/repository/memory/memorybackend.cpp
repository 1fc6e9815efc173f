#include "core/repository/memory/memorybackend.h"

#include <algorithm>
#include <functional>
#include <map>
#include <mutex>

namespace qv {

namespace {

/** A cell that owns its text. */
struct StoredCell {
    Cell::Kind kind = Cell::null;
    std::int64_t number = 0;
    std::string text;

    explicit StoredCell(const Cell& cell) : kind(cell.kind), number(cell.number), text(cell.view) {}
    Cell Get() const { return {kind, number, text}; }
    bool operator<(const StoredCell& other) const { return std::tie(kind, number, text) < std::tie(other.kind, other.number, other.text); }
    bool operator==(const StoredCell& other) const = default;
};

using Row = std::vector<StoredCell>;

struct Table {
    TableShape shape;
    std::map<Row, std::shared_ptr<const Row>> rows;
};

/** What the connections of one store share. */
struct Store {
    std::mutex mutex;
    std::mutex writing;
    std::map<std::string, Table> tables;

    Table& Find(const std::string& name) {
        const auto found = tables.find(name);
        if (found == tables.end()) throw StoreError("There is no table " + name + ".");
        return found->second;
    }
};

bool Fits(const StoredCell& cell, Condition::Test test, const StoredCell* parameter) {
    switch (test) {
    case Condition::equal: return cell.kind != Cell::null && cell == *parameter;
    case Condition::atMost: return cell.kind != Cell::null && !(*parameter < cell);
    case Condition::above: return cell.kind != Cell::null && *parameter < cell;
    case Condition::nullOrAbove: return cell.kind == Cell::null || *parameter < cell;
    case Condition::notNull: return cell.kind != Cell::null;
    }
    return false;
}

bool Fits(const Row& row, const std::vector<Condition>& where, const Row& parameters, std::size_t first) {
    for (const Condition& condition : where) {
        const StoredCell* const parameter = condition.test == Condition::notNull ? nullptr : &parameters.at(first++);
        if (!Fits(row[condition.column], condition.test, parameter)) return false;
    }
    return true;
}

Row Owned(std::span<const Cell> cells) {
    Row row;
    row.reserve(cells.size());
    for (const Cell& cell : cells) row.emplace_back(cell);
    return row;
}

class MemorySource : public RowSource {
  public:
    MemorySource(std::shared_ptr<Store> store, const Query& query) : m_store(std::move(store)), m_query(query) {}

    void Start(std::span<const Cell> cells) override {
        const Row parameters = Owned(cells);
        const std::lock_guard lock(m_store->mutex);
        m_found.clear();
        m_at = 0;
        for (const auto& [key, row] : m_store->Find(m_query.table->name).rows)
            if (Fits(*row, m_query.where, parameters, 0)) m_found.push_back(row);
    }

    bool Next(std::span<Cell> row) override {
        if (m_at == m_found.size()) {
            m_found.clear();
            m_at = 0;
            return false;
        }
        const Row& found = *m_found[m_at++];
        for (std::size_t at = 0; at < m_query.columns.size(); ++at) row[at] = found[m_query.columns[at]].Get();
        return true;
    }

  private:
    std::shared_ptr<Store> m_store;
    Query m_query;
    std::vector<std::shared_ptr<const Row>> m_found;
    std::size_t m_at = 0;
};

class MemoryConnection : public StoreConnection {
  public:
    explicit MemoryConnection(std::shared_ptr<Store> store) : m_store(std::move(store)) {}
    ~MemoryConnection() override { Rollback(); }

    std::unique_ptr<RowSource> Prepare(const Query& query) override { return std::make_unique<MemorySource>(m_store, query); }
    std::unique_ptr<RowChange> Prepare(const Change& change) override;
    std::unique_ptr<RowChange> Prepare(const Removal& removal) override;
    std::unique_ptr<RowInsert> PrepareInsert(const TableShape& table) override;
    void MakeTable(const TableShape& table) override {
        const std::lock_guard lock(m_store->mutex);
        if (!m_store->tables.emplace(table.name, Table{table, {}}).second) throw StoreError("There is a table " + table.name + " already.");
        m_undo.push_back([this, name = table.name] { m_store->tables.erase(name); });
    }
    void AddColumns(const TableShape& table, std::size_t count) override {
        const std::lock_guard lock(m_store->mutex);
        Table& stored = m_store->Find(table.name);
        m_undo.push_back([&stored, old = stored] { stored = old; });
        stored.shape = table;
        for (auto& [key, row] : stored.rows) {
            auto longer = std::make_shared<Row>(*row);
            longer->resize(longer->size() + count, StoredCell(Cell()));
            row = std::move(longer);
        }
    }
    void MakeView(const ViewShape&) override {}

    void Begin() override {
        if (m_writing) throw StoreError("A transaction was begun within another.");
        m_store->writing.lock();
        m_writing = true;
    }
    void Commit() override {
        if (!m_writing) throw StoreError("There is no transaction to commit.");
        End();
    }
    void Rollback() noexcept override {
        if (!m_writing) return;
        {
            const std::lock_guard lock(m_store->mutex);
            for (auto undo = m_undo.rbegin(); undo != m_undo.rend(); ++undo) (*undo)();
        }
        End();
    }

    Store& store() { return *m_store; }
    /** Called with the store locked: puts the row there, or takes it away when it is null, and can take that back. */
    void Put(Table& table, const Row& key, std::shared_ptr<const Row> row) {
        if (!m_writing) throw StoreError("A row was written outside of a transaction.");
        const auto found = table.rows.find(key);
        const std::shared_ptr<const Row> old = found == table.rows.end() ? nullptr : found->second;
        m_undo.push_back([&table, key, old] {
            if (old)
                table.rows[key] = old;
            else
                table.rows.erase(key);
        });
        if (row)
            table.rows[key] = std::move(row);
        else
            table.rows.erase(key);
    }

  private:
    void End() noexcept {
        m_undo.clear();
        m_writing = false;
        m_store->writing.unlock();
    }

    std::shared_ptr<Store> m_store;
    bool m_writing = false;
    std::vector<std::function<void()>> m_undo;
};

class MemoryChange : public RowChange {
  public:
    MemoryChange(MemoryConnection& connection, const Change& change) : m_connection(connection), m_change(change) {}

    std::int64_t Run(std::span<const Cell> cells) override {
        const Row parameters = Owned(cells);
        const std::lock_guard lock(m_connection.store().mutex);
        Table& table = m_connection.store().Find(m_change.table->name);
        std::int64_t changed = 0;
        for (const auto& [key, row] : table.rows) {
            if (!Fits(*row, m_change.where, parameters, m_change.set.size())) continue;
            auto made = std::make_shared<Row>(*row);
            for (std::size_t at = 0; at < m_change.set.size(); ++at) (*made)[m_change.set[at]] = parameters[at];
            m_connection.Put(table, key, std::move(made));
            ++changed;
        }
        return changed;
    }

  private:
    MemoryConnection& m_connection;
    Change m_change;
};

class MemoryInsert : public RowInsert {
  public:
    MemoryInsert(MemoryConnection& connection, const TableShape& table) : m_connection(connection), m_table(table) {}

    void Add(std::span<const Cell> cells) override {
        auto row = std::make_shared<Row>(Owned(cells));
        Row key;
        for (const std::size_t part : m_table.key) key.push_back((*row)[part]);
        for (std::size_t at = 0; at < m_table.columns.size(); ++at)
            if (m_table.columns[at].required && (*row)[at].kind == Cell::null)
                throw StoreError("Column " + m_table.name + "." + m_table.columns[at].name + " must have a value.");
        const std::lock_guard lock(m_connection.store().mutex);
        Table& table = m_connection.store().Find(m_table.name);
        if (!m_table.replaces && table.rows.count(key) != 0) throw StoreError("A row of this key stands in table " + m_table.name + ".");
        m_connection.Put(table, key, std::move(row));
    }
    void Finish() override {}

  private:
    MemoryConnection& m_connection;
    const TableShape& m_table;
};

class MemoryRemoval : public RowChange {
  public:
    MemoryRemoval(MemoryConnection& connection, const Removal& removal) : m_connection(connection), m_removal(removal) {}

    std::int64_t Run(std::span<const Cell> cells) override {
        const Row parameters = Owned(cells);
        const std::lock_guard lock(m_connection.store().mutex);
        Table& table = m_connection.store().Find(m_removal.table->name);
        std::vector<Row> keys;
        for (const auto& [key, row] : table.rows)
            if (Fits(*row, m_removal.where, parameters, 0)) keys.push_back(key);
        for (const Row& key : keys) m_connection.Put(table, key, nullptr);
        return static_cast<std::int64_t>(keys.size());
    }

  private:
    MemoryConnection& m_connection;
    Removal m_removal;
};

std::unique_ptr<RowChange> MemoryConnection::Prepare(const Removal& removal) {
    return std::make_unique<MemoryRemoval>(*this, removal);
}

std::unique_ptr<RowChange> MemoryConnection::Prepare(const Change& change) {
    return std::make_unique<MemoryChange>(*this, change);
}

std::unique_ptr<RowInsert> MemoryConnection::PrepareInsert(const TableShape& table) {
    return std::make_unique<MemoryInsert>(*this, table);
}

class MemoryBackend : public StoreBackend {
  public:
    explicit MemoryBackend(std::string name) : m_name(std::move(name)), m_store(std::make_shared<Store>()) {}

    std::string Name() const override { return m_name; }
    State Inspect() override {
        const std::lock_guard lock(m_store->mutex);
        return m_store->tables.empty() ? State::absent : State::tables;
    }
    void Create(std::span<const TableShape> tables, void (*fill)(StoreConnection&)) override {
        MemoryConnection connection(m_store);
        connection.Begin();
        for (const TableShape& table : tables) connection.MakeTable(table);
        fill(connection);
        connection.Commit();
    }
    std::unique_ptr<StoreConnection> Connect() override { return std::make_unique<MemoryConnection>(m_store); }

  private:
    const std::string m_name;
    std::shared_ptr<Store> m_store;
};

}  // namespace

std::shared_ptr<StoreBackend> MakeMemoryBackend(const std::string& name) {
    return std::make_shared<MemoryBackend>(name);
}

}  // namespace qv
