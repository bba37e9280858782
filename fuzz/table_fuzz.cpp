#include <cstdlib>

#include "../tests/support/containers_check.h"

/// Operations on a table must do what they do to a plain model of it, and delete every element once; so
/// many that an input takes milliseconds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t most = 300;
    if (checkTable({data, size < most ? size : most}) != nullptr) std::abort();
    return 0;
}
