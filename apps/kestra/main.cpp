#include <platform/console.h>

#include "command.h"

namespace {

class SystemTerminal : public Terminal {
  public:
    void output(std::string_view text) override {
        m_outputFailed = !platform::writeConsole(platform::Channel::output, text) || m_outputFailed;
    }
    void error(std::string_view text) override { platform::writeConsole(platform::Channel::error, text); }
    bool errorIsWatched() const override { return platform::isTerminal(platform::Channel::error); }
    /// Part of the output did not get where it should.
    bool outputFailed() const { return m_outputFailed; }

  private:
    bool m_outputFailed = false;
};

}  // namespace

int main(int count, char** arguments) {
    SystemTerminal terminal;
    const auto texts = platform::programArguments(count, arguments);
    const int code = runHost(texts, terminal);
    if (!terminal.outputFailed()) return code;
    terminal.error("kestra : écriture impossible sur la sortie standard\n");
    return code == exitDone ? exitFailed : code;
}
