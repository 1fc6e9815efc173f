#pragma once

#include <sqlite3.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace bench {

/** The rows of a store as plain values, and what it costs to insert and to step them with the C API alone. */
class SqliteFloor {
  public:
    /** Reads all tables of a store, and the statements that made them. */
    explicit SqliteFloor(const std::string& store) {
        sqlite3* database = Open(store);
        Each(database, "SELECT name, sql FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite_%'", [&](sqlite3_stmt* row) {
            m_tables.push_back({Text(row, 0), Text(row, 1), 0, {}});
        });
        Each(database, "SELECT sql FROM sqlite_master WHERE type='index' AND sql IS NOT NULL",
             [&](sqlite3_stmt* row) { m_indexes.push_back(Text(row, 0)); });
        for (Table& table : m_tables)
            Each(database, "SELECT * FROM \"" + table.name + "\"", [&](sqlite3_stmt* row) {
                table.columns = sqlite3_column_count(row);
                for (int i = 0; i < table.columns; ++i) table.values.push_back(sqlite3_value_dup(sqlite3_column_value(row, i)));
            });
        sqlite3_close(database);
    }
    ~SqliteFloor() {
        for (Table& table : m_tables)
            for (sqlite3_value* value : table.values) sqlite3_value_free(value);
    }
    SqliteFloor(const SqliteFloor&) = delete;
    SqliteFloor& operator=(const SqliteFloor&) = delete;

    /** Prepared inserts of the same rows into the same tables with the same keys and settings, in one transaction. */
    void Insert(const std::string& store) const {
        sqlite3* database = Open(store);
        for (const char* setting :
             {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=FULL", "PRAGMA cache_size=-65536", "PRAGMA temp_store=MEMORY", "BEGIN"})
            Run(database, setting);
        for (const Table& table : m_tables) Run(database, table.statement);
        for (const Table& table : m_tables) InsertTable(database, table);
        for (const std::string& index : m_indexes) Run(database, index);
        Run(database, "COMMIT");
        sqlite3_close(database);
    }

    /** One SELECT a table, every value looked at. Gives the bytes of the texts. */
    std::size_t Step(const std::string& store) const {
        std::size_t bytes = 0;
        sqlite3* database = Open(store);
        for (const Table& table : m_tables)
            Each(database, "SELECT * FROM \"" + table.name + "\"", [&](sqlite3_stmt* row) {
                for (int i = 0; i < sqlite3_column_count(row); ++i) {
                    if (sqlite3_column_type(row, i) == SQLITE_INTEGER)
                        bytes += sqlite3_column_int64(row, i) != 0;
                    else if (sqlite3_column_blob(row, i))
                        bytes += static_cast<std::size_t>(sqlite3_column_bytes(row, i));
                }
            });
        sqlite3_close(database);
        return bytes;
    }

    std::size_t Rows() const {
        std::size_t rows = 0;
        for (const Table& table : m_tables)
            if (table.columns > 0) rows += table.values.size() / static_cast<std::size_t>(table.columns);
        return rows;
    }

  private:
    struct Table {
        std::string name, statement;
        int columns;
        std::vector<sqlite3_value*> values;
    };

    static sqlite3* Open(const std::string& store) {
        sqlite3* database = nullptr;
        if (sqlite3_open(store.c_str(), &database) != SQLITE_OK) std::abort();
        return database;
    }
    static void Run(sqlite3* database, const std::string& sql) {
        if (sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
    }
    static std::string Text(sqlite3_stmt* row, int column) { return reinterpret_cast<const char*>(sqlite3_column_text(row, column)); }
    template <class Visit>
    static void Each(sqlite3* database, const std::string& sql, Visit visit) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) std::abort();
        while (sqlite3_step(statement) == SQLITE_ROW) visit(statement);
        sqlite3_finalize(statement);
    }
    static void InsertTable(sqlite3* database, const Table& table) {
        if (table.values.empty()) return;
        std::string sql = "INSERT INTO \"" + table.name + "\" VALUES (?";
        for (int i = 1; i < table.columns; ++i) sql += ",?";
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(database, (sql + ")").c_str(), -1, &statement, nullptr) != SQLITE_OK) std::abort();
        for (std::size_t at = 0; at < table.values.size();) {
            for (int i = 1; i <= table.columns; ++i) sqlite3_bind_value(statement, i, table.values[at++]);
            if (sqlite3_step(statement) != SQLITE_DONE) std::abort();
            sqlite3_reset(statement);
        }
        sqlite3_finalize(statement);
    }

    std::vector<Table> m_tables;
    std::vector<std::string> m_indexes;
};

}  // namespace bench
