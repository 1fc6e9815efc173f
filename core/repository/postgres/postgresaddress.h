#pragma once

#include <memory>
#include <string>

#include <libpq-fe.h>

namespace qv::postgres {

struct FinishConnection {
    void operator()(PGconn* connection) const { PQfinish(connection); }
};
using Connection = std::unique_ptr<PGconn, FinishConnection>;

/** What a location names. */
class Address {
  public:
    /** Raises StoreError, without a word of the text, when it is no address. */
    explicit Address(const std::string& uri);

    /** Who and where, without a secret. */
    const std::string& Name() const { return m_name; }
    /** A line that stands. Raises StoreError when none can be had. */
    Connection Open() const;

  private:
    Connection Try(const char* sessionAttributes) const;

    std::string m_uri, m_name;
    bool m_hasTimeout = false;
    /** Several hosts, and nothing said of which will do. */
    bool m_prefersWriting = false;
};

}  // namespace qv::postgres
