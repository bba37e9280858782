#include <algorithm>
#include <cstdlib>

#include <dorsel/ini_file.h>

using dorsel::IniFile;

/// A section, a key and a value, each on a line, then a settings file: what is set is read back, setting it
/// again changes nothing, and what is removed is gone.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size), parts[3];
    for (std::string_view& part : parts) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        part = dorsel::withoutBlanks(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    const auto& [section, key, value] = parts;
    IniFile(text).keys(section);
    if (!IniFile::canHold(section, key, value)) return 0;
    const std::string after = IniFile(text).withValue(section, key, value);
    if (IniFile(after).values(section, key) != std::vector{value}) std::abort();
    if (IniFile(after).withValue(section, key, value) != after) std::abort();
    const std::string without = IniFile(after).withoutKey(section, key);
    if (!IniFile(without).values(section, key).empty()) std::abort();
    return 0;
}
