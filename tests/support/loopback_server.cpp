#include "loopback_server.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>

#ifdef _WIN32
#include <winsock2.h>
#include <ws2tcpip.h>
using Length = int;
constexpr int MSG_NOSIGNAL = 0;
#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
using SOCKET = int;
using Length = socklen_t;
static int closesocket(int socket) {
    return ::close(socket);
}
static int WSAPoll(pollfd* entries, nfds_t count, int milliseconds) {
    return ::poll(entries, count, milliseconds);
}
#endif

namespace {

/// Nobody waits longer than this in a test.
constexpr int longestWait = 20'000;

bool readable(SOCKET socket, int milliseconds) {
    pollfd entry{};
    entry.fd = socket;
    entry.events = POLLIN;
    return WSAPoll(&entry, 1, milliseconds) > 0;
}

void receiveUntil(SOCKET socket, std::string_view end, auto&& take) {
    std::string piece(262144, '\0'), last;
    while (!last.ends_with(end) && readable(socket, longestWait)) {
        const auto got = ::recv(socket, piece.data(), static_cast<Length>(piece.size()), 0);
        if (got <= 0) return;
        const std::string_view arrived(piece.data(), static_cast<std::size_t>(got));
        take(arrived);
        last += arrived.substr(arrived.size() - std::min(arrived.size(), end.size()));
        last.erase(0, last.size() - std::min(last.size(), end.size()));
    }
}

SOCKET listenAt(const char* address, unsigned port, unsigned& given) {
    const SOCKET listener = ::socket(AF_INET, SOCK_STREAM, 0);
    const int on = 1;
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, reinterpret_cast<const char*>(&on), sizeof on);
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_port = htons(static_cast<std::uint16_t>(port));
    ::inet_pton(AF_INET, address, &at.sin_addr);
    EXPECT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&at), sizeof at), 0) << address << ' ' << port;
    EXPECT_EQ(::listen(listener, 8), 0);
    Length size = sizeof at;
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&at), &size);
    given = ntohs(at.sin_port);
    return listener;
}

}  // namespace

std::string LoopbackServer::Client::readUntil(std::string_view end) {
    std::string text;
    receiveUntil(static_cast<SOCKET>(m_socket), end, [&](std::string_view arrived) { text += arrived; });
    m_received += text;
    return text;
}

void LoopbackServer::Client::skipUntil(std::string_view end) {
    receiveUntil(static_cast<SOCKET>(m_socket), end, [](std::string_view) {});
}

void LoopbackServer::Client::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto put = ::send(static_cast<SOCKET>(m_socket), bytes.data(),
                                static_cast<Length>(bytes.size()), MSG_NOSIGNAL);
        if (put <= 0) return;
        bytes.remove_prefix(static_cast<std::size_t>(put));
    }
}

LoopbackServer::LoopbackServer(Serve serve, const char* address, unsigned port) {
#ifdef _WIN32
    WSADATA data;
    ::WSAStartup(MAKEWORD(2, 2), &data);
#endif
    m_listener = static_cast<std::uint64_t>(listenAt(address, port, m_port));
    m_thread = std::thread([this, serve = std::move(serve)] { run(serve); });
}

LoopbackServer::~LoopbackServer() {
    m_ending = true;
    m_thread.join();
    closesocket(static_cast<SOCKET>(m_listener));
}

void LoopbackServer::run(const Serve& serve) {
    while (!m_ending) {
        if (!readable(static_cast<SOCKET>(m_listener), 20)) continue;
        const SOCKET client = ::accept(static_cast<SOCKET>(m_listener), nullptr, nullptr);
        const std::lock_guard lock(m_mutex);
        Client served(static_cast<std::uint64_t>(client), m_received);
        serve(served);
        closesocket(client);
    }
}

std::string LoopbackServer::received() {
    const std::lock_guard lock(m_mutex);
    return m_received;
}

std::string ownLoopbackAddress() {
    const auto ticks =
        static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    const std::uint64_t mixed = ticks * 0x9E3779B97F4A7C15u;
    return "127." + std::to_string(1 + (mixed >> 32) % 254) + '.' + std::to_string((mixed >> 40) % 256) +
           '.' + std::to_string(1 + (mixed >> 48) % 254);
}
