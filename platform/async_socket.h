#pragma once
#include <platform/export.h>
#include <platform/runtime_class.h>
#include <platform/sockets.h>

/// Begins to use the socket layer, once for the process. Non-zero on success.
DORSEL_API int AfxSocketInit();

/// The framework's TCP client socket that does not wait: what cannot be done at once fails with the last
/// error 10035. Owns its handle. For one thread.
class DORSEL_API CAsyncSocket {
  public:
    CAsyncSocket() = default;
    virtual ~CAsyncSocket();
    CAsyncSocket(const CAsyncSocket&) = delete;
    CAsyncSocket& operator=(const CAsyncSocket&) = delete;
    static const CRuntimeClass runtimeClass;
    virtual const CRuntimeClass* GetRuntimeClass() const { return &runtimeClass; }

    static constexpr int streamSocket = 1;
    static constexpr long allEvents = 0x3F;
    /// Makes the socket; non-zero on success, 0 when it could not be made or there is one already. Only
    /// stream sockets on any local address and port exist here; the other arguments are taken for what they
    /// are.
    int Create(unsigned port = 0, int type = streamSocket, long events = allEvents,
               const char* address = nullptr);
    /// Begins to connect to a name or dotted address; looking the name up waits, at most ten seconds.
    virtual int Connect(const char* host, unsigned port);
    /// Bytes sent or received, 0 from `Receive` when the other side has ended, -1 on failure.
    int Send(const void* data, int length, int flags = 0);
    int Receive(void* buffer, int size, int flags = 0);
    virtual void Close();
    /// Number of Windows Sockets on both builds.
    static int GetLastError();

    platform::SocketHandle m_hSocket = platform::noSocket;
};

/// The socket that waits. While it does, on Windows, windows of the thread go on painting themselves; another
/// call on the same socket fails with the last error 10036.
class DORSEL_API CSocket : public CAsyncSocket {
  public:
    ~CSocket() override;
    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    /// Connects within ten seconds, and ten more for looking the name up; last error 10060 when it did not,
    /// 10004 when the call was cancelled.
    int Connect(const char* host, unsigned port) override;
    /// Sends all of it: `length`, or -1.
    int Send(const void* data, int length, int flags = 0);
    int Receive(void* buffer, int size, int flags = 0);
    void Close() override;

    bool IsBlocking() const { return m_blocking != nullptr; }
    /// Ends the call that waits: it fails with the last error 10004.
    void CancelBlockingCall();
    /// Called while a call waits, when a message or a timer of the thread is due. Non-zero when it dealt with
    /// one. Here: lets windows paint themselves.
    virtual int OnMessagePending();

  private:
    bool waitFor(platform::SocketEvent event, std::uint64_t limit = 0);

    bool* m_blocking = nullptr;  ///< of the call that waits: cleared to end it
};
