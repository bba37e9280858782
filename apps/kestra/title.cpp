#include <cstdio>

#include <kestra/text/document_title.h>
#include <platform/document_properties.h>
#include <platform/standard_streams.h>

#include "options.h"

namespace {

int failed(const std::string& file, int result) {
    char code[16];
    std::snprintf(code, sizeof code, "%08X", static_cast<unsigned>(result));
    const char* why = result == platform::propertiesNotFound ? "pas de titre, ou pas de fichier"
                      : result == platform::propertiesAccessDenied
                          ? "accès refusé"
                          : "ce système de fichiers ne garde pas de titre";
    platform::printError(file + " : " + why + " (" + code + ")");
    return 1;
}

int show(const std::string& file) {
    char* values[4] = {};
    const int result = GetTitreNTFS(file.c_str(), values);
    if (result < 0) return failed(file, result);
    const char* const names[] = {"titre", "sujet", "remarques", "poste"};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        if (values[i] != nullptr) platform::printOut(std::string(names[i]) + " : " + values[i]);
        platform::freePropertyText(values[i]);
    }
    return 0;
}

}  // namespace

int host::title(const Arguments& arguments) {
    const Options options(arguments, {"--set", "--subject", "--comments"}, {});
    if (!options.fault().empty() || options.rest().size() != 1)
        return wrongUsage(
            "title", options.fault(),
            {"usage : kestra title FICHIER [--set TITRE] [--subject SUJET] [--comments REMARQUES]"});
    const std::string& file = options.rest()[0];
    if (arguments.size() == 1) return show(file);
    const int result = SetTitreNTFS(file.c_str(), options.value("--set"), options.value("--subject"),
                                    options.value("--comments"));
    return result < 0 ? failed(file, result) : 0;
}
