#include <cstdint>
#include <cstdlib>

#include "../tests/support/file_sort_check.h"

/// A file (behind a byte that chooses direction and uniqueness) must be sorted as inserting its lines one by
/// one would.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view content(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (!fileSortAnswersByTheRules(content, (data[0] & 1) != 0, (data[0] & 2) != 0)) std::abort();
    return 0;
}
