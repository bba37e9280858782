#include <cstdio>

#include <kestra/text/document_title.h>
#include <platform/document_properties.h>

#include "options.h"

namespace {

int failed(const std::string& file, int result, Terminal& terminal) {
    char code[16];
    std::snprintf(code, sizeof code, " (%08X)\n", static_cast<unsigned>(result));
    const char* why = result == platform::propertiesNotFound ? "pas de titre, ou pas de fichier"
                      : result == platform::propertiesAccessDenied
                          ? "accès refusé"
                          : "ce système de fichiers ne garde pas de titre";
    terminal.error("kestra title : « " + file + " » : " + why + code);
    return exitFailed;
}

int show(const std::string& file, Terminal& terminal) {
    char* values[4] = {};
    const int result = GetTitreNTFS(file.c_str(), values);
    if (result < 0) return failed(file, result, terminal);
    const char* const names[] = {"titre", "sujet", "remarques", "poste"};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        if (values[i] != nullptr) terminal.output(std::string(names[i]) + " : " + values[i] + '\n');
        platform::freePropertyText(values[i]);
    }
    return exitDone;
}

int run(Arguments arguments, Terminal& terminal) {
    const Options options(arguments, {"--set", "--subject", "--comments"}, {}, {"le fichier"});
    if (!options.fault().empty()) return refuseUsage(titleCommand, options.fault(), terminal);
    const std::string& file = options.word(0);
    if (!options.has("--set") && !options.has("--subject") && !options.has("--comments"))
        return show(file, terminal);
    const int result = SetTitreNTFS(file.c_str(), options.value("--set"), options.value("--subject"),
                                    options.value("--comments"));
    return result < 0 ? failed(file, result, terminal) : exitDone;
}

}  // namespace

const Command titleCommand = {
    "title", "montre ou change le titre d'un fichier",
    "Usage : kestra title FICHIER [--set TITRE] [--subject SUJET] [--comments REMARQUES]\n"
    "\n"
    "Sans option, montre le titre, le sujet, les remarques et le poste qui les a écrits.\n"
    "Ce qui n'est pas donné reste comme il était. Le système de fichiers doit savoir\n"
    "garder ces textes : NTFS sous Windows, les attributs étendus ailleurs.\n",
    run};
