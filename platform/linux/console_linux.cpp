#include <platform/console.h>
#include <unistd.h>

#include <cstdio>

#include <platform/cp1252.h>

namespace platform {

std::vector<std::string> programArguments(int count, char** arguments) {
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) texts.push_back(cp1252FromUtf8(arguments[i]));
    return texts;
}

bool isTerminal(Channel channel) {
    return ::isatty(channel == Channel::output ? STDOUT_FILENO : STDERR_FILENO) != 0;
}

bool writeConsole(Channel channel, std::string_view text) {
    std::FILE* const file = channel == Channel::output ? stdout : stderr;
    const std::string bytes = utf8From1252(text);
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() && std::fflush(file) == 0;
}

}  // namespace platform
