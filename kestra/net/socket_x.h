#pragma once
#include <cstdint>

#include <platform/async_socket.h>
#include <platform/cstring.h>
#include <platform/export.h>

/// The framework's waiting socket with a time-out: a timer of the thread whose end cancels the call that
/// waits.
///
/// A call that the time-out ended fails with the last error 10060. A time-out of 0 milliseconds is none. All
/// objects receive through one buffer of 256 bytes, so the class is for one thread at a time.
class KESTRA_API CSocketX : public CSocket {
  public:
    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }
    ~CSocketX() override;

    /// Starts the timer that ends the call that waits after so many milliseconds; its identifier, 0 on
    /// failure.
    int SetTimeOut(unsigned milliseconds);
    /// Ends the timer; non-zero when there was one.
    int KillTimeOut();

    /// Sends a text, or `length` bytes; what `CSocket::Send` gives: the length, or -1.
    int Send(const char* text, unsigned timeoutMilliseconds, int flags);
    int SendBin(const void* data, long length, unsigned timeoutMilliseconds, int flags);
    /// Receives once, at most 256 bytes, as a text that ends at the first NUL. The number of bytes, 0 when
    /// the other side has ended, -1 on failure (the text is then empty).
    int Receive(CString& reply, unsigned timeoutMilliseconds, int flags);
    /// One step of a line protocol: sends a command and receives an answer, each within the time-out. 1 when
    /// the answer begins with `expected` (case counts; null or empty: any answer). 0 when none came, or when
    /// it begins otherwise; "QUIT" CR LF is then sent.
    int Send(const char* command, const char* expected, unsigned timeoutMilliseconds, int flags);

    /// Cancels the call that waits when this socket's timer is due, not when another one is.
    int OnMessagePending() override;

  private:
    int timed(unsigned milliseconds, bool translateAlways, const auto& transfer);

    std::uint64_t m_timeOut = 0;
};
