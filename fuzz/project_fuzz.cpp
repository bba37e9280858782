#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "../tests/support/project_check.h"

/// A project file and, behind the first 0xFF byte, the file "b" that it may include: lines and lookup must
/// answer what the plain rules say.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = bytes.find('\xFF');
    if (!projectAnswersByTheRules(bytes.substr(0, cut), cut < size ? bytes.substr(cut + 1) : ""))
        std::abort();
    return 0;
}
