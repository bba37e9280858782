#include <cstdint>
#include <string>
#include <string_view>

#include <kestra/net/send_mail.h>
#include <tests/support/scripted_sockets.h>

/// A server that answers with any bytes, reads ended by 0xFF: the dialogue ends, and a message is only ever
/// taken for sent when it went out whole.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ScriptedSockets sockets({reinterpret_cast<const char*>(data), size});
    platform::replaceSockets(&sockets);
    const int sent =
        SendMailWith(mailSafeLines, "serveur", 25, "moi", "", "a@b.fr", "c@d.fr;e@f.fr", "s", ".b", nullptr);
    platform::replaceSockets(nullptr);
    const bool whole = std::string_view(sockets.sent).ends_with("\r\n.\r\nQUIT\r\n");
    if (sent == 1 && !whole) __builtin_trap();
    return 0;
}
