#pragma once
#include <platform/export.h>
#include <platform/sockets.h>

/// A bare blocking client of the service on TCP port 28123: one request, one answer.
///
/// What differs from what a reader may expect:
/// - copying copies the handle, not the connection: of several copies one may `Close` (or end) while it still
///   means the connection, the others must not be used;
/// - a read of exactly 10054 bytes counts as a connection that was reset.
/// Calls wait without limit, except that connecting takes at most ten seconds and looking up the name ten
/// more. For one thread.
class KESTRA_API CWSocket {
  public:
    static constexpr unsigned port = 28123;

    CWSocket() = default;
    ~CWSocket();
    CWSocket(const CWSocket& other) = default;
    CWSocket& operator=(const CWSocket& other) = default;

    /// Connects to a host name or dotted address; a connection that stands is closed first. 1, or 0 with a
    /// line in the trace that has the number of the error and the host.
    int Connect(const char* host);
    /// Sends `length` bytes, or a text when `length` is below 1. Bytes sent, -1 on failure.
    int Send(const char* data, int length);
    /// Reads once, at most `size` bytes. Bytes received; -1 when the connection has ended, which closes it.
    int Recv(char* buffer, int size);
    void Close();

    /// Sends a command (`length` bytes, or a text when `length` is below 1) to the service of a host and
    /// returns the text that one read of at most 4000 bytes delivers, cut at its first NUL; a longer answer
    /// is cut at what that read gave. "" when no answer came. The text is module-wide and valid until the
    /// next call. `reserved` is ignored.
    static const char* ServeurCommand(const char* host, const char* command, int length, long reserved);

    /// How long `Send` and `Recv` of every object wait from now on, in milliseconds, before they fail with
    /// the last error 10060; 0, as it is at first, is without limit. Returns the limit before.
    static unsigned SetReplyLimit(unsigned milliseconds);

  private:
    platform::SocketHandle m_socket = platform::noSocket;
};
