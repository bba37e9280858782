#pragma once
#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

/// A TCP server on this machine for one test, which answers as the test says; it serves one client at a time
/// in a thread of its own until it is destroyed.
class LoopbackServer {
  public:
    /// One connection, as the test's function sees it.
    class Client {
      public:
        explicit Client(std::uint64_t socket, std::string& received)
            : m_socket(socket), m_received(received) {}
        /// All that has arrived, once it ends in `end` (of a connection that was closed: what there was).
        std::string readUntil(std::string_view end);
        std::string readLine() { return readUntil("\r\n"); }
        /// As `readUntil`, but nothing is kept.
        void skipUntil(std::string_view end);
        void write(std::string_view bytes);

      private:
        std::uint64_t m_socket;
        std::string& m_received;
    };
    using Serve = std::function<void(Client&)>;

    /// Listens at `address` (of 127.0.0.0/8) and `port`, 0 for a free one.
    explicit LoopbackServer(Serve serve, const char* address = "127.0.0.1", unsigned port = 0);
    ~LoopbackServer();

    unsigned port() const { return m_port; }
    /// What the clients sent so far; all of it once the last client's connection is served.
    std::string received();

  private:
    void run(const Serve& serve);

    std::uint64_t m_listener;
    unsigned m_port = 0;
    std::mutex m_mutex;
    std::string m_received;
    std::atomic<bool> m_ending{false};
    std::thread m_thread;
};

/// An address of 127.0.0.0/8 that is this test program's own, for servers with a fixed port.
std::string ownLoopbackAddress();
