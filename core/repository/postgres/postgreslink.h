#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "core/repository/postgres/postgresaddress.h"
#include "core/repository/postgres/postgreswire.h"

#include <libpq-fe.h>

namespace qv::postgres {

struct ClearResult {
    void operator()(PGresult* result) const { PQclear(result); }
};
using Result = std::unique_ptr<PGresult, ClearResult>;

/**
 * A line to a server and what goes over it: one thing at a time, each wait with an end. A statement that comes while something else
 * is under way makes that settle first.
 */
class Link {
  public:
    /** Something that lasts over several calls: rows that come in, or go out. */
    class Activity {
      public:
        virtual ~Activity() = default;
        /** Gives the line free; nothing may be lost. */
        virtual void Settle() = 0;
    };

    explicit Link(const Address& address);
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    /** Runs a statement to its end. `parameters` is null for one without any. */
    Result Run(const std::string& sql, const WireParameters* parameters = nullptr);
    /** Begins a question whose rows are fetched by `NextRow`. */
    void Ask(const std::string& sql, const WireParameters& parameters, Activity& activity);
    /** A result of one row, or null behind the last. */
    Result NextRow();

    void BeginCopy(const std::string& sql, Activity& activity);
    void SendCopy(std::string_view bytes);
    void EndCopy();
    /** Throws away what is under way for the activity. */
    void Abandon(const Activity& activity) noexcept;

    void Begin();
    void Commit();
    void Rollback() noexcept;
    /** Another one for each transaction: what was gathered in one is worth nothing in the next. */
    long Transaction() const { return m_transaction; }

  private:
    PGconn* Line() const;
    void Settle();
    void Send(const std::string& sql, const WireParameters* parameters, bool binary);
    /** The next result of what was sent; null behind the last. */
    Result Await();
    /** Waits until the line can be read, or written too. */
    void Wait(bool writing);
    void Flush();
    void Drain() noexcept;
    /** Raises what an answer tells; gives any other back. */
    Result Checked(Result result);
    [[noreturn]] void Lost();
    static void Notice(void* link, const PGresult* notice);

    Connection m_connection;
    Activity* m_activity = nullptr;
    bool m_inTransaction = false;
    long m_transaction = 0;
    std::string m_warning;
};

/** The line was lost, or the server went, so that it is not known what became of what was sent last. */
class LineLost : public StoreError {
  public:
    using StoreError::StoreError;
};

/** The five characters that the server tells the kind of an error by. */
class ServerError : public StoreError {
  public:
    ServerError(std::string message, Reason reason, std::string code) : StoreError(std::move(message), reason), m_code(std::move(code)) {}
    const std::string& Code() const { return m_code; }

  private:
    std::string m_code;
};

}  // namespace qv::postgres
