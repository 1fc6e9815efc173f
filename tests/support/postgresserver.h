#pragma once

#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

/** Runs a statement on its own connection and gives the first value of what comes back. Raises std::runtime_error. */
std::string PostgresSql(const std::string& address, const std::string& statement);

/**
 * A private server of PostgreSQL in a short-named directory of its own, reached by a socket there and by nothing else. It stops, and its
 * directory goes, with the object; also when the process that it is for dies. Everything raises std::runtime_error, and so does a
 * machine without the server's programs: tests must not pass for want of what they test.
 */
class PostgresServer {
  public:
    /** `settings` are lines of the configuration. */
    explicit PostgresServer(const std::vector<std::string>& settings = {}, pid_t keeper = 0);
    ~PostgresServer();
    PostgresServer(const PostgresServer&) = delete;
    PostgresServer& operator=(const PostgresServer&) = delete;

    /** A streaming standby. */
    static std::unique_ptr<PostgresServer> StandbyOf(const PostgresServer& primary, const std::string& name);
    /** The server of a directory that `Leave` gave. */
    static std::unique_ptr<PostgresServer> At(const std::string& directory);
    /** Lets the server outlive the object. */
    std::string Leave();

    /** The directory of the socket, which is what connection strings call a host. */
    const std::string& Host() const { return m_directory; }
    std::string Address() const { return AddressOf(m_directory); }
    /** Of several hosts with commas between them. */
    static std::string AddressOf(const std::string& hosts) { return "postgresql://postgres@/postgres?host=" + hosts; }
    std::string Sql(const std::string& statement) const { return PostgresSql(Address(), statement); }

    void Start();
    void Stop();
    /** Ends the server, without a chance to do anything, and waits until all of its processes are gone. */
    void Kill();
    /** Makes a standby the one that writes. */
    void Promote();

    /** Nothing reaches the disk in time: for tests that are about something else. */
    static const std::vector<std::string>& Hasty();

  private:
    struct Directory {};
    PostgresServer(Directory, std::string directory) : m_directory(std::move(directory)) {}
    void MakeDirectory(pid_t keeper);
    void Configure(const std::vector<std::string>& settings) const;

    std::string m_directory;
};

/** An empty schema on a server that all tests share, gone with the object. */
class PostgresSchema {
  public:
    PostgresSchema();
    ~PostgresSchema();
    PostgresSchema(const PostgresSchema&) = delete;
    PostgresSchema& operator=(const PostgresSchema&) = delete;
    /** The location of a repository there. Its lines bear the name of the schema as that of their application. */
    std::string Location() const;
    /** The directory of the server's socket, and the location by way of another host, which passes on to it. */
    std::string Host() const;
    std::string LocationBy(const std::string& host) const;
    /** Lines to it, other than that of `Sql`, that are as the condition says: whether there are any, and their end. */
    bool HasLines(const std::string& condition) const;
    void EndLines(const std::string& condition) const;
    std::string Sql(const std::string& statement) const { return PostgresSql(Location(), statement); }

  private:
    std::string Lines(const std::string& condition) const;

    std::string m_server, m_name;
};
