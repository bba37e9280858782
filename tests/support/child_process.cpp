#include "child_process.h"

#include <utility>
#ifdef _WIN32
#include <windows.h>
#else
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#endif

ChildProcess::~ChildProcess() {
    if (m_process != 0) kill();
}

#ifdef _WIN32

ChildProcess::ChildProcess(const std::string& disabledTest, const std::string& argument) : m_process(0) {
    char program[MAX_PATH];
    ::GetModuleFileNameA(nullptr, program, sizeof program);
    std::string command = "\"" + std::string(program) +
                          "\" --gtest_also_run_disabled_tests --gtest_brief=1 --gtest_filter=" + disabledTest;
    ::SetEnvironmentVariableA("KESTRA_CHILD", argument.c_str());
    ::SetEnvironmentVariableA("GTEST_OUTPUT", nullptr);
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process))
        return;
    ::CloseHandle(process.hThread);
    m_process = reinterpret_cast<std::intptr_t>(process.hProcess);
}

void ChildProcess::kill() {
    ::TerminateProcess(reinterpret_cast<HANDLE>(m_process), 9);
    wait();
}

bool ChildProcess::wait() {
    const auto process = reinterpret_cast<HANDLE>(std::exchange(m_process, 0));
    DWORD code = 1;
    ::WaitForSingleObject(process, INFINITE);
    ::GetExitCodeProcess(process, &code);
    ::CloseHandle(process);
    return code == 0;
}

#else

ChildProcess::ChildProcess(const std::string& disabledTest, const std::string& argument) : m_process(0) {
    ::setenv("KESTRA_CHILD", argument.c_str(), 1);
    ::unsetenv("GTEST_OUTPUT");
    std::string filter = "--gtest_filter=" + disabledTest, all = "--gtest_also_run_disabled_tests",
                brief = "--gtest_brief=1";
    std::string program = "/proc/self/exe";
    char* arguments[] = {program.data(), all.data(), brief.data(), filter.data(), nullptr};
    pid_t process = 0;
    if (::posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environ) == 0)
        m_process = process;
}

void ChildProcess::kill() {
    ::kill(static_cast<pid_t>(m_process), SIGKILL);
    wait();
}

bool ChildProcess::wait() {
    int status = 1;
    ::waitpid(static_cast<pid_t>(std::exchange(m_process, 0)), &status, 0);
    return status == 0;
}

#endif
