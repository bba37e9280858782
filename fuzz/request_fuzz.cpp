#include <cstdint>
#include <string_view>

#include <kestra/net/w_socket.h>
#include <tests/support/scripted_sockets.h>

/// A service that answers with any bytes: the answer is the text up to its first NUL, at most 4000 characters
/// of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view reply(reinterpret_cast<const char*>(data), size);
    ScriptedSockets sockets(reply);
    platform::replaceSockets(&sockets);
    const std::string_view answer = CWSocket::ServeurCommand("serveur", "etat", 0, 0);
    platform::replaceSockets(nullptr);
    const std::string_view read = reply.substr(0, reply.find('\xFF')).substr(0, 4000);
    if (answer != read.substr(0, read.find('\0'))) __builtin_trap();
    return 0;
}
