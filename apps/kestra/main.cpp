#include <platform/console.h>

#include "command.h"

namespace {

class SystemTerminal : public Terminal {
  public:
    void output(std::string_view text) override { platform::writeConsole(platform::Channel::output, text); }
    void error(std::string_view text) override { platform::writeConsole(platform::Channel::error, text); }
    bool errorIsWatched() const override { return platform::isTerminal(platform::Channel::error); }
};

}  // namespace

int main(int count, char** arguments) {
    SystemTerminal terminal;
    const auto texts = platform::programArguments(count, arguments);
    return runHost(texts, terminal);
}
