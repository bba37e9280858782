#include <kestra/text/txt_to_html.h>
#include <platform/files.h>

#include "options.h"

namespace {

int run(Arguments arguments, Terminal& terminal) {
    const Options options(arguments, {}, {"--open", "--delete"}, {"le listing"});
    if (!options.fault().empty()) return refuseUsage(htmlCommand, options.fault(), terminal);
    const std::string& listing = options.word(0);
    const auto refuse = [&](const char* why) {
        terminal.error("kestra html : « " + listing + " » : " + why + '\n');
        return exitFailed;
    };
    const int flags =
        (options.has("--open") ? txtToHtmlOpen : 0) | (options.has("--delete") ? txtToHtmlDeleteText : 0);
    const char* page = TxtToHtml(listing.c_str(), flags);
    if (page == nullptr) return refuse("listing absent ou illisible");
    if (*page == '\0') return refuse("listing vide");
    if (platform::theFiles().kind(page) != platform::FileKind::file)
        return refuse("la page n'a pas pu être écrite");
    terminal.output(std::string(page) + '\n');
    return exitDone;
}

}  // namespace

const Command htmlCommand = {
    "html", "fait une page HTML d'un listing",
    "Usage : kestra html LISTING [--open] [--delete]\n"
    "\n"
    "Écrit la page à côté du listing, avec l'extension « .htm », et dit son nom. Le\n"
    "premier fichier qui correspond à LISTING est pris (« * » et « ? »).\n"
    "\n"
    "  --open    ouvre la page\n"
    "  --delete  supprime le listing une fois la page écrite\n",
    run};
