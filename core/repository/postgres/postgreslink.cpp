#include "core/repository/postgres/postgreslink.h"

#include <poll.h>

#include <utility>

namespace qv::postgres {

namespace {

/** A server that says nothing for so long is taken for gone. Longer than it waits for a lock, and than any one of our statements takes. */
constexpr int PATIENCE_SECONDS = 120;

/** Settings of the server and the user stand where they are stricter than ours. The last one is a cost that pays for no question here. */
constexpr const char* SETTINGS =
    "SELECT set_config('standard_conforming_strings', 'on', false), set_config('TimeZone', 'UTC', false),"
    " set_config('synchronous_commit', CASE WHEN current_setting('synchronous_commit', true) = 'remote_apply' THEN 'remote_apply'"
    "  ELSE 'on' END, false),"
    " CASE WHEN current_setting('lock_timeout', true) = '0' THEN set_config('lock_timeout', '10s', false) END,"
    " CASE WHEN current_setting('idle_in_transaction_session_timeout', true) = '0'"
    "  THEN set_config('idle_in_transaction_session_timeout', '10min', false) END,"
    " CASE WHEN current_setting('jit', true) IS NOT NULL THEN set_config('jit', 'off', false) END";

/** How a server refuses a transaction that writes. */
constexpr const char *STANDBY = "0A000", *READ_ONLY = "25006";
/** How it tells that a table has nowhere to be made. */
constexpr const char* NO_SCHEMA = "3F000";

std::string Trimmed(const char* message) {
    std::string text = message ? message : "";
    while (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
}

std::string Field(const PGresult* result, int field) {
    return Trimmed(PQresultErrorField(result, field));
}

[[noreturn]] void Raise(const PGresult* result) {
    const std::string code = Field(result, PG_DIAG_SQLSTATE), severity = Field(result, PG_DIAG_SEVERITY_NONLOCALIZED);
    std::string message = Field(result, PG_DIAG_MESSAGE_PRIMARY);
    if (message.empty()) message = Trimmed(PQresultErrorMessage(result));
    if (code.empty() || severity == "FATAL" || severity == "PANIC" || code.starts_with("08") || code == "40003")
        throw LineLost("The server ended the connection: " + message);
    if (code == "40001" || code == "40P01") throw ServerError("Others were writing at the same time: " + message, StoreError::again, code);
    if (code == "55P03") throw ServerError("Another process is writing to the repository.", StoreError::busy, code);
    if (code == "23505") message += " (" + Field(result, PG_DIAG_MESSAGE_DETAIL) + ")";
    if (code == NO_SCHEMA)
        message +=
            "; the first schema of the search path must be there: make it by CREATE SCHEMA, or name another one by the parameter"
            " options=-csearch_path%3DNAME of the address";
    throw ServerError(message, StoreError::failed, code);
}

}  // namespace

Link::Link(const Address& address) : m_connection(address.Open()) {
    PQsetNoticeReceiver(Line(), Notice, this);
    PQsetnonblocking(Line(), 1);
    Run(SETTINGS);
}

void Link::Notice(void* link, const PGresult* notice) {
    if (Field(notice, PG_DIAG_SEVERITY_NONLOCALIZED) == "WARNING")
        static_cast<Link*>(link)->m_warning = Field(notice, PG_DIAG_MESSAGE_PRIMARY);
}

PGconn* Link::Line() const {
    if (!m_connection) throw LineLost("The connection to the server was lost.");
    return m_connection.get();
}

void Link::Lost() {
    const std::string message = Trimmed(PQerrorMessage(Line()));
    m_connection.reset();
    throw LineLost("The connection to the server was lost: " + message);
}

void Link::Wait(bool writing) {
    pollfd place{PQsocket(Line()), static_cast<short>(POLLIN | (writing ? POLLOUT : 0)), 0};
    int ready;
    do {
        ready = ::poll(&place, 1, PATIENCE_SECONDS * 1000);
    } while (ready < 0 && errno == EINTR);
    if (ready <= 0) {
        m_connection.reset();
        throw LineLost("The server has not answered for " + std::to_string(PATIENCE_SECONDS) + " seconds.");
    }
    if ((place.revents & ~POLLOUT) != 0 && PQconsumeInput(Line()) == 0) Lost();
}

void Link::Flush() {
    int left;
    while ((left = PQflush(Line())) > 0) Wait(true);
    if (left < 0) Lost();
}

Result Link::Await() {
    while (PQisBusy(Line())) Wait(false);
    return Result(PQgetResult(Line()));
}

void Link::Drain() noexcept {
    try {
        while (Await()) {
        }
    } catch (const StoreError&) {
        m_connection.reset();
    }
}

Result Link::Checked(Result result) {
    switch (PQresultStatus(result.get())) {
    case PGRES_FATAL_ERROR:
    case PGRES_BAD_RESPONSE:
        Drain();
        if (m_connection && PQstatus(m_connection.get()) != CONNECTION_OK) {
            const std::string message = Trimmed(PQresultErrorMessage(result.get()));
            m_connection.reset();
            throw LineLost("The connection to the server was lost: " + message);
        }
        Raise(result.get());
    default: return result;
    }
}

void Link::Settle() {
    if (Activity* const activity = std::exchange(m_activity, nullptr)) activity->Settle();
}

void Link::Send(const std::string& sql, const WireParameters* parameters, bool binary) {
    static const WireParameters NONE;
    const WireParameters& all = parameters ? *parameters : NONE;
    if (!PQsendQueryParams(Line(), sql.c_str(), all.Count(), all.Types(), all.Values().data(), all.Lengths(), all.Formats(), binary))
        Lost();
    Flush();
}

Result Link::Run(const std::string& sql, const WireParameters* parameters) {
    Settle();
    Send(sql, parameters, true);
    Result result = Checked(Await());
    Drain();
    return result;
}

void Link::Ask(const std::string& sql, const WireParameters& parameters, Activity& activity) {
    Settle();
    Send(sql, &parameters, true);
    PQsetSingleRowMode(Line());
    m_activity = &activity;
}

Result Link::NextRow() {
    Result result;
    try {
        result = Checked(Await());
    } catch (...) {
        m_activity = nullptr;
        throw;
    }
    if (PQresultStatus(result.get()) == PGRES_SINGLE_TUPLE) return result;
    m_activity = nullptr;
    Drain();
    return nullptr;
}

void Link::BeginCopy(const std::string& sql, Activity& activity) {
    Settle();
    Send(sql, nullptr, false);
    if (const Result result = Checked(Await()); PQresultStatus(result.get()) != PGRES_COPY_IN) {
        Drain();
        throw StoreError("The server takes no rows in bulk.");
    }
    m_activity = &activity;
}

void Link::SendCopy(std::string_view bytes) {
    int taken;
    while ((taken = PQputCopyData(Line(), bytes.data(), static_cast<int>(bytes.size()))) == 0) Wait(true);
    if (taken < 0) Lost();
}

void Link::EndCopy() {
    m_activity = nullptr;
    int taken;
    while ((taken = PQputCopyEnd(Line(), nullptr)) == 0) Wait(true);
    if (taken < 0) Lost();
    Flush();
    Checked(Await());
    Drain();
}

void Link::Abandon(const Activity& activity) noexcept {
    if (m_activity != &activity) return;
    m_activity = nullptr;
    if (!m_connection) return;
    if (PQtransactionStatus(m_connection.get()) == PQTRANS_ACTIVE) PQputCopyEnd(m_connection.get(), "abandoned");
    try {
        Flush();
    } catch (const StoreError&) {
        m_connection.reset();
    }
    if (m_connection) Drain();
}

void Link::Begin() {
    ++m_transaction;
    try {
        Run("BEGIN ISOLATION LEVEL READ COMMITTED READ WRITE");
    } catch (const ServerError& error) {
        if (error.Code() != STANDBY && error.Code() != READ_ONLY) throw;
        throw StoreError("This server only reads; a save needs the one that writes.");
    }
    m_inTransaction = true;
}

void Link::Commit() {
    Settle();
    m_warning.clear();
    Result result;
    try {
        m_inTransaction = false;
        result = Run("COMMIT");
    } catch (const LineLost& error) {
        throw StoreError(error.message() + " It is not known whether the save stands; look before saving again.", StoreError::unknown);
    }
    if (std::string_view(PQcmdStatus(result.get())) != "COMMIT")
        throw StoreError("The server undid the save instead of committing it. Save again.");
    if (!m_warning.empty())
        throw StoreError("The server committed the save with a warning, so a failure may still undo it: " + m_warning, StoreError::unknown);
}

void Link::Rollback() noexcept {
    ++m_transaction;
    if (!std::exchange(m_inTransaction, false)) return;
    if (m_activity) Abandon(*m_activity);
    if (!m_connection) return;
    try {
        Run("ROLLBACK");
    } catch (const StoreError&) {
        m_connection.reset();  // the server undoes what a lost line leaves
    }
}

}  // namespace qv::postgres
