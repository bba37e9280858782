#include <kestra/text/txt_to_html.h>
#include <platform/files.h>
#include <platform/standard_streams.h>

#include "options.h"

int host::html(const Arguments& arguments) {
    const Options options(arguments, {}, {"--open", "--delete"});
    if (!options.fault().empty() || options.rest().size() != 1)
        return wrongUsage("html", options.fault(),
                          {"usage : kestra html [options] LISTING", "  --open    ouvre la page",
                           "  --delete  supprime le listing"});
    const int flags =
        (options.has("--open") ? txtToHtmlOpen : 0) | (options.has("--delete") ? txtToHtmlDeleteText : 0);
    const char* page = TxtToHtml(options.rest()[0].c_str(), flags);
    if (page == nullptr) {
        platform::printError(options.rest()[0] + " : listing absent ou illisible");
        return 1;
    }
    if (*page == '\0' || platform::theFiles().kind(page) != platform::FileKind::file) {
        platform::printError(options.rest()[0] +
                             (*page == '\0' ? " : listing vide" : " : la page n'a pas pu être écrite"));
        return 1;
    }
    platform::printOut(page);
    return 0;
}
