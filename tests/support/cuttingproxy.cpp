#include "tests/support/cuttingproxy.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <stdexcept>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

sockaddr_un SocketIn(const std::string& directory) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = directory + "/.s.PGSQL.5432";
    if (path.size() >= sizeof address.sun_path) throw std::runtime_error("the path of a socket is too long");
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

int Socket() {
    const int made = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (made < 0) throw std::runtime_error("no socket for the test");
    return made;
}

}  // namespace

CuttingProxy::CuttingProxy(const std::string& server) : m_server(server), m_listener(Socket()) {
    Allow(LONG_MAX, LONG_MAX);
    const sockaddr_un address = SocketIn(Host());
    if (::bind(m_listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 || ::listen(m_listener, 16) != 0)
        throw std::runtime_error("no socket for the test");
    m_thread = std::thread([this] { Serve(); });
}

CuttingProxy::~CuttingProxy() {
    m_ends = true;
    m_thread.join();
    for (const Wire& wire : m_wires) ::close(wire.client), ::close(wire.server);
    ::close(m_listener);
}

void CuttingProxy::Allow(long toServer, long fromServer) {
    m_passed[0] = m_passed[1] = 0;
    m_allowed[0] = toServer;
    m_allowed[1] = fromServer;
}

void CuttingProxy::HoldAnswersTo(std::string_view text) {
    m_held = text;
    m_watches = true;
}

void CuttingProxy::Release() {
    m_watches = m_holds = false;
}

void CuttingProxy::Serve() {
    while (!m_ends) {
        std::vector<pollfd> places = {{m_listener, POLLIN, 0}};
        for (const Wire& wire : m_wires) {
            places.push_back({wire.client, POLLIN, 0});
            places.push_back({m_holds ? -1 : wire.server, POLLIN, 0});  // a negative one is passed over
        }
        if (::poll(places.data(), places.size(), 20) <= 0) continue;
        if (places[0].revents) Connect(::accept(m_listener, nullptr, nullptr));
        // wires that came just now have no place yet
        for (std::size_t at = (places.size() - 1) / 2; at-- > 0;) {
            const Wire wire = m_wires[at];
            const bool stands = (!places[2 * at + 1].revents || Pass(0, wire.client, wire.server)) &&
                                (!places[2 * at + 2].revents || Pass(1, wire.server, wire.client));
            if (stands) continue;
            ::close(wire.client);
            ::close(wire.server);
            m_wires.erase(m_wires.begin() + static_cast<std::ptrdiff_t>(at));
        }
    }
}

void CuttingProxy::Connect(int client) {
    const int server = Socket();
    const sockaddr_un address = SocketIn(m_server);
    const bool cut = m_passed[0] >= m_allowed[0] || m_passed[1] >= m_allowed[1];
    if (!cut && ::connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        m_wires.push_back({client, server});
    } else {
        ::close(client);
        ::close(server);
    }
}

bool CuttingProxy::Pass(std::size_t direction, int from, int to) {
    char bytes[8192];
    const ssize_t count = ::recv(from, bytes, sizeof bytes, 0);
    if (count <= 0) return false;
    if (direction == 0 && m_watches && std::string_view(bytes, static_cast<std::size_t>(count)).find(m_held) != std::string_view::npos)
        m_holds = true;
    const long passes = std::min<long>(count, m_allowed[direction] - m_passed[direction]);
    for (long sent = 0; sent < passes;) {
        const ssize_t part = ::send(to, bytes + sent, static_cast<std::size_t>(passes - sent), MSG_NOSIGNAL);
        if (part <= 0) return false;
        sent += part;
    }
    m_passed[direction] += passes;
    return m_passed[direction] < m_allowed[direction];
}
