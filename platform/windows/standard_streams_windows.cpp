#include <windows.h>

#include <algorithm>

#include <platform/standard_streams.h>

namespace platform {

namespace {

constexpr std::size_t mostAtOnce = 1U << 24;

}  // namespace

std::ptrdiff_t readStandardInput(void* buffer, std::size_t size) {
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(std::min(size, mostAtOnce));
    if (::ReadFile(::GetStdHandle(STD_INPUT_HANDLE), buffer, wanted, &count, nullptr)) return count;
    return ::GetLastError() == ERROR_BROKEN_PIPE ? 0 : -1;
}

bool writeStandardOutput(std::string_view bytes) {
    const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(bytes.size(), mostAtOnce));
        if (!::WriteFile(output, bytes.data(), size, &written, nullptr) || written == 0) return false;
        bytes.remove_prefix(written);
    }
    return true;
}

}  // namespace platform
