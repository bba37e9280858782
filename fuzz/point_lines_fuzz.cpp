#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <kestra/project/conversions/point_lines.h>

/// Each line gives one line, and each is a point, a bad one or a copy.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    kestra::PointLines lines("*", "L-IIE", {}, {});
    std::string out;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.convert(text.substr(0, end), out);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    if (std::count(out.begin(), out.end(), '\n') != lines.lines()) std::abort();
    return 0;
}
