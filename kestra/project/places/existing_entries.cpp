#include "existing_entries.h"

#include <string>

#include <platform/cp1252.h>
#include <platform/files.h>

namespace kestra {

bool anyEntryBeginsWith(std::string_view start) {
    if (start.empty()) return false;
    const std::size_t nameAt = start.find_last_of("\\/:") + 1;
    const std::string folder(start.substr(0, nameAt));
    const std::string_view name = start.substr(nameAt);
    if (name.empty()) return platform::theFiles().kind(folder.c_str()) == platform::FileKind::folder;
    bool found = false;
    platform::theFiles().list(
        folder.empty() ? "." : folder.c_str(), [&](const char* entry, platform::FileKind) {
            found = platform::equalNoCase1252(std::string_view(entry).substr(0, name.size()), name);
            return !found;
        });
    return found;
}

}  // namespace kestra
