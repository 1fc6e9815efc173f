#pragma once

#include <libpq-fe.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace bench {

/** The rows of a store in their bulk form, and what it costs to copy them in and to step them with the client library alone. */
class PostgresFloor {
  public:
    /** Reads all tables of the schema that the location leads to. */
    explicit PostgresFloor(const std::string& location) : m_line(PQconnectdb(location.c_str()), PQfinish) {
        const Result names =
            Run("SELECT relname, current_schema() FROM pg_class WHERE relnamespace = current_schema()::regnamespace AND "
                "relkind = 'r'");
        for (int at = 0; at < PQntuples(names.get()); ++at) m_tables.push_back({PQgetvalue(names.get(), at, 0), {}});
        m_schema = PQgetvalue(names.get(), 0, 1);
        for (Table& table : m_tables) {
            m_rows += static_cast<std::size_t>(std::atol(PQgetvalue(Run("SELECT count(*) FROM " + Quoted(table.name)).get(), 0, 0)));
            Run("COPY " + Quoted(table.name) + " TO STDOUT (FORMAT binary)");
            char* bytes = nullptr;
            for (int size; (size = PQgetCopyData(m_line.get(), &bytes, 0)) > 0; PQfreemem(bytes))
                table.rows.append(bytes, static_cast<std::size_t>(size));
            while (Result(PQgetResult(m_line.get()), PQclear)) {
            }
        }
    }

    /** Copies the rows into the same tables with the same keys, made anew in the schema "plain", in one transaction. */
    void Insert() const {
        Run("BEGIN");
        Run("CREATE SCHEMA plain");
        for (const Table& table : m_tables)
            Run("CREATE TABLE plain." + Quoted(table.name) + " (LIKE " + m_schema + "." + Quoted(table.name) + " INCLUDING ALL)");
        for (const Table& table : m_tables) {
            Run("COPY plain." + Quoted(table.name) + " FROM STDIN (FORMAT binary)");
            for (std::size_t at = 0; at < table.rows.size(); at += PART) {
                const std::size_t size = std::min(PART, table.rows.size() - at);
                if (PQputCopyData(m_line.get(), table.rows.data() + at, static_cast<int>(size)) != 1) std::abort();
            }
            if (PQputCopyEnd(m_line.get(), nullptr) != 1) std::abort();
            const Result done(PQgetResult(m_line.get()), PQclear);
            if (PQresultStatus(done.get()) != PGRES_COMMAND_OK) std::abort();
            while (Result(PQgetResult(m_line.get()), PQclear)) {
            }
        }
        Run("COMMIT");
    }
    void Remove() const { Run("SET client_min_messages = warning; DROP SCHEMA IF EXISTS plain CASCADE"); }

    /** One SELECT a table, every value looked at. Gives the bytes. */
    std::size_t Step() const {
        std::size_t bytes = 0;
        for (const Table& table : m_tables) {
            const Result rows(
                PQexecParams(m_line.get(), ("SELECT * FROM " + Quoted(table.name)).c_str(), 0, nullptr, nullptr, nullptr, nullptr, 1),
                PQclear);
            for (int row = 0; row < PQntuples(rows.get()); ++row)
                for (int column = 0; column < PQnfields(rows.get()); ++column)
                    if (!PQgetisnull(rows.get(), row, column))
                        bytes +=
                            static_cast<std::size_t>(PQgetlength(rows.get(), row, column)) + (*PQgetvalue(rows.get(), row, column) != 0);
        }
        return bytes;
    }

    std::size_t Rows() const { return m_rows; }

  private:
    using Result = std::unique_ptr<PGresult, void (*)(PGresult*)>;
    static constexpr std::size_t PART = 64 * 1024;
    struct Table {
        std::string name, rows;
    };

    static std::string Quoted(const std::string& name) { return '"' + name + '"'; }
    Result Run(const std::string& sql) const {
        Result result(PQexec(m_line.get(), sql.c_str()), PQclear);
        const ExecStatusType status = PQresultStatus(result.get());
        if (status == PGRES_FATAL_ERROR || status == PGRES_BAD_RESPONSE) std::abort();
        return result;
    }

    std::unique_ptr<PGconn, void (*)(PGconn*)> m_line;
    std::string m_schema;
    std::vector<Table> m_tables;
    std::size_t m_rows = 0;
};

}  // namespace bench
