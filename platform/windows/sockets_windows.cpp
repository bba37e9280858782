#include <winsock2.h>
#include <windows.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>

#include <platform/sockets.h>
#include <platform/system_services.h>
#include <platform/windows/handle.h>

// Functions of ws2_32 that the compiler's headers leave out.
extern "C" __declspec(dllimport) INT WSAAPI GetAddrInfoExCancel(HANDLE* handle);
extern "C" __declspec(dllimport) INT WSAAPI GetAddrInfoExOverlappedResult(OVERLAPPED* overlapped);

namespace platform {
namespace {

/// A look-up of a name that runs beside its caller, who may give it up.
struct LookUp {
    explicit LookUp(std::string_view host) : name(host.size(), L'\0') {
        std::transform(host.begin(), host.end(), name.begin(),
                       [](char c) { return static_cast<wchar_t>(static_cast<unsigned char>(c)); });
        hints.ai_family = AF_INET;
        hints.ai_socktype = SOCK_STREAM;
        overlapped.hEvent = done.get();
    }
    ~LookUp() {
        if (result != nullptr) ::FreeAddrInfoExW(result);
    }
    LookUp(const LookUp&) = delete;
    LookUp& operator=(const LookUp&) = delete;

    /// 0 on success; WAIT_TIMEOUT when the time passed.
    int run(int milliseconds) {
        // All name spaces: a computer of the local network need not be known to its DNS.
        const int started = ::GetAddrInfoExW(name.c_str(), nullptr, NS_ALL, nullptr, &hints, &result, nullptr,
                                             &overlapped, nullptr, &cancel);
        if (started != WSA_IO_PENDING) return started;
        if (::WaitForSingleObject(done.get(), static_cast<DWORD>(milliseconds)) == WAIT_TIMEOUT)
            return WAIT_TIMEOUT;
        return ::GetAddrInfoExOverlappedResult(&overlapped);
    }

    /// Nothing writes to it any more.
    bool ended() {
        ::GetAddrInfoExCancel(&cancel);
        return ::WaitForSingleObject(done.get(), 100) == WAIT_OBJECT_0;
    }

    std::wstring name;
    UniqueHandle done{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    ADDRINFOEXW hints{};
    ADDRINFOEXW* result = nullptr;
    OVERLAPPED overlapped{};
    HANDLE cancel = nullptr;
};

class WindowsSockets : public Sockets {
  public:
    bool start() override {
        WSADATA data;
        return ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    void finish() override { ::WSACleanup(); }

    SocketHandle open() override {
        const SOCKET socket = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
        if (socket == INVALID_SOCKET) return noSocket;
        u_long nonBlocking = 1;
        ::ioctlsocket(socket, static_cast<long>(FIONBIO), &nonBlocking);
        const BOOL on = TRUE;
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
        ::setsockopt(socket, SOL_SOCKET, SO_KEEPALIVE, reinterpret_cast<const char*>(&on), sizeof on);
        return socket;
    }
    void close(SocketHandle socket) override { ::closesocket(socket); }

    bool resolve(const char* host, std::uint32_t& address, int milliseconds) override {
        if (::inet_pton(AF_INET, host, &address) == 1) return true;
        auto lookUp = std::make_unique<LookUp>(host);
        const int outcome = lookUp->run(milliseconds);
        if (outcome == WAIT_TIMEOUT) {
            // What cannot be called back is left to the system, which still writes to it.
            if (!lookUp->ended()) (void)lookUp.release();
            ::WSASetLastError(WSAETIMEDOUT);
            return false;
        }
        if (outcome != 0 || lookUp->result == nullptr) {
            ::WSASetLastError(WSAHOST_NOT_FOUND);
            return false;
        }
        address = reinterpret_cast<const sockaddr_in*>(lookUp->result->ai_addr)->sin_addr.s_addr;
        return true;
    }

    int connect(SocketHandle socket, std::uint32_t address, unsigned port) override {
        sockaddr_in to{};
        to.sin_family = AF_INET;
        to.sin_port = htons(static_cast<std::uint16_t>(port));
        to.sin_addr.s_addr = address;
        return ::connect(socket, reinterpret_cast<const sockaddr*>(&to), sizeof to);
    }
    int connectError(SocketHandle socket) override {
        int error = 0, size = sizeof error;
        if (::getsockopt(socket, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size) != 0)
            return ::WSAGetLastError();
        return error;
    }

    int send(SocketHandle socket, const void* data, int length, int flags) override {
        return ::send(socket, static_cast<const char*>(data), length, flags);
    }
    int receive(SocketHandle socket, void* buffer, int size, int flags) override {
        return ::recv(socket, static_cast<char*>(buffer), size, flags);
    }

    SocketWait wait(SocketHandle socket, SocketEvent event, std::int64_t milliseconds,
                    bool messages) override {
        if (isReady(socket, event)) return SocketWait::ready;
        thread_local const UniqueHandle signal(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
        const long events =
            event == SocketEvent::readable ? FD_READ | FD_CLOSE : FD_WRITE | FD_CONNECT | FD_CLOSE;
        ::WSAEventSelect(socket, signal.get(), events);
        const SocketWait result = waitFor(signal.get(), socket, event, milliseconds, messages);
        ::WSAEventSelect(socket, nullptr, 0);
        return result;
    }

    int lastError() override { return ::WSAGetLastError(); }
    void setLastError(int error) override { ::WSASetLastError(error); }

  private:
    static bool isReady(SOCKET socket, SocketEvent event) {
        fd_set wanted, failed;
        FD_ZERO(&wanted);
        FD_ZERO(&failed);
        FD_SET(socket, &wanted);
        FD_SET(socket, &failed);
        timeval now{0, 0};
        const bool reading = event == SocketEvent::readable;
        return ::select(0, reading ? &wanted : nullptr, reading ? nullptr : &wanted, &failed, &now) != 0;
    }

    /// The socket is asked itself from time to time: an event tells of a change only, which may be past.
    static SocketWait waitFor(HANDLE signal, SOCKET socket, SocketEvent event, std::int64_t milliseconds,
                              bool messages) {
        constexpr std::int64_t longest = 200;
        const ULONGLONG end =
            ::GetTickCount64() + static_cast<ULONGLONG>(std::max<std::int64_t>(milliseconds, 0));
        for (;;) {
            const std::int64_t left = static_cast<std::int64_t>(end - ::GetTickCount64());
            const std::int64_t slice =
                milliseconds < 0 ? longest : std::clamp<std::int64_t>(left, 0, longest);
            const DWORD woken = ::MsgWaitForMultipleObjects(1, &signal, FALSE, static_cast<DWORD>(slice),
                                                            messages ? QS_ALLINPUT : 0);
            if (isReady(socket, event)) return SocketWait::ready;
            if (woken == WAIT_OBJECT_0 + 1) return SocketWait::message;
            if (milliseconds >= 0 && ::GetTickCount64() >= end) return SocketWait::timeUp;
        }
    }
};

}  // namespace

Sockets& systemSockets() {
    static WindowsSockets sockets;
    return sockets;
}

}  // namespace platform
