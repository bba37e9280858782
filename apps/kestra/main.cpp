#include <platform/console.h>

#include "command.h"

namespace {

class SystemTerminal : public Terminal {
  public:
    void output(std::string_view text) override {
        m_isWhole = platform::writeConsole(platform::Channel::output, text) && m_isWhole;
    }
    void error(std::string_view text) override { platform::writeConsole(platform::Channel::error, text); }
    bool errorIsWatched() const override { return platform::isTerminal(platform::Channel::error); }

    /// All the output has been written.
    bool isWhole() const { return m_isWhole; }

  private:
    bool m_isWhole = true;
};

}  // namespace

int main(int count, char** arguments) {
    SystemTerminal terminal;
    const auto texts = platform::programArguments(count, arguments);
    const int code = runHost(texts, terminal);
    if (terminal.isWhole()) return code;
    terminal.error("kestra : la sortie n'a pas pu être écrite en entier\n");
    return code == exitDone ? exitFailed : code;
}
