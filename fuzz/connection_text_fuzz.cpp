#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <kestra/database/connection_text.h>

/// A pattern and, behind its first line, a path: the path must come out whole where a "%s" stands for it, and
/// nothing may grow beyond the two, the quotes and the read-only mode.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = std::min(input.find('\n'), input.size());
    const std::string pattern = input.substr(0, end), path = input.substr(std::min(end + 1, input.size()));
    const std::string plain = kestra::connectionText(pattern, path);
    const std::string readOnly = kestra::connectionText(kestra::readOnlyPattern(pattern), path);
    if (plain.size() > pattern.size() + path.size() + 2 || readOnly.size() > plain.size() + 14) std::abort();
    if (pattern.find('%') == std::string::npos && plain != pattern) std::abort();
    const std::size_t mark = pattern.find("%s");
    if (mark != std::string::npos && pattern.find('%') == mark && plain.find(path) == std::string::npos)
        std::abort();
    return 0;
}
