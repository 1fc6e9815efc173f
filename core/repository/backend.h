#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/diag/tklerrors.h"

/**
 * What a store must be able to do, in plain data: tables, questions and changes are described, never written as SQL, so that a
 * backend without SQL can answer too and no value can ever become a part of a statement.
 */
namespace qv {

/** A value on its way to or from a store. Flags are 0 and 1; a moment is the number yyyyMMddhhmmss. Texts are borrowed. */
struct Cell {
    enum Kind : unsigned char { null, integer, text };

    Kind kind = null;
    std::int64_t number = 0;
    std::string_view view;

    static Cell Number(std::int64_t value) { return {integer, value, {}}; }
    static Cell Text(std::string_view value) { return {text, 0, value}; }
};

/** Bytes travel in cells of the kind text, and may hold anything. */
enum class ColumnType { integer, flag, moment, text, bytes };

struct TableShape {
    struct Column {
        std::string name;
        ColumnType type;
        bool required;
    };
    std::string name;
    std::vector<Column> columns;
    /** Places of the columns that make up the primary key, in its order. */
    std::vector<std::size_t> key;
    /** A row with the key of one that is there replaces it; else it is an error. */
    bool replaces = false;
};

/** One part of a question; a row must fit all of them. Each but `notNull` takes the next parameter. */
struct Condition {
    enum Test { equal, atMost, above, nullOrAbove, notNull };

    std::size_t column;
    Test test;
};

struct Query {
    const TableShape* table;
    std::vector<std::size_t> columns;
    std::vector<Condition> where;
};

/** Sets columns in the rows that fit; the values set come before those of the conditions. */
struct Change {
    const TableShape* table;
    std::vector<std::size_t> set;
    std::vector<Condition> where;
};

/** Takes away the rows that fit. */
struct Removal {
    const TableShape* table;
    std::vector<Condition> where;
};

/** A table as its readers like to see it: some columns of the rows in which one column is null and, if `type` has a text, another has that.
 */
struct ViewShape {
    std::string name;
    const TableShape* table;
    std::vector<std::size_t> columns;
    std::size_t isNull;
    std::size_t typeColumn;
    std::string type;
};

/** A store refused or failed. */
class SM_API StoreError : public TklRuntimeError {
  public:
    /**
     * `again`: the transaction was undone for the sake of others, and may succeed when it is run once more from its beginning.
     * `unknown`: whether the transaction stands cannot be told.
     */
    enum Reason { failed, busy, movedOn, again, unknown };

    explicit StoreError(std::string message, Reason reason = failed) : TklRuntimeError(std::move(message)), m_reason(reason) {}
    Reason reason() const noexcept { return m_reason; }

  private:
    Reason m_reason;
};

/** A prepared question. Rows come in no particular order. */
class RowSource {
  public:
    virtual ~RowSource() = default;
    virtual void Start(std::span<const Cell> parameters) = 0;
    /** Fills `row` with the next row's columns; its texts are good until the next call. False at the end. */
    virtual bool Next(std::span<Cell> row) = 0;
};

/** A prepared change. */
class RowChange {
  public:
    virtual ~RowChange() = default;
    /** The number of rows that fitted. */
    virtual std::int64_t Run(std::span<const Cell> parameters) = 0;
    /** Changes one row, which must be there. It may reach the store, and fail, as late as `Finish`. */
    virtual void Add(std::span<const Cell> parameters) {
        if (Run(parameters) != 1) throw StoreError("The row to change is not in the store.");
    }
    virtual void Finish() {}
};

/** A prepared bulk insert, used inside a transaction. What it is given may reach the store as late as `Finish`. */
class RowInsert {
  public:
    virtual ~RowInsert() = default;
    /** `row` has a cell for each column of the table. */
    virtual void Add(std::span<const Cell> row) = 0;
    virtual void Finish() = 0;
};

/** One line to a store, used from one thread at a time. It owns nothing of what it prepared; that must go before it does. */
class StoreConnection {
  public:
    virtual ~StoreConnection() = default;
    virtual std::unique_ptr<RowSource> Prepare(const Query& query) = 0;
    virtual std::unique_ptr<RowChange> Prepare(const Change& change) = 0;
    virtual std::unique_ptr<RowChange> Prepare(const Removal& removal) = 0;
    virtual std::unique_ptr<RowInsert> PrepareInsert(const TableShape& table) = 0;
    /** These three change what the store is made of, inside a transaction. The columns are the table's last ones, null in all its rows. */
    virtual void MakeTable(const TableShape& table) = 0;
    virtual void AddColumns(const TableShape& table, std::size_t count) = 0;
    /** Nothing where there is nobody to look at it. */
    virtual void MakeView(const ViewShape& view) = 0;
    /** Writing happens between Begin and Commit; what others wrote before Begin returned is visible. */
    virtual void Begin() = 0;
    virtual void Commit() = 0;
    virtual void Rollback() noexcept = 0;
};

/** A store: a file, a server, a piece of memory. */
class StoreBackend {
  public:
    enum class State { absent, empty, tables, foreign };

    virtual ~StoreBackend() = default;
    /** For messages; holds no secret. */
    virtual std::string Name() const = 0;
    /** What stands there, found without changing anything. `tables` may still be those of another format. */
    virtual State Inspect() = 0;
    /** Makes an absent or empty store and all its tables in one transaction, in which `fill` may write the first rows. */
    virtual void Create(std::span<const TableShape> tables, void (*fill)(StoreConnection&)) = 0;
    virtual std::unique_ptr<StoreConnection> Connect() = 0;
};

}  // namespace qv
