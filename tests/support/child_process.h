#pragma once
#include <cstdint>
#include <string>

/// This test program once more, running one of its disabled tests as a process of its own, for tests of what
/// happens between processes. The test finds `argument` in the environment variable KESTRA_CHILD.
class ChildProcess {
  public:
    ChildProcess(const std::string& disabledTest, const std::string& argument);
    /// Kills it if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Ends it at once, wherever it is.
    void kill();
    /// Waits for its end; true when its test passed.
    bool wait();

  private:
    std::intptr_t m_process = 0;  ///< 0: none
};
