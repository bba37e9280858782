#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <memory>
#include <string>
#include <vector>

#include <platform/sockets.h>
#include <platform/system_services.h>

namespace platform {
namespace {

int windowsError(int error) {
    switch (error) {
        case 0:
            return 0;
        case EINTR:
            return socketInterrupted;
        case EAGAIN:
        case EINPROGRESS:
            return socketWouldBlock;
        case EALREADY:
            return 10037;
        case EBADF:
        case ENOTSOCK:
            return socketNotASocket;
        case EACCES:
        case EPERM:
            return 10013;
        case EINVAL:
            return 10022;
        case EMFILE:
        case ENFILE:
            return 10024;
        case EAFNOSUPPORT:
            return 10047;
        case EADDRNOTAVAIL:
            return 10049;
        case ENETDOWN:
            return 10050;
        case ENETUNREACH:
            return 10051;
        case ECONNABORTED:
        case EPIPE:
            return 10053;
        case ECONNRESET:
            return socketReset;
        case ENOBUFS:
        case ENOMEM:
            return 10055;
        case EISCONN:
            return 10056;
        case ENOTCONN:
            return 10057;
        case ETIMEDOUT:
            return socketTimedOut;
        case ECONNREFUSED:
            return socketRefused;
        case EHOSTUNREACH:
            return 10065;
        default:
            return 10000 + error % 1000;
    }
}

/// A look-up of a name that runs beside its caller, who may give it up.
struct LookUp {
    explicit LookUp(const char* host) : name(host) {
        hints.ai_family = AF_INET;
        hints.ai_socktype = SOCK_STREAM;
        request.ar_name = name.c_str();
        request.ar_request = &hints;
    }
    ~LookUp() {
        if (request.ar_result != nullptr) ::freeaddrinfo(request.ar_result);
    }
    LookUp(const LookUp&) = delete;
    LookUp& operator=(const LookUp&) = delete;

    std::string name;
    addrinfo hints{};
    gaicb request{};
};

/// Look-ups that were given up while they ran: the system still writes to them.
void keepUntilDone(std::unique_ptr<LookUp> lookUp) {
    // Never destroyed: the system may still write to them while the program ends.
    static auto& givenUp = *new std::vector<std::unique_ptr<LookUp>>;
    std::erase_if(givenUp, [](const auto& old) { return ::gai_error(&old->request) != EAI_INPROGRESS; });
    if (lookUp != nullptr) givenUp.push_back(std::move(lookUp));
}

using Clock = std::chrono::steady_clock;

/// At least 0.
std::int64_t millisecondsUntil(Clock::time_point moment) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(moment - Clock::now()).count();
    return std::max<std::int64_t>(left, 0);
}

bool finished(LookUp& lookUp, int milliseconds) {
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    const gaicb* requests[] = {&lookUp.request};
    while (::gai_error(&lookUp.request) == EAI_INPROGRESS) {
        const std::int64_t left = millisecondsUntil(end);
        if (left == 0) return false;
        const timespec time{left / 1000, left % 1000 * 1'000'000};
        ::gai_suspend(requests, 1, &time);
    }
    return true;
}

class PosixSockets : public Sockets {
  public:
    bool start() override { return true; }
    void finish() override {}

    SocketHandle open() override {
        const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP);
        if (socket < 0) {
            noteError(errno);
            return noSocket;
        }
        const int on = 1;
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        ::setsockopt(socket, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
        return static_cast<SocketHandle>(socket);
    }
    void close(SocketHandle socket) override { ::close(descriptor(socket)); }

    bool resolve(const char* host, std::uint32_t& address, int milliseconds) override {
        if (::inet_pton(AF_INET, host, &address) == 1) return true;
        auto lookUp = std::make_unique<LookUp>(host);
        gaicb* requests[] = {&lookUp->request};
        keepUntilDone(nullptr);
        if (::getaddrinfo_a(GAI_NOWAIT, requests, 1, nullptr) == 0 && !finished(*lookUp, milliseconds)) {
            if (::gai_cancel(&lookUp->request) == EAI_NOTCANCELED) keepUntilDone(std::move(lookUp));
            t_lastError = socketTimedOut;
            return false;
        }
        if (::gai_error(&lookUp->request) != 0 || lookUp->request.ar_result == nullptr) {
            t_lastError = socketHostNotFound;
            return false;
        }
        address = reinterpret_cast<const sockaddr_in*>(lookUp->request.ar_result->ai_addr)->sin_addr.s_addr;
        return true;
    }

    int connect(SocketHandle socket, std::uint32_t address, unsigned port) override {
        sockaddr_in to{};
        to.sin_family = AF_INET;
        to.sin_port = htons(static_cast<std::uint16_t>(port));
        to.sin_addr.s_addr = address;
        return noted(::connect(descriptor(socket), reinterpret_cast<const sockaddr*>(&to), sizeof to));
    }
    int connectError(SocketHandle socket) override {
        int error = 0;
        socklen_t size = sizeof error;
        if (::getsockopt(descriptor(socket), SOL_SOCKET, SO_ERROR, &error, &size) != 0) error = errno;
        return windowsError(error);
    }

    int send(SocketHandle socket, const void* data, int length, int flags) override {
        return noted(
            ::send(descriptor(socket), data, static_cast<std::size_t>(length), flags | MSG_NOSIGNAL));
    }
    int receive(SocketHandle socket, void* buffer, int size, int flags) override {
        return noted(::recv(descriptor(socket), buffer, static_cast<std::size_t>(size), flags));
    }

    SocketWait wait(SocketHandle socket, SocketEvent event, std::int64_t milliseconds, bool) override {
        pollfd entry{descriptor(socket),
                     static_cast<short>(event == SocketEvent::readable ? POLLIN : POLLOUT), 0};
        const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
        for (;;) {
            const std::int64_t left = milliseconds < 0 ? -1 : millisecondsUntil(end);
            const int ready = ::poll(&entry, 1, static_cast<int>(std::min<std::int64_t>(left, INT_MAX)));
            if (ready > 0) return SocketWait::ready;
            // A signal of the host's ends the system's wait, not this one.
            if (ready == 0 || errno != EINTR) return SocketWait::timeUp;
        }
    }

    int lastError() override { return t_lastError; }
    void setLastError(int error) override { t_lastError = error; }

  private:
    static int descriptor(SocketHandle socket) { return static_cast<int>(socket); }
    static void noteError(int error) { t_lastError = windowsError(error); }
    static int noted(std::int64_t result) {
        if (result < 0) noteError(errno);
        return static_cast<int>(result);
    }
    static thread_local int t_lastError;
};
thread_local int PosixSockets::t_lastError = 0;

}  // namespace

Sockets& systemSockets() {
    static PosixSockets sockets;
    return sockets;
}

}  // namespace platform
