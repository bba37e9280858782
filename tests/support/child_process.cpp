#include "child_process.h"

#include <utility>
#ifdef _WIN32
#include <windows.h>

#include <process.h>
#include <stdlib.h>
#else
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#endif

ChildProcess::~ChildProcess() {
    if (m_process != 0) kill();
}

#ifdef _WIN32

ChildProcess::ChildProcess(const std::string& disabledTest, const std::string& argument) {
    ::SetEnvironmentVariableA("KESTRA_CHILD", argument.c_str());
    ::SetEnvironmentVariableA("GTEST_OUTPUT", nullptr);
    m_process = ::_spawnl(_P_NOWAIT, _pgmptr, "tests", "--gtest_also_run_disabled_tests", "--gtest_brief=1",
                          ("--gtest_filter=" + disabledTest).c_str(), nullptr);
}

void ChildProcess::kill() {
    ::TerminateProcess(reinterpret_cast<HANDLE>(m_process), 9);
    wait();
}

bool ChildProcess::wait() {
    int status = 1;
    ::_cwait(&status, std::exchange(m_process, 0), 0);
    return status == 0;
}

#else

ChildProcess::ChildProcess(const std::string& disabledTest, const std::string& argument) {
    ::setenv("KESTRA_CHILD", argument.c_str(), 1);
    ::unsetenv("GTEST_OUTPUT");
    const std::string filter = "--gtest_filter=" + disabledTest;
    m_process = ::fork();
    if (m_process == 0) {
        ::execl("/proc/self/exe", "tests", "--gtest_also_run_disabled_tests", "--gtest_brief=1",
                filter.c_str(), nullptr);
        ::_exit(1);
    }
}

void ChildProcess::kill() {
    if (m_process > 0) ::kill(static_cast<pid_t>(m_process), SIGKILL);
    wait();
}

bool ChildProcess::wait() {
    int status = 1;
    ::waitpid(static_cast<pid_t>(std::exchange(m_process, 0)), &status, 0);
    return status == 0;
}

#endif
