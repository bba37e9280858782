#include <cerrno>

#include <platform/standard_streams.h>

#include <unistd.h>

namespace platform {

std::ptrdiff_t readStandardInput(void* buffer, std::size_t size) {
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, buffer, size);
        if (count >= 0 || errno != EINTR) return count;
    }
}

bool writeStandardOutput(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace platform
