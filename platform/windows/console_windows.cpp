#include <windows.h>

#include <shellapi.h>

#include <algorithm>

#include <platform/console.h>
#include <platform/cp1252.h>

namespace platform {
namespace {

HANDLE handleOf(Channel channel) {
    return ::GetStdHandle(channel == Channel::output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

std::wstring wideFromUtf8(const std::string& text) {
    const int bytes = static_cast<int>(text.size());
    std::wstring wide(
        static_cast<std::size_t>(::MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0)), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string cp1252FromWide(const wchar_t* text) {
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(size > 0 ? size : 1), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
    utf8.pop_back();
    return cp1252FromUtf8(utf8);
}

}  // namespace

std::vector<std::string> programArguments(int, char**) {
    std::vector<std::string> texts;
    int count = 0;
    wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    for (int i = 1; arguments != nullptr && i < count; ++i) texts.push_back(cp1252FromWide(arguments[i]));
    ::LocalFree(arguments);
    return texts;
}

bool isTerminal(Channel channel) {
    DWORD mode = 0;
    return ::GetConsoleMode(handleOf(channel), &mode) != 0;
}

bool writeConsole(Channel channel, std::string_view text) {
    const std::string bytes = utf8From1252(text);
    DWORD written = 0;
    if (isTerminal(channel)) {
        // Some consoles refuse more than 64 KiB at once.
        constexpr std::size_t piece = 1 << 13;
        const std::wstring wide = wideFromUtf8(bytes);
        for (std::size_t at = 0; at < wide.size(); at += piece) {
            const auto length = static_cast<DWORD>(std::min(piece, wide.size() - at));
            if (!::WriteConsoleW(handleOf(channel), wide.data() + at, length, &written, nullptr))
                return false;
        }
        return true;
    }
    const auto size = static_cast<DWORD>(bytes.size());
    return ::WriteFile(handleOf(channel), bytes.data(), size, &written, nullptr) != 0 && written == size;
}

}  // namespace platform
