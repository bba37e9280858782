#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include <kestra/project/places/services_file.h>
#include <platform/replaceable.h>

#include "../tests/support/memory_files.h"

/// A code and, behind the first 0xFF byte, a services file: what is found begins with a folder of the file
/// and is bounded, and is found again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = std::min(bytes.find('\xFF'), size);
    const std::string code = kestra::normalizedServiceCode(bytes.substr(0, cut));
    MemoryFiles files;
    files.put("s", std::string(bytes.substr(std::min(cut + 1, size))));
    platform::Stream stream(files.open("s", platform::OpenMode::read));
    std::string folder, again;
    const bool found = kestra::findServiceFolder(stream, code, folder);
    if (kestra::findServiceFolder(stream, code, again) != found || folder != again) std::abort();
    if (folder.size() > 2 * 1998 + 2 * code.size() + 600) std::abort();
    return 0;
}
