#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include <platform/clock.h>
#include <platform/cp1252.h>
#include <platform/machine.h>
#include <platform/prompt.h>
#include <platform/replaceable.h>

#include "drive_paths.h"

namespace platform {
namespace {

class PosixClock : public Clock {
  public:
    std::int64_t now() override { return std::time(nullptr); }
    LocalTime localTime(std::int64_t seconds) override {
        const std::time_t time = seconds;
        std::tm parts{};
        if (::localtime_r(&time, &parts) == nullptr) return {};
        return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                parts.tm_min,         parts.tm_sec,     true};
    }
};

/// Starts a program that outlives the call and becomes nobody's zombie: a shell starts it in the background
/// and ends.
bool startDetached(const std::string& shellCommand) {
    std::string command = shellCommand + " >/dev/null 2>&1 &";
    std::string shell = "sh", flag = "-c";
    char* arguments[] = {shell.data(), flag.data(), command.data(), nullptr};
    pid_t child;
    if (::posix_spawn(&child, "/bin/sh", nullptr, nullptr, arguments, environ) != 0) return false;
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string quoted(const std::string& text) {
    std::string out = "'";
    for (const char c : text) {
        if (c == '\'')
            out += "'\\''";
        else
            out += c;
    }
    return out + '\'';
}

bool onPath(const char* program) {
    return std::system((std::string("command -v ") + program + " >/dev/null 2>&1").c_str()) == 0;
}

bool isAddress(const std::string& text) {
    return text.find("://") != std::string::npos;
}

class PosixMachine : public Machine {
  public:
    std::string computerName() override {
        char name[256] = "";
        if (::gethostname(name, sizeof name - 1) != 0) return {};
        return cp1252FromUtf8(name);
    }
    int windowsNtVersion() override { return 0; }
    bool openDocument(const char* path) override {
        if (path == nullptr || *path == '\0' || !onPath("xdg-open")) return false;
        return startDetached("xdg-open " + quoted(isAddress(path) ? path : posixPath(path)));
    }
    bool run(const char* commandLine) override {
        return commandLine != nullptr && *commandLine != '\0' && startDetached(utf8From1252(commandLine));
    }
    bool classicHelp(const char*, const char*) override { return false; }
    bool htmlHelp(const char*, const char*) override { return false; }
    void debugLine(const char* text) override { std::fprintf(stderr, "%s\n", utf8From1252(text).c_str()); }
    std::string environment(const char* name) override {
        const char* value = std::getenv(name);
        return value != nullptr ? cp1252FromUtf8(value) : std::string();
    }
};

class TerminalPrompt : public Prompt {
  public:
    Answer ask(unsigned style, const char* text, const char* caption) override {
        const std::string title = caption != nullptr ? utf8From1252(caption) + ": " : std::string();
        std::fprintf(stderr, "%s%s\n", title.c_str(), utf8From1252(text).c_str());
        return neutralAnswer(style);
    }
};

template <class Service, class System>
ServicePlace<Service, System>& place() {
    static ServicePlace<Service, System> service;
    return service;
}

}  // namespace

Clock& theClock() {
    return place<Clock, PosixClock>().inForce();
}
Clock* replaceClock(Clock* clock) {
    return place<Clock, PosixClock>().replace(clock);
}
Machine& theMachine() {
    return place<Machine, PosixMachine>().inForce();
}
Machine* replaceMachine(Machine* machine) {
    return place<Machine, PosixMachine>().replace(machine);
}
Prompt& thePrompt() {
    return place<Prompt, TerminalPrompt>().inForce();
}
Prompt* replacePrompt(Prompt* prompt) {
    return place<Prompt, TerminalPrompt>().replace(prompt);
}

}  // namespace platform
