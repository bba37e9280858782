#include <windows.h>

#include <ctime>
#include <string>

#include <platform/system_services.h>
#include <platform/windows/handle.h>

#include <shellapi.h>  // wants <windows.h> before it

namespace platform {
namespace {

class WindowsClock : public Clock {
  public:
    std::int64_t now() override { return ::_time64(nullptr); }
    LocalTime localTime(std::int64_t seconds) override {
        const __time64_t time = seconds;
        std::tm parts{};
        if (::_localtime64_s(&parts, &time) != 0) return {};
        return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                parts.tm_min,         parts.tm_sec,     true};
    }
};

/// HtmlHelp's commands (htmlhelp.h): a page of the file, and the window that owns the viewer.
using HtmlHelpFunction = HWND(WINAPI*)(HWND, const char*, UINT, DWORD_PTR);
constexpr UINT displayTopic = 0;

class WindowsMachine : public Machine {
  public:
    std::string computerName() override {
        char name[256];
        DWORD size = sizeof name;
        return ::GetComputerNameA(name, &size) ? std::string(name, size) : std::string();
    }

    int windowsNtVersion() override {
        OSVERSIONINFOW version{};
        version.dwOSVersionInfoSize = sizeof version;
        if (!::GetVersionExW(&version) || version.dwPlatformId != VER_PLATFORM_WIN32_NT) return 0;
        return static_cast<int>(version.dwMajorVersion);
    }

    bool openDocument(const char* path) override {
        return path != nullptr && *path != '\0' && shellOpens(path, nullptr);
    }

    bool editDocument(const char* path) override {
        if (path == nullptr || *path == '\0') return false;
        SHELLEXECUTEINFOA execution{};
        execution.cbSize = sizeof execution;
        execution.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
        execution.hwnd = ::GetForegroundWindow();
        execution.lpVerb = "open";
        execution.lpFile = path;
        execution.nShow = SW_SHOWNORMAL;
        if (!::ShellExecuteExA(&execution)) return false;
        const UniqueHandle process(execution.hProcess);
        if (execution.hProcess != nullptr) waitForEnd(execution.hProcess);
        return true;
    }

    bool run(const char* commandLine) override {
        if (commandLine == nullptr || *commandLine == '\0') return false;
        std::string command = commandLine;
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process{};
        if (!::CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                              &process))
            return openDocument(commandLine) || runByShell(commandLine);
        UniqueHandle(process.hThread).reset();
        UniqueHandle(process.hProcess).reset();
        return true;
    }

    bool classicHelp(const char* file, const char* topic) override {
        if (file == nullptr) return false;
        if (topic == nullptr || *topic == '\0') return ::WinHelpA(nullptr, file, HELP_CONTENTS, 0) != 0;
        return ::WinHelpA(nullptr, file, HELP_KEY, reinterpret_cast<ULONG_PTR>(topic)) != 0;
    }

    bool htmlHelp(const char* file, const char* command) override {
        static const HMODULE viewer = ::LoadLibraryA("hhctrl.ocx");
        if (viewer == nullptr || file == nullptr) return false;
        const auto show = reinterpret_cast<HtmlHelpFunction>(
            reinterpret_cast<void (*)()>(::GetProcAddress(viewer, "HtmlHelpA")));
        if (show == nullptr) return false;
        return show(::GetDesktopWindow(), file, displayTopic, reinterpret_cast<DWORD_PTR>(command)) !=
               nullptr;
    }

    unsigned long processId() override { return ::GetCurrentProcessId(); }

    void debugLine(const char* text) override {
        if (text != nullptr) ::OutputDebugStringA((std::string(text) + "\n").c_str());
    }

    std::string environment(const char* name) override {
        if (name == nullptr) return {};
        std::string value(::GetEnvironmentVariableA(name, nullptr, 0), '\0');
        const DWORD length = ::GetEnvironmentVariableA(name, value.data(), static_cast<DWORD>(value.size()));
        return length < value.size() ? value.substr(0, length) : std::string();
    }

  private:
    /// Its window is owned by one of ours, so that what it sends there must be answered meanwhile.
    static void waitForEnd(HANDLE process) {
        while (::MsgWaitForMultipleObjects(1, &process, FALSE, INFINITE, QS_SENDMESSAGE) ==
               WAIT_OBJECT_0 + 1) {
            MSG message;
            ::PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        }
    }

    /// The shell knows programs that stand on no search path, but wants their arguments apart.
    static bool runByShell(const std::string& commandLine) {
        const bool quoted = commandLine.front() == '"';
        const std::size_t end = commandLine.find(quoted ? '"' : ' ', 1);
        if (end == std::string::npos) return false;
        const std::string program = commandLine.substr(quoted ? 1 : 0, quoted ? end - 1 : end);
        return shellOpens(program.c_str(), commandLine.c_str() + end + 1);
    }

    static bool shellOpens(const char* file, const char* arguments) {
        return reinterpret_cast<INT_PTR>(
                   ::ShellExecuteA(nullptr, "open", file, arguments, nullptr, SW_SHOWDEFAULT)) > 32;
    }
};

class MessageBoxPrompt : public Prompt {
  public:
    Answer ask(unsigned style, const char* text, const char* caption) override {
        const std::string title = caption != nullptr ? caption : programName();
        const int answer =
            ::MessageBoxA(::GetActiveWindow(), text != nullptr ? text : "", title.c_str(), style);
        return answer != 0 ? static_cast<Answer>(answer) : neutralAnswer(style);
    }

  private:
    static std::string programName() {
        char program[MAX_PATH * 4];
        const std::string path(program, ::GetModuleFileNameA(nullptr, program, sizeof program));
        const std::size_t start = path.rfind('\\') + 1;
        return path.substr(start, path.rfind('.') - start);
    }
};

}  // namespace

Clock& systemClock() {
    static WindowsClock clock;
    return clock;
}
Machine& systemMachine() {
    static WindowsMachine machine;
    return machine;
}
Prompt& systemPrompt() {
    static MessageBoxPrompt prompt;
    return prompt;
}

}  // namespace platform
