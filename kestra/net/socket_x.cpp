#include <kestra/net/socket_x.h>

#include <cstring>

#include <platform/thread_messages.h>

namespace {

char g_reply[256];

}  // namespace

const CRuntimeClass CSocketX::runtimeClass{"CSocketX", &CSocket::runtimeClass};

CSocketX::~CSocketX() {
    KillTimeOut();
}

int CSocketX::SetTimeOut(unsigned milliseconds) {
    KillTimeOut();
    m_timeOut = platform::startThreadTimer(milliseconds);
    return static_cast<int>(m_timeOut);
}

int CSocketX::KillTimeOut() {
    const bool killed = m_timeOut != 0 && platform::stopThreadTimer(m_timeOut);
    m_timeOut = 0;
    return killed ? 1 : 0;
}

int CSocketX::timed(unsigned milliseconds, bool translateAlways, const auto& transfer) {
    if (milliseconds == 0) return transfer();
    // An older interruption of this thread must not pass for one of this call.
    platform::theSockets().setLastError(0);
    SetTimeOut(milliseconds);
    const int result = transfer();
    const int error = GetLastError();
    KillTimeOut();
    const bool timedOut = error == platform::socketInterrupted && (translateAlways || result == -1);
    platform::theSockets().setLastError(timedOut ? platform::socketTimedOut : error);
    return result;
}

int CSocketX::Send(const char* text, unsigned timeoutMilliseconds, int flags) {
    if (text == nullptr) text = "";
    return SendBin(text, static_cast<long>(std::strlen(text)), timeoutMilliseconds, flags);
}

int CSocketX::SendBin(const void* data, long length, unsigned timeoutMilliseconds, int flags) {
    return timed(timeoutMilliseconds, true,
                 [&] { return CSocket::Send(data, static_cast<int>(length), flags); });
}

int CSocketX::Receive(CString& reply, unsigned timeoutMilliseconds, int flags) {
    std::memset(g_reply, 0, sizeof g_reply);
    const int got =
        timed(timeoutMilliseconds, false, [&] { return CSocket::Receive(g_reply, sizeof g_reply, flags); });
    reply = std::string_view(g_reply, ::strnlen(g_reply, sizeof g_reply));
    return got;
}

int CSocketX::Send(const char* command, const char* expected, unsigned timeoutMilliseconds, int flags) {
    Send(command, timeoutMilliseconds, flags);
    CString reply;
    if (Receive(reply, timeoutMilliseconds, 0) == -1) return 0;
    if (expected == nullptr || reply.view().starts_with(expected)) return 1;
    Send("QUIT\r\n", 0u, 0);
    return 0;
}

int CSocketX::OnMessagePending() {
    if (m_timeOut == 0 || !platform::takeThreadTimer(m_timeOut)) return CSocket::OnMessagePending();
    CancelBlockingCall();
    return 0;
}
