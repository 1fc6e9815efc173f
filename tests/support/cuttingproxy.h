#pragma once

#include <atomic>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/support/tempdir.h"

/**
 * Stands between a client and a server. It cuts the wire behind a chosen byte, and from then on takes no one any more; or it keeps the
 * answer to a chosen statement to itself.
 */
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
    /** From a statement on that holds the text nothing comes back from the server, which gets the statement all the same. Called once. */
    void HoldAnswersTo(std::string_view text);
    /** Whether such a statement came. */
    bool Holds() const { return m_holds; }
    /** Lets the answers pass again. */
    void Release();

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
    std::atomic<bool> m_ends = false, m_watches = false, m_holds = false;
    std::string m_held;
    int m_listener = -1;
    std::vector<Wire> m_wires;
    std::thread m_thread;
};
