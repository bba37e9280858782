#include <cstdint>
#include <cstdlib>
#include <string>

#include "../tests/support/write_check.h"

/// A name, a value and a project, each behind a 0xFF byte: writing and compacting must leave what the plain
/// rules say, a stop at any write the file before or after.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const auto take = [&] {
        const std::string_view piece = rest.substr(0, rest.find('\xFF'));
        rest.remove_prefix(std::min(piece.size() + 1, rest.size()));
        return piece;
    };
    const std::string_view name = take(), value = take();
    if (!writesByTheRules(rest, name, value) || !compactsByTheRules(rest)) std::abort();
    return 0;
}
