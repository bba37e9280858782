#include <algorithm>

#include "command.h"

namespace {

const Command* const commands[] = {
    // one command a line
    &convertCommand, &htmlCommand, &mailCommand,  &projectionsCommand,
    &requestCommand, &sortCommand, &titleCommand,
};

bool isHelp(std::string_view argument) {
    return argument == "--help" || argument == "-h";
}

std::string hostHelp() {
    constexpr std::size_t summaryColumn = 12;
    std::string text = "Usage : kestra COMMANDE [ARGUMENTS]\n\nCommandes :\n";
    for (const Command* command : commands) {
        std::string name(command->name);
        name.resize(std::max(name.size() + 1, summaryColumn), ' ');
        text += "  " + name + std::string(command->summary) + '\n';
    }
    return text +
           "\n« kestra COMMANDE --help » explique une commande.\n"
           "Code de retour : 0 réussite, 1 échec, 2 ligne de commande incorrecte.\n";
}

/// The command asks for its help text; what stands behind "--" is no option.
bool asksForHelp(Arguments arguments) {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    return std::any_of(arguments.begin(), end, isHelp);
}

}  // namespace

int refuseUsage(const Command& command, std::string_view what, Terminal& terminal) {
    const std::string name(command.name);
    terminal.error("kestra " + name + " : " + std::string(what) + "\nVoir « kestra " + name + " --help ».\n");
    return exitUsage;
}

int runHost(Arguments arguments, Terminal& terminal) {
    if (arguments.empty()) {
        terminal.error(hostHelp());
        return exitUsage;
    }
    if (isHelp(arguments.front())) {
        terminal.output(hostHelp());
        return exitDone;
    }
    const auto* const found =
        std::find_if(std::begin(commands), std::end(commands),
                     [&](const Command* command) { return command->name == arguments.front(); });
    if (found == std::end(commands)) {
        terminal.error("kestra : commande inconnue « " + arguments.front() + " »\nVoir « kestra --help ».\n");
        return exitUsage;
    }
    const Arguments own = arguments.subspan(1);
    if (asksForHelp(own)) {
        terminal.output((*found)->help);
        return exitDone;
    }
    return (*found)->run(own, terminal);
}
