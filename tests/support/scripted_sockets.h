#pragma once
#include <algorithm>
#include <chrono>
#include <cstring>
#include <string>
#include <string_view>
#include <thread>

#include <platform/sockets.h>

/// Sockets without a network, for fuzz targets and failures that a network does not give: one connection that
/// delivers `replies`, each read up to a byte 0xFF, and then has ended.
class ScriptedSockets : public platform::Sockets {
  public:
    explicit ScriptedSockets(std::string_view replies) : m_replies(replies) {}

    bool start() override { return true; }
    void finish() override {}
    platform::SocketHandle open() override { return canOpen ? 1 : platform::noSocket; }
    void close(platform::SocketHandle) override {}
    bool resolve(const char* host, std::uint32_t& address, int) override {
        connectedTo = host;
        address = 0;
        return true;
    }
    int connect(platform::SocketHandle, std::uint32_t, unsigned port) override {
        connectedTo += ':' + std::to_string(port);
        if (!isSilent) return 0;
        setLastError(platform::socketWouldBlock);
        return -1;
    }
    int connectError(platform::SocketHandle) override { return 0; }
    int send(platform::SocketHandle, const void* data, int length, int) override {
        sent.append(static_cast<const char*>(data), static_cast<std::size_t>(length));
        m_asked = false;
        return length;
    }
    int receive(platform::SocketHandle, void* buffer, int size, int) override {
        // Nothing has arrived before it is waited for.
        if (!m_asked) {
            setLastError(platform::socketWouldBlock);
            return -1;
        }
        const std::string_view reply =
            m_replies.substr(0, std::min(m_replies.find('\xFF'), static_cast<std::size_t>(size)));
        std::memcpy(buffer, reply.data(), reply.size());
        m_replies.remove_prefix(reply.size());
        if (m_replies.starts_with('\xFF')) m_replies.remove_prefix(1);
        m_asked = false;
        return static_cast<int>(reply.size());
    }
    platform::SocketWait wait(platform::SocketHandle, platform::SocketEvent, std::int64_t, bool) override {
        if (isSilent) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            return platform::SocketWait::timeUp;
        }
        m_asked = true;
        return platform::SocketWait::ready;
    }
    int lastError() override { return m_lastError; }
    void setLastError(int error) override { m_lastError = error; }

    bool canOpen = true, isSilent = false;  ///< a silent one never connects
    std::string sent, connectedTo;

  private:
    std::string_view m_replies;
    bool m_asked = false;
    int m_lastError = 0;
};
