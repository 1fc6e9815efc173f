#pragma once

#include <sqlite3.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "bench/support/measure.h"

namespace bench {

/**
 * What it costs to insert the rows of a store into tables without keys, in one transaction without a journal that is on the disk at its
 * end. The rows pass through memory in parts, for they are many; reading them is not counted.
 */
class PlainFloor {
  public:
    explicit PlainFloor(const std::string& store, const std::string& plain) : m_store(Open(store)), m_plain(Open(plain)) {
        for (const char* setting :
             {"PRAGMA journal_mode=OFF", "PRAGMA synchronous=FULL", "PRAGMA cache_size=-65536", "PRAGMA temp_store=MEMORY", "BEGIN"})
            Run(setting);
        std::vector<std::string> tables;
        sqlite3_stmt* const names = Prepare(m_store, "SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite_%'");
        while (sqlite3_step(names) == SQLITE_ROW) tables.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(names, 0)));
        sqlite3_finalize(names);
        for (const std::string& table : tables) Insert(table);
        m_seconds += TimeOf([&] { Run("COMMIT"); });
    }
    ~PlainFloor() {
        sqlite3_close(m_store);
        sqlite3_close(m_plain);
    }
    PlainFloor(const PlainFloor&) = delete;
    PlainFloor& operator=(const PlainFloor&) = delete;

    double Seconds() const { return m_seconds; }
    std::size_t Rows() const { return m_rows; }

  private:
    static constexpr std::size_t PART = 20'000;

    static sqlite3* Open(const std::string& path) {
        sqlite3* database = nullptr;
        if (sqlite3_open(path.c_str(), &database) != SQLITE_OK) std::abort();
        return database;
    }
    static sqlite3_stmt* Prepare(sqlite3* database, const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) std::abort();
        return statement;
    }
    void Run(const std::string& sql) {
        if (sqlite3_exec(m_plain, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
    }

    void Insert(const std::string& table) {
        sqlite3_stmt* const rows = Prepare(m_store, "SELECT * FROM \"" + table + "\"");
        const int columns = sqlite3_column_count(rows);
        std::string names = "c0", places = "?";
        for (int i = 1; i < columns; ++i) {
            names += ",c" + std::to_string(i);
            places += ",?";
        }
        Run("CREATE TABLE \"" + table + "\" (" + names + ")");
        sqlite3_stmt* const insert = Prepare(m_plain, "INSERT INTO \"" + table + "\" VALUES (" + places + ")");
        while (Take(rows, columns)) m_seconds += TimeOf([&] { Add(insert, columns); });
        sqlite3_finalize(insert);
        sqlite3_finalize(rows);
    }

    /** The next part of the rows; false when there are none left. */
    bool Take(sqlite3_stmt* rows, int columns) {
        for (sqlite3_value* const value : m_values) sqlite3_value_free(value);
        m_values.clear();
        // a statement that has ended would begin again
        for (std::size_t row = 0; row < PART && !m_ended; ++row) {
            m_ended = sqlite3_step(rows) != SQLITE_ROW;
            for (int i = 0; i < columns && !m_ended; ++i) m_values.push_back(sqlite3_value_dup(sqlite3_column_value(rows, i)));
        }
        if (m_values.empty()) m_ended = false;
        return !m_values.empty();
    }

    void Add(sqlite3_stmt* insert, int columns) {
        for (std::size_t at = 0; at < m_values.size();) {
            for (int i = 1; i <= columns; ++i) sqlite3_bind_value(insert, i, m_values[at++]);
            if (sqlite3_step(insert) != SQLITE_DONE) std::abort();
            sqlite3_reset(insert);
            ++m_rows;
        }
    }

    sqlite3 *m_store, *m_plain;
    std::vector<sqlite3_value*> m_values;
    bool m_ended = false;
    double m_seconds = 0;
    std::size_t m_rows = 0;
};

}  // namespace bench
