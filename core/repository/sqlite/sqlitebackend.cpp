#include "core/repository/sqlite/sqlitebackend.h"

#include "core/repository/rowcodec.h"
#include "core/repository/sqltext.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>

namespace qv {

namespace {

/** Marks a file as a store of models: "SMDL". */
constexpr int APPLICATION_ID = 0x534d444c;
constexpr int BUSY_MILLISECONDS = 10000;

const char* TypeName(ColumnType type) {
    switch (type) {
    case ColumnType::integer: return "INTEGER";
    case ColumnType::flag: return "BOOLEAN";
    case ColumnType::moment: return "TIMESTAMP";
    case ColumnType::bytes: return "BLOB";
    case ColumnType::text: break;
    }
    return "TEXT";
}

/** Without a row number of its own a table is its primary key: a project's rows stand together. */
constexpr SqlDialect SQLITE = {'?', false, TypeName, "", " WITHOUT ROWID"};

std::string InsertSql(const TableShape& table) {
    const SqlText sql(SQLITE);
    const std::string values = JoinedSql(table.columns, ", ", [](const TableShape::Column&) { return "?"; });
    return std::string(table.replaces ? "INSERT OR REPLACE" : "INSERT") + " INTO " + sql.Quoted(table.name) + " (" + sql.ColumnList(table) +
           ") VALUES (" + values + ")";
}

struct CloseDatabase {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};
struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using PreparedStatement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

/** "disk I/O error" says little: which step failed, and what the system says of it, where it does. */
std::string Told(sqlite3* database, int code) {
    std::string text = sqlite3_errmsg(database);
    if ((code & 0xff) == SQLITE_CORRUPT) return text + ": the file is damaged; bring back a copy of it";
    switch (code) {
    case SQLITE_IOERR_READ:
    case SQLITE_IOERR_SHORT_READ: text += " while reading"; break;
    case SQLITE_IOERR_WRITE: text += " while writing"; break;
    case SQLITE_IOERR_FSYNC:
    case SQLITE_IOERR_DIR_FSYNC: text += " while bringing what was written to the disk"; break;
    case SQLITE_FULL: text += " while writing to the file or its log; make room, and do it again"; break;
    default: break;
    }
    const int system = sqlite3_system_errno(database);
    if ((code & 0xff) == SQLITE_IOERR && system != 0) text += std::string(": ") + std::strerror(system);
    return text;
}

/** SQLite speaks of its locking protocol when it waited in vain for a process that stopped where its log is begun or mended. */
bool IsBusy(int code) {
    const int primary = code & 0xff;
    return primary == SQLITE_BUSY || primary == SQLITE_LOCKED || primary == SQLITE_PROTOCOL;
}

[[noreturn]] void Raise(sqlite3* database, int code) {
    const bool busy = IsBusy(code);
    if ((code & 0xff) == SQLITE_READONLY)
        throw StoreError("It can only be read: you may not write to the file, or to its directory, where its log stands.");
    throw StoreError(busy ? "Another process is writing to the repository." : Told(database, code),
                     busy ? StoreError::busy : StoreError::failed);
}

void Check(sqlite3* database, int code) {
    if (code != SQLITE_OK) Raise(database, code);
}

PreparedStatement PrepareSql(sqlite3* database, const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    Check(database,
          sqlite3_prepare_v3(database, sql.c_str(), static_cast<int>(sql.size()) + 1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
    return PreparedStatement(statement);
}

void Execute(sqlite3* database, const std::string& sql) {
    Check(database, sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr));
}

std::int64_t AskNumber(sqlite3* database, const std::string& sql) {
    const PreparedStatement statement = PrepareSql(database, sql);
    const int code = sqlite3_step(statement.get());
    if (code != SQLITE_ROW) Raise(database, code);
    return sqlite3_column_int64(statement.get(), 0);
}

/** A new file gets its log under a lock that SQLite does not wait for, when several make it at once. */
void TurnLogOn(sqlite3* database) {
    constexpr const char* SQL = "PRAGMA journal_mode=WAL";
    constexpr int STEP = 5;
    for (int waited = 0; waited < BUSY_MILLISECONDS; waited += STEP) {
        if ((sqlite3_exec(database, SQL, nullptr, nullptr, nullptr) & 0xFF) != SQLITE_BUSY) break;
        sqlite3_sleep(STEP);
    }
    Execute(database, SQL);
}

bool IsAbsent(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) != 0 && errno == ENOENT;
}

/** 0, or why nobody with our rights can do that with the file or directory. */
int WhyNot(const std::string& path, int access) {
    return ::faccessat(AT_FDCWD, path.c_str(), access, AT_EACCESS) == 0 ? 0 : errno;
}

std::string DirectoryOf(const std::string& file) {
    return std::filesystem::path(file).parent_path().string();
}

/** A leading ':' or an empty name would mean a store in memory. */
std::string FileOf(const std::string& path) {
    if (path.empty()) throw StoreError("A repository needs a file name.");
    return path[0] == '/' ? path : "./" + path;
}

Database OpenFile(const std::string& file, int flags) {
    sqlite3* database = nullptr;
    const int code = sqlite3_open_v2(file.c_str(), &database, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    Database opened(database);
    if (code != SQLITE_OK) {
        int system = database ? sqlite3_system_errno(database) : 0;
        if (const int why = WhyNot(DirectoryOf(file), W_OK | X_OK); why != 0 && (flags & SQLITE_OPEN_CREATE)) system = why;
        const std::string reason = system != 0 ? std::string(": ") + std::strerror(system) : "";
        throw StoreError((database ? sqlite3_errmsg(database) : sqlite3_errstr(code)) + reason);
    }
    sqlite3_busy_timeout(database, BUSY_MILLISECONDS);
    return opened;
}

/** The address of a file that is taken for one that does not change, so that nothing needs to be made beside it. */
std::string UnchangingAddress(const std::string& file) {
    std::string address = "file:";
    for (const char character : file) {
        switch (character) {
        case '%': address += "%25"; break;
        case '?': address += "%3f"; break;
        case '#': address += "%23"; break;
        default: address += character;
        }
    }
    return address + "?immutable=1";
}

/**
 * A file of SQLite. Where nothing can be made beside it, reading it needs that no log stands there: then the file holds everything, and is
 * read as one that does not change, which is looked at when all rows of a question have come.
 */
class StoreFile {
  public:
    StoreFile(const std::string& path, int flags) : m_file(FileOf(path)), m_stamp(Now()), m_database(OpenFile(m_file, flags)) {
        constexpr const char* LOOK = "SELECT count(*) FROM sqlite_master";
        const int looked = sqlite3_exec(get(), LOOK, nullptr, nullptr, nullptr), code = looked & 0xff;
        if (code == SQLITE_IOERR || code == SQLITE_FULL || IsBusy(looked)) Raise(get(), looked);
        std::error_code ignored;
        const std::string real = std::filesystem::canonical(m_file, ignored).string();
        const bool isWritable = WhyNot(real, W_OK) == 0 && WhyNot(DirectoryOf(real), W_OK | X_OK) == 0;
        if ((code != SQLITE_CANTOPEN && code != SQLITE_READONLY) || isWritable) return;
        if (const std::string log = real + "-wal"; !IsAbsent(log) && std::filesystem::file_size(log, ignored) != 0)
            throw StoreError(
                "It can only be read, and beside it stands its log, " + log +
                ", which needs the right to write. Let somebody open it who has that, or copy both files to where you have it.");
        m_database = OpenFile(UnchangingAddress(m_file), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
        m_isUnchanging = true;
    }

    sqlite3* get() const { return m_database.get(); }
    bool IsReadOnly() const { return sqlite3_db_readonly(get(), "main") == 1; }
    /** Called when something was read to its end. */
    void Check() const {
        if (m_isUnchanging && Now() != m_stamp) throw StoreError("The file changed while it was read. Read it again.");
    }

  private:
    /** When the file was written to last, and how long it is. */
    using Stamp = std::array<std::int64_t, 3>;
    Stamp Now() const {
        struct stat status {};
        if (stat(m_file.c_str(), &status) != 0) return {};
        return {status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_size};
    }

    const std::string m_file;
    const Stamp m_stamp;
    Database m_database;
    bool m_isUnchanging = false;
};

/** Steps a statement and resets it when it ends or fails. */
bool StepRow(sqlite3* database, sqlite3_stmt* statement) {
    const int code = sqlite3_step(statement);
    if (code == SQLITE_ROW) return true;
    sqlite3_reset(statement);
    if (code != SQLITE_DONE) Raise(database, code);
    return false;
}

/** Binds a cell that stays as it is until the statement was stepped. `moment` is room for a moment's text. */
void Bind(sqlite3* database, sqlite3_stmt* statement, int parameter, const Cell& cell, ColumnType type, char (&moment)[MOMENT_SIZE]) {
    int code;
    if (cell.kind == Cell::text && type == ColumnType::bytes) {
        code = sqlite3_bind_blob64(statement, parameter, cell.view.data() ? cell.view.data() : "", cell.view.size(), SQLITE_STATIC);
    } else if (cell.kind == Cell::text) {
        code = sqlite3_bind_text64(statement, parameter, cell.view.data() ? cell.view.data() : "", cell.view.size(), SQLITE_STATIC,
                                   SQLITE_UTF8);
    } else if (cell.kind == Cell::null) {
        code = sqlite3_bind_null(statement, parameter);
    } else if (type == ColumnType::moment) {
        PrintMoment(cell.number, moment);
        code = sqlite3_bind_text(statement, parameter, moment, MOMENT_SIZE, SQLITE_STATIC);
    } else {
        code = sqlite3_bind_int64(statement, parameter, cell.number);
    }
    Check(database, code);
}

/** The bytes of a value; none for null. The column's type tells what to ask for, which saves asking each value for its own. */
std::optional<std::string_view> ReadBytes(sqlite3* database, sqlite3_stmt* statement, int column, ColumnType type) {
    const void* const bytes = type == ColumnType::bytes ? sqlite3_column_blob(statement, column) : sqlite3_column_text(statement, column);
    if (bytes) return std::string_view(static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
    if (sqlite3_column_type(statement, column) == SQLITE_NULL) return std::nullopt;
    if (sqlite3_column_bytes(statement, column) > 0) Raise(database, sqlite3_errcode(database));
    return std::string_view("", 0);
}

Cell ReadCell(sqlite3* database, sqlite3_stmt* statement, int column, ColumnType type) {
    if (type == ColumnType::integer || type == ColumnType::flag) {
        const std::int64_t number = sqlite3_column_int64(statement, column);
        return number == 0 && sqlite3_column_type(statement, column) == SQLITE_NULL ? Cell() : Cell::Number(number);
    }
    const std::optional<std::string_view> bytes = ReadBytes(database, statement, column, type);
    if (!bytes) return {};
    return type == ColumnType::moment ? ReadMoment(*bytes) : Cell::Text(*bytes);
}

/** The parameters of a statement, bound together. */
class Parameters {
  public:
    Parameters(const TableShape& table, const std::vector<std::size_t>& set, const std::vector<Condition>& where) {
        for (const std::size_t column : set) m_types.push_back(table.columns[column].type);
        for (const Condition& condition : where)
            if (condition.test != Condition::notNull) m_types.push_back(table.columns[condition.column].type);
        m_moments.resize(m_types.size());
    }

    void Bind(sqlite3* database, sqlite3_stmt* statement, std::span<const Cell> cells) {
        if (cells.size() != m_types.size()) throw StoreError("A statement was given another number of parameters than it has.");
        for (std::size_t at = 0; at < cells.size(); ++at)
            qv::Bind(database, statement, static_cast<int>(at) + 1, cells[at], m_types[at], m_moments[at].text);
    }

  private:
    struct Moment {
        char text[MOMENT_SIZE];
    };
    std::vector<ColumnType> m_types;
    std::vector<Moment> m_moments;
};

class SqliteSource : public RowSource {
  public:
    SqliteSource(const StoreFile& file, const Query& query)
        : m_file(file),
          m_database(file.get()),
          m_statement(PrepareSql(m_database, SqlText(SQLITE).Select(query))),
          m_parameters(*query.table, {}, query.where) {
        for (const std::size_t column : query.columns) m_types.push_back(query.table->columns[column].type);
    }

    void Start(std::span<const Cell> parameters) override {
        sqlite3_reset(m_statement.get());
        m_parameters.Bind(m_database, m_statement.get(), parameters);
    }

    bool Next(std::span<Cell> row) override {
        if (!Step()) {
            m_file.Check();
            return false;
        }
        for (std::size_t at = 0; at < m_types.size(); ++at)
            row[at] = ReadCell(m_database, m_statement.get(), static_cast<int>(at), m_types[at]);
        return true;
    }

  private:
    bool Step() {
        try {
            return StepRow(m_database, m_statement.get());
        } catch (const StoreError&) {
            m_file.Check();  // a file that changed under its reader looks damaged
            throw;
        }
    }

    const StoreFile& m_file;
    sqlite3* m_database;
    PreparedStatement m_statement;
    Parameters m_parameters;
    std::vector<ColumnType> m_types;
};

class SqliteChange : public RowChange {
  public:
    SqliteChange(sqlite3* database, const Change& change)
        : m_database(database),
          m_statement(PrepareSql(database, SqlText(SQLITE).Update(change))),
          m_parameters(*change.table, change.set, change.where) {}
    SqliteChange(sqlite3* database, const Removal& removal)
        : m_database(database),
          m_statement(PrepareSql(database, SqlText(SQLITE).Delete(removal))),
          m_parameters(*removal.table, {}, removal.where) {}

    std::int64_t Run(std::span<const Cell> parameters) override {
        m_parameters.Bind(m_database, m_statement.get(), parameters);
        StepRow(m_database, m_statement.get());
        return sqlite3_changes64(m_database);
    }

  private:
    sqlite3* m_database;
    PreparedStatement m_statement;
    Parameters m_parameters;
};

class SqliteInsert : public RowInsert {
  public:
    SqliteInsert(sqlite3* database, const TableShape& table)
        : m_database(database), m_statement(PrepareSql(database, InsertSql(table))), m_bound(table.columns.size(), false) {
        for (const TableShape::Column& column : table.columns) m_types.push_back(column.type);
        m_moments.resize(m_types.size());
    }

    void Add(std::span<const Cell> row) override {
        for (std::size_t at = 0; at < m_types.size(); ++at) {
            const bool present = row[at].kind != Cell::null;
            if (present || m_bound[at])  // a parameter that is null stays null
                Bind(m_database, m_statement.get(), static_cast<int>(at) + 1, row[at], m_types[at], m_moments[at].text);
            m_bound[at] = present;
        }
        StepRow(m_database, m_statement.get());
    }
    void Finish() override {}

  private:
    struct Moment {
        char text[MOMENT_SIZE];
    };
    sqlite3* m_database;
    PreparedStatement m_statement;
    std::vector<ColumnType> m_types;
    std::vector<Moment> m_moments;
    std::vector<bool> m_bound;
};

class SqliteConnection : public StoreConnection {
  public:
    SqliteConnection(const std::string& path, int flags) : m_database(path, flags) {
        if (!m_database.IsReadOnly()) TurnLogOn(m_database.get());
        Execute(m_database.get(), "PRAGMA synchronous=FULL");
        Execute(m_database.get(), "PRAGMA cache_size=-65536");
        Execute(m_database.get(), "PRAGMA temp_store=MEMORY");
        Execute(m_database.get(), "PRAGMA trusted_schema=OFF");
    }

    std::unique_ptr<RowSource> Prepare(const Query& query) override { return std::make_unique<SqliteSource>(m_database, query); }
    std::unique_ptr<RowChange> Prepare(const Change& change) override { return std::make_unique<SqliteChange>(m_database.get(), change); }
    std::unique_ptr<RowChange> Prepare(const Removal& removal) override {
        return std::make_unique<SqliteChange>(m_database.get(), removal);
    }
    std::unique_ptr<RowInsert> PrepareInsert(const TableShape& table) override {
        return std::make_unique<SqliteInsert>(m_database.get(), table);
    }
    void MakeTable(const TableShape& table) override { Execute(m_database.get(), SqlText(SQLITE).CreateTable(table)); }
    void AddColumns(const TableShape& table, std::size_t count) override {
        for (std::size_t at = table.columns.size() - count; at < table.columns.size(); ++at)
            Execute(m_database.get(), SqlText(SQLITE).AddColumn(table, at));
    }
    void MakeView(const ViewShape& view) override { Execute(m_database.get(), SqlText(SQLITE).CreateView(view)); }
    void Begin() override { Execute(m_database.get(), "BEGIN IMMEDIATE"); }
    void Commit() override {
        const int code = sqlite3_exec(m_database.get(), "COMMIT", nullptr, nullptr, nullptr);
        if (code == SQLITE_OK) return;
        // what the log had taken may be found there when it is read anew
        if ((code & 0xff) == SQLITE_IOERR)
            throw StoreError(Told(m_database.get(), code) + ". It is not known whether the save stands; look before saving again.",
                             StoreError::unknown);
        Raise(m_database.get(), code);
    }
    void Rollback() noexcept override {
        if (!sqlite3_get_autocommit(m_database.get())) sqlite3_exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
    sqlite3* database() { return m_database.get(); }

  private:
    StoreFile m_database;
};

class SqliteBackend : public StoreBackend {
  public:
    explicit SqliteBackend(std::string path) : m_path(std::move(path)) {}

    std::string Name() const override { return m_path; }

    State Inspect() override {
        if (IsAbsent(m_path)) return State::absent;
        const StoreFile database(m_path, SQLITE_OPEN_READWRITE);
        int code = SQLITE_OK;
        try {
            if (AskNumber(database.get(), "SELECT count(*) FROM sqlite_master") == 0) return State::empty;
            return AskNumber(database.get(), "PRAGMA application_id") == APPLICATION_ID ? State::tables : State::foreign;
        } catch (const StoreError&) {
            code = sqlite3_errcode(database.get()) & 0xff;
            if (code != SQLITE_NOTADB) throw;
        }
        return State::foreign;
    }

    void Create(std::span<const TableShape> tables, void (*fill)(StoreConnection&)) override {
        SqliteConnection connection(m_path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        connection.Begin();
        try {
            // another process may have been faster
            if (AskNumber(connection.database(), "SELECT count(*) FROM sqlite_master") == 0) {
                Execute(connection.database(), "PRAGMA application_id=" + std::to_string(APPLICATION_ID));
                for (const TableShape& table : tables) connection.MakeTable(table);
                fill(connection);
            }
            connection.Commit();
        } catch (...) {
            connection.Rollback();
            throw;
        }
    }

    std::unique_ptr<StoreConnection> Connect() override { return std::make_unique<SqliteConnection>(m_path, SQLITE_OPEN_READWRITE); }

  private:
    const std::string m_path;
};

}  // namespace

std::shared_ptr<StoreBackend> MakeSqliteBackend(const std::string& path) {
    return std::make_shared<SqliteBackend>(path);
}

}  // namespace qv
