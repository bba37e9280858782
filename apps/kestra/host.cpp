#include <algorithm>
#include <new>

#include <platform/prompt.h>
#include <platform/replaceable.h>

#include "command.h"

namespace {

const Command* const commands[] = {
    &convertCommand, &htmlCommand,    &mailCommand, &projectCommand, &projectionsCommand,
    &requestCommand, &serviceCommand, &sortCommand, &tableCommand,   &titleCommand,
};

bool isHelp(std::string_view argument) {
    return argument == "--help" || argument == "-h";
}

/// A command of a group, or one of the host's own, whose group has no name.
struct Group {
    std::string_view name;
    std::string_view help;
    std::span<const Command* const> commands;

    std::string program() const { return name.empty() ? "kestra" : "kestra " + std::string(name); }
    std::string_view ownName(const Command& command) const {
        return command.name.substr(name.empty() ? 0 : name.size() + 1);
    }
};

std::string helpOf(const Group& group) {
    constexpr std::size_t summaryColumn = 13;
    std::string text = "Usage : " + group.program() + " COMMANDE [ARGUMENTS]\n\nCommandes :\n";
    for (const Command* command : group.commands) {
        std::string name(group.ownName(*command));
        name.resize(std::max(name.size() + 1, summaryColumn), ' ');
        text += "  " + name + std::string(command->summary) + '\n';
    }
    if (!group.help.empty()) text += '\n' + std::string(group.help);
    return text + "\n« " + group.program() +
           " COMMANDE --help » explique une commande.\n"
           "Code de retour : 0 réussite, 1 échec, 2 ligne de commande incorrecte.\n";
}

/// The command asks for its help text; what stands behind "--" is no option.
bool asksForHelp(Arguments arguments) {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    return std::any_of(arguments.begin(), end, isHelp);
}

int runGroup(const Group& group, Arguments arguments, Terminal& terminal);

int runCommand(const Command& command, Arguments arguments, Terminal& terminal) {
    if (!command.commands.empty())
        return runGroup({command.name, command.help, command.commands}, arguments, terminal);
    if (asksForHelp(arguments)) {
        terminal.output(command.help);
        return exitDone;
    }
    return command.run(arguments, terminal);
}

int runGroup(const Group& group, Arguments arguments, Terminal& terminal) {
    if (arguments.empty()) {
        terminal.error(helpOf(group));
        return exitUsage;
    }
    if (isHelp(arguments.front())) {
        terminal.output(helpOf(group));
        return exitDone;
    }
    const auto found =
        std::find_if(group.commands.begin(), group.commands.end(),
                     [&](const Command* command) { return group.ownName(*command) == arguments.front(); });
    if (found != group.commands.end()) return runCommand(**found, arguments.subspan(1), terminal);
    terminal.error(group.program() + " : commande inconnue « " + arguments.front() + " »\nVoir « " +
                   group.program() + " --help ».\n");
    return exitUsage;
}

/// Messages of the library go where the host's own go; nobody is asked.
class TerminalPrompt : public platform::Prompt {
  public:
    explicit TerminalPrompt(Terminal& terminal) : m_terminal(terminal) {}
    platform::Answer ask(unsigned style, const char* text, const char*) override {
        m_terminal.error(std::string(text) + '\n');
        return platform::neutralAnswer(style);
    }

  private:
    Terminal& m_terminal;
};

}  // namespace

int refuseUsage(const Command& command, std::string_view what, Terminal& terminal) {
    const std::string name(command.name);
    terminal.error("kestra " + name + " : " + std::string(what) + "\nVoir « kestra " + name + " --help ».\n");
    return exitUsage;
}

int runHost(Arguments arguments, Terminal& terminal) {
    TerminalPrompt prompt(terminal);
    const platform::Replaced inForce(platform::replacePrompt, prompt);
    try {
        return runGroup({"", "", commands}, arguments, terminal);
    } catch (const std::bad_alloc&) {
        terminal.error("kestra : mémoire insuffisante\n");
        return exitFailed;
    }
}
