#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <platform/ado/connection_string.h>

/// A connection string, written again, holds the same items.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ado20::ConnectionString string(std::string_view(reinterpret_cast<const char*>(data), size));
    if (ado20::ConnectionString(string.text()) != string) std::abort();
    ado20::modeOfText(string.value("Mode"));
    return 0;
}
