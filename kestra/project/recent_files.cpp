#include "recent_files.h"

#include <dorsel/settings.h>
#include <platform/cp1252.h>

namespace kestra {
namespace {

constexpr const char* source = "fichder";
constexpr const char* mode = "l";
constexpr int longestPath = 5000;

std::string keyOf(int number) {
    return "FILE" + std::to_string(number);
}

/// Whether the list keeps a path out, looked through from its last entry on.
bool holds(const RecentEntries& entries, const std::string& path) {
    for (int index = entries.count() - 1; index >= 0; --index) {
        const std::string entry = entries.at(index);
        // Kept: an empty entry ends the search as an equal one does.
        if (entry.empty() || platform::equalNoCase1252(entry, path)) return true;
    }
    return false;
}

}  // namespace

RecentEntries::~RecentEntries() = default;

void addRecent(RecentEntries& entries, const std::string& path, bool keep) {
    for (int index = entries.count() - 1; index >= 0; --index) {
        const std::string entry = entries.at(index);
        if (!entry.empty() && !platform::equalNoCase1252(entry, path)) continue;
        if (keep) return;
        entries.remove(index);
    }
    entries.insertFirst(path);
}

void readRecent(RecentEntries& entries, const std::string& section, int most) {
    for (int number = most - 1; number >= 0; --number) {
        char path[longestPath];
        const int length = gets_ini(source, section.c_str(), mode, keyOf(number).c_str(), path, sizeof path);
        if (length > 0 && !holds(entries, path)) entries.insertFirst(path);
    }
}

void writeRecent(const RecentEntries& entries, const std::string& section, int most) {
    std::string written;
    int number = 0;
    for (int index = 0; index < entries.count() && number < most; ++index) {
        std::string entry = entries.at(index);
        if (entry.empty() || entry == written || entry.find('*') != std::string::npos) continue;
        // Kept: keys of a longer list written before are not erased; reading adds them below the newer ones.
        sets_ini(source, section.c_str(), mode, keyOf(number++).c_str(), entry.c_str());
        written = std::move(entry);
    }
}

}  // namespace kestra
