#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/tempdir.h"

/** Stands between a client and a server, and cuts the wire behind a chosen byte; from then on it takes no one any more. */
class CuttingProxy {
  public:
    /** `server` is the directory of its socket. */
    explicit CuttingProxy(const std::string& server);
    ~CuttingProxy();
    CuttingProxy(const CuttingProxy&) = delete;
    CuttingProxy& operator=(const CuttingProxy&) = delete;

    /** The directory of its own socket. */
    std::string Host() const { return m_directory.Path(); }
    /** Lets so many bytes pass to the server and from it, counted over all connections from now on. */
    void Allow(long toServer, long fromServer);
    /** How many have passed since then. */
    long ToServer() const { return m_passed[0]; }
    long FromServer() const { return m_passed[1]; }

  private:
    void Serve();
    void Connect(int client);
    /** Moves what there is; false at the end of the wire. */
    bool Pass(std::size_t direction, int from, int to);

    struct Wire {
        int client, server;
    };
    TempDir m_directory;
    std::string m_server;
    std::atomic<long> m_allowed[2], m_passed[2];
    std::atomic<bool> m_ends = false;
    int m_listener = -1;
    std::vector<Wire> m_wires;
    std::thread m_thread;
};
