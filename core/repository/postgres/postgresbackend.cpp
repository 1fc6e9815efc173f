#include "core/repository/postgres/postgresbackend.h"

#include "core/repository/postgres/postgresrows.h"

namespace qv {

namespace {

using namespace postgres;

class PostgresConnection : public StoreConnection {
  public:
    explicit PostgresConnection(const Address& address) : m_link(address) {}

    std::unique_ptr<RowSource> Prepare(const Query& query) override { return std::make_unique<Source>(m_link, query); }
    std::unique_ptr<RowChange> Prepare(const Change& change) override { return std::make_unique<ChangeRows>(m_link, change); }
    std::unique_ptr<RowInsert> PrepareInsert(const TableShape& table) override {
        if (table.replaces) return std::make_unique<ReplaceRows>(m_link, table);
        return std::make_unique<CopyRows>(m_link, table);
    }
    std::unique_ptr<RowChange> Prepare(const Removal& removal) override { return std::make_unique<ChangeRows>(m_link, removal); }
    void MakeTable(const TableShape& table) override { m_link.Run(Sql().CreateTable(table)); }
    void AddColumns(const TableShape& table, std::size_t count) override {
        for (std::size_t at = table.columns.size() - count; at < table.columns.size(); ++at) m_link.Run(Sql().AddColumn(table, at));
    }
    void MakeView(const ViewShape& view) override { m_link.Run(Sql().CreateView(view)); }
    void Begin() override { m_link.Begin(); }
    void Commit() override { m_link.Commit(); }
    void Rollback() noexcept override { m_link.Rollback(); }
    Link& link() { return m_link; }

  private:
    Link m_link;
};

StoreBackend::State StateOf(Link& link) {
    const Result found = link.Run(
        "SELECT count(*), count(CASE WHEN table_name = 'repo_store' THEN 1 END) FROM information_schema.tables"
        " WHERE table_schema = current_schema()");
    const auto count = [&](int column) {
        return GetCell(PQgetvalue(found.get(), 0, column), PQgetlength(found.get(), 0, column), ColumnType::integer).number;
    };
    if (count(0) == 0) return StoreBackend::State::empty;
    return count(1) != 0 ? StoreBackend::State::tables : StoreBackend::State::foreign;
}

class PostgresBackend : public StoreBackend {
  public:
    explicit PostgresBackend(const std::string& location) : m_address(location) {}

    std::string Name() const override { return m_address.Name(); }

    State Inspect() override {
        Link link(m_address);
        return StateOf(link);
    }

    void Create(std::span<const TableShape> tables, void (*fill)(StoreConnection&)) override {
        PostgresConnection connection(m_address);
        try {
            connection.Begin();
            for (const TableShape& table : tables) connection.MakeTable(table);
            fill(connection);
            connection.Commit();
        } catch (const ServerError&) {
            connection.Rollback();
            if (StateOf(connection.link()) != State::tables) throw;  // else another process was faster
        } catch (...) {
            connection.Rollback();
            throw;
        }
    }

    std::unique_ptr<StoreConnection> Connect() override { return std::make_unique<PostgresConnection>(m_address); }

  private:
    const Address m_address;
};

}  // namespace

std::shared_ptr<StoreBackend> MakePostgresBackend(const std::string& location) {
    return std::make_shared<PostgresBackend>(location);
}

}  // namespace qv
