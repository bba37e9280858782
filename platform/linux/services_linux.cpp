#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include <platform/cp1252.h>
#include <platform/system_services.h>

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

/// What the started program's own process does: it becomes nobody's child, lets go of the terminal and turns
/// into the program. Only calls that a forked process may make.
[[noreturn]] void becomeProgram(char* const* arguments, int report) {
    if (::fork() != 0) ::_exit(0);
    ::setsid();
    const int nothing = ::open("/dev/null", O_RDWR);
    for (const int stream : {0, 1, 2}) ::dup2(nothing, stream);
    ::execvp(arguments[0], arguments);
    const char failed = 1;
    [[maybe_unused]] const ssize_t written = ::write(report, &failed, 1);
    ::_exit(127);
}

/// Starts a program that outlives the call and leaves no zombie. False when there is no such program: the
/// pipe closes by itself when one starts, else a byte comes through it.
bool startDetached(std::vector<std::string> words) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    int ends[2];
    if (words.empty() || ::pipe2(ends, O_CLOEXEC) != 0) return false;
    const pid_t child = ::fork();
    if (child == 0) becomeProgram(arguments.data(), ends[1]);
    ::close(ends[1]);
    char failed = 0;
    ssize_t got = child < 0 ? 1 : -1;
    while (child > 0 && (got = ::read(ends[0], &failed, 1)) < 0 && errno == EINTR) {
    }
    ::close(ends[0]);
    while (child > 0 && ::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return got == 0;
}

/// The words of a command line: blanks separate them, double quotes hold them together.
std::vector<std::string> wordsOf(std::string_view line) {
    std::vector<std::string> words;
    bool inWord = false, quoted = false;
    for (const char c : line) {
        if (!quoted && (c == ' ' || c == '\t')) {
            inWord = false;
            continue;
        }
        if (!inWord) words.emplace_back();
        inWord = true;
        if (c == '"')
            quoted = !quoted;
        else
            words.back() += c;
    }
    return words;
}

bool isAddress(std::string_view text) {
    return text.find("://") != std::string_view::npos;
}

/// A word as a program of this system understands it: drive and UNC paths become POSIX paths.
std::string nativeWord(const std::string& word) {
    return hasDriveLetter(word) || uncRootLength(word) > 0 ? posixPath(word.c_str()) : utf8From1252(word);
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
        if (path == nullptr || *path == '\0') return false;
        const std::string document = isAddress(path) ? utf8From1252(path) : posixPath(path);
        return (isAddress(path) || ::access(document.c_str(), F_OK) == 0) &&
               startDetached({"xdg-open", document});
    }
    bool run(const char* commandLine) override {
        const std::vector<std::string> words = wordsOf(commandLine != nullptr ? commandLine : "");
        // What Windows' own viewer opens there is opened by the desktop here.
        if (words.size() == 2 && equalNoCase1252(words[0], "explorer")) return openDocument(words[1].c_str());
        std::vector<std::string> native;
        native.reserve(words.size());
        for (const std::string& word : words) native.push_back(nativeWord(word));
        return startDetached(std::move(native)) ||
               openDocument(words.size() == 1 ? words[0].c_str() : commandLine);
    }
    bool classicHelp(const char*, const char*) override { return false; }
    bool htmlHelp(const char*, const char*) override { return false; }
    unsigned long processId() override { return static_cast<unsigned long>(::getpid()); }
    void debugLine(const char* text) override {
        if (text != nullptr) (void)std::fprintf(stderr, "%s\n", utf8From1252(text).c_str());
    }
    std::string environment(const char* name) override {
        const char* value = name != nullptr ? std::getenv(name) : nullptr;
        return value != nullptr ? cp1252FromUtf8(value) : std::string();
    }
};

class TerminalPrompt : public Prompt {
  public:
    Answer ask(unsigned style, const char* text, const char* caption) override {
        const std::string title = caption != nullptr ? utf8From1252(caption) + ": " : std::string();
        (void)std::fprintf(stderr, "%s%s\n", title.c_str(),
                           text != nullptr ? utf8From1252(text).c_str() : "");
        return neutralAnswer(style);
    }
};

}  // namespace

Clock& systemClock() {
    static PosixClock clock;
    return clock;
}
Machine& systemMachine() {
    static PosixMachine machine;
    return machine;
}
Prompt& systemPrompt() {
    static TerminalPrompt prompt;
    return prompt;
}

}  // namespace platform
