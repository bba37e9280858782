#include <cstdlib>

#include <kestra/net/w_socket.h>
#include <platform/standard_streams.h>

#include "options.h"

int host::request(const Arguments& arguments) {
    const Options options(arguments, {"--seconds"}, {});
    const int seconds = std::atoi(options.value("--seconds") != nullptr ? options.value("--seconds") : "30");
    if (!options.fault().empty() || options.rest().size() != 2 || seconds < 0 || seconds > 86'400)
        return wrongUsage("request", options.fault(),
                          {"usage : kestra request POSTE COMMANDE",
                           "  --seconds N  attend la réponse N secondes (sinon 30 ; 0 : sans limite)"});
    CWSocket::SetReplyLimit(static_cast<unsigned>(seconds) * 1000);
    const std::string& poste = options.rest()[0];
    const char* reply = CWSocket::ServeurCommand(poste.c_str(), options.rest()[1].c_str(), 0, 0);
    if (*reply == '\0') {
        platform::printError(poste + " : pas de réponse");
        return 1;
    }
    platform::printOut(reply);
    return 0;
}
