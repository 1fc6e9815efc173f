#include "core/repository/postgres/postgresaddress.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "core/repository/backend.h"

namespace qv::postgres {

namespace {

constexpr const char* CONNECT_SECONDS = "10";

struct FreeOptions {
    void operator()(PQconninfoOption* options) const { PQconninfoFree(options); }
};

std::string Escaped(const std::string& text) {
    static const char* const DIGITS = "0123456789ABCDEF";
    std::string out;
    for (const char character : text) {
        const bool plain = std::strchr("-._~,:/[]", character) || (character >= '0' && character <= '9') ||
                           (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
        if (plain) {
            out += character;
        } else {
            const auto byte = static_cast<unsigned char>(character);
            out.append({'%', DIGITS[byte >> 4], DIGITS[byte & 15]});
        }
    }
    return out;
}

/** "a:1,b:2" of "a,b" and "1,2". */
std::string HostsAndPorts(const std::string& hosts, const std::string& ports) {
    std::string text;
    std::size_t host = 0, port = 0;
    while (true) {
        const std::size_t hostEnd = std::min(hosts.find(',', host), hosts.size());
        const std::size_t portEnd = std::min(ports.find(',', port), ports.size());
        text += hosts.substr(host, hostEnd - host);
        if (portEnd > port) text += ":" + ports.substr(port, portEnd - port);
        if (hostEnd == hosts.size()) return text;
        text += ',';
        host = hostEnd + 1;
        if (portEnd < ports.size()) port = portEnd + 1;  // one port may serve all hosts
    }
}

/** A secret with an unescaped '@' or '/' in it would be read as a part of the host or of the database, and be told as such. */
bool MayMisplaceSecret(const std::string& uri, const std::string& port) {
    const std::string body = uri.substr(0, uri.find('?')).substr(uri.find("://") + 3);
    const std::size_t at = body.find('@');
    if (at != std::string::npos && (at > body.find('/') || body.find('@', at + 1) != std::string::npos)) return true;
    return port.find_first_not_of("0123456789,") != std::string::npos;
}

[[noreturn]] void Refuse() {
    throw StoreError("The address of a server is written as postgresql://USER@HOST:PORT/DATABASE; this one cannot be read.");
}

}  // namespace

Address::Address(const std::string& uri) : m_uri(uri) {
    const std::unique_ptr<PQconninfoOption, FreeOptions> options(
        uri.find("://") == std::string::npos ? nullptr : PQconninfoParse(uri.c_str(), nullptr));
    if (!options) Refuse();
    std::string host, port, user, database;
    bool saysWhich = std::getenv("PGTARGETSESSIONATTRS") != nullptr;
    m_hasTimeout = std::getenv("PGCONNECT_TIMEOUT") != nullptr;
    for (const PQconninfoOption* option = options.get(); option->keyword; ++option) {
        if (!option->val) continue;
        const std::string_view keyword = option->keyword;
        if (keyword == "host" || (keyword == "hostaddr" && host.empty())) host = option->val;
        if (keyword == "port") port = option->val;
        if (keyword == "user") user = option->val;
        if (keyword == "dbname") database = option->val;
        if (keyword == "target_session_attrs") saysWhich = true;
        if (keyword == "connect_timeout") m_hasTimeout = true;
    }
    if (MayMisplaceSecret(uri, port)) Refuse();
    m_prefersWriting = !saysWhich && host.find(',') != std::string::npos;
    const bool isSocket = host.find('/') != std::string::npos;
    m_name = "postgresql://" + (user.empty() ? "" : Escaped(user) + "@");
    if (!isSocket) m_name += Escaped(HostsAndPorts(host, port));
    m_name += "/" + Escaped(database);
    if (isSocket) m_name += "?host=" + Escaped(host) + (port.empty() ? "" : "&port=" + Escaped(port));
}

Connection Address::Open() const {
    if (m_prefersWriting) {
        auto connection = Try("read-write");
        if (PQstatus(connection.get()) == CONNECTION_OK) return connection;
    }
    auto connection = Try(nullptr);
    if (PQstatus(connection.get()) != CONNECTION_OK) {
        std::string message = connection ? PQerrorMessage(connection.get()) : "There is no memory for a connection.";
        while (!message.empty() && message.back() == '\n') message.pop_back();
        throw StoreError(message);
    }
    return connection;
}

Connection Address::Try(const char* sessionAttributes) const {
    // later words win over earlier ones, and those of the address over all before it
    std::vector<const char*> keywords, values;
    const auto add = [&](const char* keyword, const char* value) {
        keywords.push_back(keyword);
        values.push_back(value);
    };
    if (!m_hasTimeout) add("connect_timeout", CONNECT_SECONDS);
    // a host that is gone without a word is noticed
    add("keepalives_idle", "30");
    add("keepalives_interval", "10");
    add("keepalives_count", "3");
    add("fallback_application_name", "smodel");
    add("dbname", m_uri.c_str());
    if (sessionAttributes) add("target_session_attrs", sessionAttributes);
    add("client_encoding", "UTF8");
    add(nullptr, nullptr);
    // a notice that comes while the connection is made would be printed: so the line is begun, told to be quiet, and made from its
    // beginning
    Connection connection(PQconnectStartParams(keywords.data(), values.data(), 1));
    if (!connection) return connection;
    PQsetNoticeReceiver(
        connection.get(), [](void*, const PGresult*) {}, nullptr);
    PQreset(connection.get());
    return connection;
}

}  // namespace qv::postgres
