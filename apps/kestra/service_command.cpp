#include <dorsel/paths.h>

#include "json.h"
#include "project_file.h"
#include "words.h"

namespace {

int service(Arguments arguments, Terminal& terminal) {
    const Words words = readWords(arguments, {"le code"});
    if (!words.fault.empty()) return refuseUsage(serviceCommand, words.fault, terminal);
    char folder[DOS::pathSize];
    const int length = Cchantier::Serv_dir(words.names[0].c_str(), folder);
    if (length < 0) return exitFailed;  // the message has said it
    if (length == 0)
        return failProject(serviceCommand, words.names[0], "aucun dossier pour ce code", terminal);
    terminal.output(
        words.json
            ? json::object({{"code", json::text(words.names[0])}, {"folder", json::text(folder)}}) + '\n'
            : std::string(folder) + '\n');
    return exitDone;
}

}  // namespace

const Command serviceCommand = {
    "service", "donne le dossier d'un service",
    "Usage : kestra service CODE [--json]\n"
    "\n"
    "Donne le dossier où sont classés les projets d'un service, d'après le fichier des services\n"
    "(« ini\\services.ini » du dossier local, sinon « ini\\services.def » du dossier réseau).\n"
    "\n"
    "  --json  un objet : code, folder\n"
    "\n"
    "Code de retour : 0 ; 1 quand aucune ligne ne convient ou qu'il n'y a pas de fichier des\n"
    "services ; 2 ligne de commande incorrecte.\n",
    service};
