#pragma once

#include <deque>
#include <string>
#include <unordered_set>
#include <vector>

#include "core/repository/postgres/postgreslink.h"
#include "core/repository/sqltext.h"

namespace qv::postgres {

/** Makes the statements of this kind of store. */
const SqlText& Sql();

/** Rows come as the server finds them, one after the other; those not yet asked for stay with the server. */
class Source : public RowSource, private Link::Activity {
  public:
    Source(Link& link, const Query& query);
    ~Source() override { m_link.Abandon(*this); }
    void Start(std::span<const Cell> parameters) override;
    bool Next(std::span<Cell> row) override;

  private:
    /** Keeps the rows that are still to come, for another statement wants the line. */
    void Settle() override;

    Link& m_link;
    const std::string m_sql;
    const TableShape& m_table;
    std::vector<std::size_t> m_parameters;
    std::vector<ColumnType> m_types;
    bool m_asking = false;
    Result m_row;
    std::deque<Result> m_kept;
};

/** Changes of one row each are gathered and go out together, where their conditions allow. */
class ChangeRows : public RowChange {
  public:
    ChangeRows(Link& link, const Change& change);
    ChangeRows(Link& link, const Removal& removal);
    std::int64_t Run(std::span<const Cell> parameters) override;
    void Add(std::span<const Cell> parameters) override;
    void Finish() override;

  private:
    void Clear();

    Link& m_link;
    const std::string m_sql, m_gatheredSql;
    const TableShape& m_table;
    std::vector<std::size_t> m_parameters;
    std::vector<WireArray> m_gathered;
    std::int64_t m_count = 0;
    long m_transaction = -1;
};

/** Rows go out in the server's bulk form as they come. */
class CopyRows : public RowInsert, private Link::Activity {
  public:
    CopyRows(Link& link, const TableShape& table);
    ~CopyRows() override { m_link.Abandon(*this); }
    void Add(std::span<const Cell> row) override;
    void Finish() override;

  private:
    void Settle() override;

    Link& m_link;
    const std::string m_sql;
    const TableShape& m_table;
    std::string m_buffer;
    bool m_copying = false;
    long m_transaction = -1;
};

/** Rows of a table in which a later row replaces an earlier one of its key; the bulk form cannot do that. */
class ReplaceRows : public RowInsert {
  public:
    ReplaceRows(Link& link, const TableShape& table);
    void Add(std::span<const Cell> row) override;
    void Finish() override;

  private:
    void Clear();

    Link& m_link;
    const std::string m_sql;
    const TableShape& m_table;
    std::vector<WireArray> m_columns;
    /** Of the rows gathered, for one statement must not meet a key twice. */
    std::unordered_set<std::string> m_keys;
    std::string m_key;
    std::size_t m_bytes = 0;
    long m_transaction = -1;
};

}  // namespace qv::postgres
