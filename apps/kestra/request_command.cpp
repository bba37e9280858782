#include <charconv>

#include <kestra/net/w_socket.h>

#include "options.h"

namespace {

constexpr int usualSeconds = 30, mostSeconds = 86'400;

bool readSeconds(const std::string& text, int& seconds) {
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, seconds);
    return read.ec == std::errc() && read.ptr == end && seconds >= 0 && seconds <= mostSeconds;
}

int run(Arguments arguments, Terminal& terminal) {
    const Options options(arguments, {"--seconds"}, {}, {"le poste", "la commande"});
    if (!options.fault().empty()) return refuseUsage(requestCommand, options.fault(), terminal);
    int seconds = usualSeconds;
    if (options.has("--seconds") && !readSeconds(options.text("--seconds"), seconds))
        return refuseUsage(requestCommand, "--seconds : de 0 à 86400", terminal);

    const unsigned limitBefore = CWSocket::SetReplyLimit(static_cast<unsigned>(seconds) * 1000);
    const std::string reply =
        CWSocket::ServeurCommand(options.word(0).c_str(), options.word(1).c_str(), 0, 0);
    CWSocket::SetReplyLimit(limitBefore);
    if (reply.empty()) {
        terminal.error("kestra request : « " + options.word(0) + " » : pas de réponse\n");
        return exitFailed;
    }
    terminal.output(reply + '\n');
    return exitDone;
}

}  // namespace

const Command requestCommand = {"request", "envoie une commande au service d'un poste et montre sa réponse",
                                "Usage : kestra request POSTE COMMANDE [--seconds N]\n"
                                "\n"
                                "Le service écoute sur le port 28123. La réponse est coupée à ce que la\n"
                                "première lecture donne, 4000 octets au plus.\n"
                                "\n"
                                "  --seconds N  attend la réponse N secondes (sinon 30 ; 0 : sans limite)\n",
                                run};
