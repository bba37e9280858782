#include "relative_paths.h"

#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <kestra/project/chantier.h>
#include <platform/cp1252.h>
#include <platform/files.h>

namespace kestra {
namespace {

constexpr std::string_view climb = "..\\";

std::string ended(std::string folder) {
    if (!folder.empty() && !platform::isSeparator(folder.back())) folder += '\\';
    return folder;
}

/// Length of the part of a folder that nothing climbs above: "D:\", "\\server\share\", "\" or nothing.
std::size_t rootLength(std::string_view folder) {
    const auto isSeparatorAt = [&](std::size_t i) {
        return i < folder.size() && platform::isSeparator(folder[i]);
    };
    if (folder.size() > 1 && folder[1] == ':') return isSeparatorAt(2) ? 3 : 2;
    if (!isSeparatorAt(0)) return 0;
    if (!isSeparatorAt(1)) return 1;
    const std::size_t share = folder.find_first_of("\\/", 2);
    const std::size_t end = share == folder.npos ? folder.npos : folder.find_first_of("\\/", share + 1);
    return end == folder.npos ? folder.size() : end + 1;
}

std::string parentOf(const std::string& folder) {
    const std::size_t root = rootLength(folder);
    if (folder.size() <= root) return folder;
    const std::size_t separator = folder.find_last_of("\\/", folder.size() - 2);
    const std::size_t kept = separator == std::string::npos ? 0 : separator + 1;
    return folder.substr(0, kept > root ? kept : root);
}

/// The folder that a text's prefix stands for, empty for none; `length` receives that of the prefix.
std::string folderOfPrefix(std::string_view text, const std::string& ownFolder, std::size_t& length) {
    length = 3;
    if (text.starts_with(climb)) return ended(ownFolder);
    length = 4;
    if (text.size() < 4 || !text.starts_with("..") || text[3] != '\\') return {};
    switch (platform::upperCase1252[static_cast<unsigned char>(text[2])]) {
        case 'L':
            return ended(pvg.localFolder);
        case 'N':
        case 'R':
            return ended(pvg.networkFolder);
        case 'C':
            return folderOf(chtdef.m_cheminCht);
        default:
            return {};
    }
}

/// Appends one path of a list, its prefix replaced.
void appendExpanded(std::string& out, std::string_view path, const std::string& ownFolder) {
    std::size_t length = 0;
    std::string folder = folderOfPrefix(path, ownFolder, length);
    if (!folder.empty()) path.remove_prefix(length);
    for (; !folder.empty() && path.starts_with(climb); path.remove_prefix(climb.size()))
        folder = parentOf(folder);
    out += folder;
    out += path;
}

}  // namespace

std::string folderOf(const char* path) {
    return DOS::GetPName(path, "UR");
}

std::string expandRelativePaths(std::string_view value, const std::string& ownFolder) {
    if (value.find("..") == value.npos) return std::string(value);
    std::string out;
    for (;;) {
        const std::size_t end = value.find(';');
        appendExpanded(out, value.substr(0, end), ownFolder);
        if (end == value.npos) return out;
        out += ';';
        value.remove_prefix(end + 1);
    }
}

}  // namespace kestra
