#pragma once
#include <string>
#include <string_view>

#include "command.h"

/// How far a command has come, in per cent on one line of the error channel that is wiped out at the end.
/// Nothing is shown where nobody is watching.
class ProgressLine {
  public:
    /// "Tri" shows as "Tri : 42 %".
    ProgressLine(Terminal& terminal, std::string_view what)
        : m_terminal(terminal), m_what(what), m_isWatched(terminal.errorIsWatched()) {}
    ~ProgressLine() {
        if (m_shown >= 0) m_terminal.error('\r' + std::string(m_what.size() + spare, ' ') + '\r');
    }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    bool isWatched() const { return m_isWatched; }
    void show(int percent) {
        if (!m_isWatched || percent == m_shown) return;
        m_shown = percent;
        m_terminal.error('\r' + m_what + " : " + std::to_string(percent) + " %");
    }

  private:
    static constexpr std::size_t spare = 10;

    Terminal& m_terminal;
    std::string m_what;
    bool m_isWatched;
    int m_shown = -1;
};
