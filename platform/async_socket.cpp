#include <platform/async_socket.h>

#include <algorithm>

#include <platform/thread_messages.h>

using platform::theSockets;

int AfxSocketInit() {
    static bool started = false;
    if (!started) started = theSockets().start();
    return started ? 1 : 0;
}

// ---- CAsyncSocket

const CRuntimeClass CAsyncSocket::runtimeClass{"CAsyncSocket", nullptr};

CAsyncSocket::~CAsyncSocket() {
    CAsyncSocket::Close();
}

int CAsyncSocket::Create(unsigned, int, long, const char*) {
    if (m_hSocket != platform::noSocket) return 0;
    m_hSocket = theSockets().open();
    return m_hSocket != platform::noSocket ? 1 : 0;
}

int CAsyncSocket::Connect(const char* host, unsigned port) {
    std::uint32_t address = 0;
    if (host == nullptr || !theSockets().resolve(host, address, platform::connectMilliseconds)) return 0;
    return theSockets().connect(m_hSocket, address, port) == 0 ? 1 : 0;
}

int CAsyncSocket::Send(const void* data, int length, int flags) {
    return theSockets().send(m_hSocket, data, length, flags);
}

int CAsyncSocket::Receive(void* buffer, int size, int flags) {
    return theSockets().receive(m_hSocket, buffer, size, flags);
}

void CAsyncSocket::Close() {
    if (m_hSocket != platform::noSocket) theSockets().close(m_hSocket);
    m_hSocket = platform::noSocket;
}

int CAsyncSocket::GetLastError() {
    return theSockets().lastError();
}

// ---- CSocket

const CRuntimeClass CSocket::runtimeClass{"CSocket", &CAsyncSocket::runtimeClass};

CSocket::~CSocket() {
    CancelBlockingCall();
}

int CSocket::Connect(const char* host, unsigned port) {
    if (CAsyncSocket::Connect(host, port) != 0) return 1;
    if (GetLastError() != platform::socketWouldBlock) return 0;
    const std::uint64_t limit = platform::startThreadTimer(platform::connectMilliseconds);
    const bool answered = waitFor(platform::SocketEvent::writable, limit);
    platform::stopThreadTimer(limit);
    if (!answered) return 0;
    const int error = theSockets().connectError(m_hSocket);
    theSockets().setLastError(error);
    return error == 0 ? 1 : 0;
}

int CSocket::Send(const void* data, int length, int flags) {
    if (length < 0) return -1;
    const char* next = static_cast<const char*>(data);
    for (int left = length; left > 0 || length == 0;) {
        const int sent = CAsyncSocket::Send(next, left, flags);
        if (sent < 0 &&
            (GetLastError() != platform::socketWouldBlock || !waitFor(platform::SocketEvent::writable)))
            return -1;
        if (length == 0) return sent;
        next += std::max(sent, 0);
        left -= std::max(sent, 0);
    }
    return length;
}

int CSocket::Receive(void* buffer, int size, int flags) {
    for (;;) {
        const int got = CAsyncSocket::Receive(buffer, size, flags);
        if (got >= 0 || GetLastError() != platform::socketWouldBlock) return got;
        if (!waitFor(platform::SocketEvent::readable)) return -1;
    }
}

void CSocket::Close() {
    CancelBlockingCall();
    CAsyncSocket::Close();
}

void CSocket::CancelBlockingCall() {
    if (m_blocking != nullptr) *m_blocking = false;
}

int CSocket::OnMessagePending() {
    return platform::dispatchPaint() ? 1 : 0;
}

/// False, with a last error, when the call was cancelled, the timer `limit` (0: none) is due, or another call
/// waits already.
bool CSocket::waitFor(platform::SocketEvent event, std::uint64_t limit) {
    if (m_blocking != nullptr) {
        theSockets().setLastError(platform::socketInProgress);
        return false;
    }
    bool blocking = true, ready = false, timeUp = false;
    m_blocking = &blocking;
    while (blocking && !ready && !timeUp) {
        // A timer that is due and belongs to nobody here must not keep the processor busy.
        const std::int64_t next = platform::untilThreadTimer();
        const auto outcome = theSockets().wait(m_hSocket, event, next == 0 ? 10 : next, true);
        ready = outcome == platform::SocketWait::ready;
        if (!ready) OnMessagePending();
        timeUp = !ready && limit != 0 && platform::takeThreadTimer(limit);
    }
    m_blocking = nullptr;
    if (!ready) theSockets().setLastError(timeUp ? platform::socketTimedOut : platform::socketInterrupted);
    return ready;
}
