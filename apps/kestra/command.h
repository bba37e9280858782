#pragma once
#include <span>
#include <string>
#include <string_view>

/// What the command-line host is made of: a table of commands, each in a file of its own.

/// Where a command writes; texts are Windows-1252.
class Terminal {
  public:
    virtual ~Terminal() = default;
    virtual void output(std::string_view text) = 0;
    virtual void error(std::string_view text) = 0;
    /// Somebody may be watching the error channel.
    virtual bool errorIsWatched() const = 0;
};

enum ExitCode : int {
    exitDone = 0,
    exitFailed = 1,  ///< the command could not do its work; it said why
    exitUsage = 2,   ///< the command line makes no sense; it was said how it should be
};

using Arguments = std::span<const std::string>;

struct Command {
    std::string_view name;
    std::string_view summary;  ///< one line, for the list of commands
    std::string_view help;     ///< the whole help text
    int (*run)(Arguments arguments, Terminal& terminal);
};

extern const Command convertCommand;
extern const Command htmlCommand;
extern const Command mailCommand;
extern const Command projectionsCommand;
extern const Command requestCommand;
extern const Command sortCommand;
extern const Command titleCommand;

/// Runs the command that the arguments name, or the host's own `--help`; returns the exit code.
int runHost(Arguments arguments, Terminal& terminal);

/// Says what is wrong with a command line, and where help is; returns `exitUsage`.
int refuseUsage(const Command& command, std::string_view what, Terminal& terminal);
