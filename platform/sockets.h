#pragma once
#include <cstdint>

#include <platform/export.h>

/// TCP over IPv4, replaceable for a test.
///
/// Sockets never block by themselves: what cannot be done at once fails with `socketWouldBlock`, and `wait`
/// tells when it can. Errors are the numbers of Windows Sockets on both builds; each thread has its last one.
namespace platform {

using SocketHandle = std::uint64_t;
constexpr SocketHandle noSocket = ~SocketHandle{0};

enum SocketError : int {
    socketInterrupted = 10004,
    socketWouldBlock = 10035,
    socketInProgress = 10036,
    socketNotASocket = 10038,
    socketReset = 10054,
    socketTimedOut = 10060,
    socketRefused = 10061,
    socketHostNotFound = 11001
};

/// How long connecting may take where the caller has no limit of its own: once for the name, once for the
/// connection.
constexpr int connectMilliseconds = 10'000;

enum class SocketEvent { readable, writable };
enum class SocketWait { ready, message, timeUp };

class DORSEL_API Sockets {
  public:
    virtual ~Sockets();
    /// Begins to use the system's socket layer; each call that succeeded may be answered by one of `finish`.
    virtual bool start() = 0;
    virtual void finish() = 0;
    /// A new socket, `noSocket` on failure; to be given back with `close`.
    virtual SocketHandle open() = 0;
    virtual void close(SocketHandle socket) = 0;
    /// IPv4 address (network byte order) of a host name or dotted address, waiting at most `milliseconds`.
    virtual bool resolve(const char* host, std::uint32_t& address, int milliseconds) = 0;
    /// Begins to connect: 0 when it is done, -1 with `socketWouldBlock` when `wait` for `writable` and then
    /// `connectError` tell the outcome, -1 with another error when it failed.
    virtual int connect(SocketHandle socket, std::uint32_t address, unsigned port) = 0;
    /// 0 when the connection stands.
    virtual int connectError(SocketHandle socket) = 0;
    /// Bytes taken or delivered, at most `length` or `size`; 0 from `receive` when the other side has ended;
    /// -1 on failure. A broken connection raises no signal.
    virtual int send(SocketHandle socket, const void* data, int length, int flags) = 0;
    virtual int receive(SocketHandle socket, void* buffer, int size, int flags) = 0;
    /// Waits for an event, at most `milliseconds` (negative: without limit); a connection that ended or broke
    /// is readable and writable. With `messages` it also returns when a message comes in for the thread's
    /// windows or timers, where the system has such messages.
    virtual SocketWait wait(SocketHandle socket, SocketEvent event, std::int64_t milliseconds,
                            bool messages) = 0;
    virtual int lastError() = 0;
    virtual void setLastError(int error) = 0;
};

DORSEL_API Sockets& theSockets();
/// Puts other sockets in force and returns the ones before; null puts the system's back. Not owned.
DORSEL_API Sockets* replaceSockets(Sockets* sockets);

}  // namespace platform
