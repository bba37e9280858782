#include "drive_paths.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cctype>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <platform/cp1252.h>
#include <platform/files.h>

namespace platform {
namespace {

std::string driveRoot() {
    if (const char* root = std::getenv("KESTRA_DRIVES"); root != nullptr && *root != '\0') return root;
    const char* home = std::getenv("HOME");
    return std::string(home != nullptr ? home : "") + "/.kestra/drives";
}

bool exists(const std::string& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0;
}

/// The entry of `folder` that equals `component` without regard to case, or `component` itself.
std::string matched(const std::string& folder, const std::string& component) {
    struct Close {
        void operator()(DIR* directory) const { ::closedir(directory); }
    };
    const std::unique_ptr<DIR, Close> directory(::opendir(folder.empty() ? "." : folder.c_str()));
    if (directory == nullptr) return component;
    const std::string wanted = cp1252FromUtf8(component);
    while (const dirent* entry = ::readdir(directory.get()))
        if (equalNoCase1252(cp1252FromUtf8(entry->d_name), wanted)) return entry->d_name;
    return component;
}

/// Appends the components of a `\`-separated text to `path`, each matched without regard to case.
void appendMatched(std::string& path, std::string_view components) {
    while (!components.empty()) {
        std::size_t length = 0;
        while (length < components.size() && !isSeparator(components[length])) ++length;
        if (length > 0) {
            const std::string component = utf8From1252(components.substr(0, length));
            if (!path.empty() && path.back() != '/') path += '/';
            path += exists(path + component) ? component : matched(path, component);
        }
        components.remove_prefix(length < components.size() ? length + 1 : length);
    }
}

bool hasDriveLetter(std::string_view name) {
    return name.size() >= 2 && name[1] == ':' && std::isalpha(static_cast<unsigned char>(name[0])) != 0;
}

}  // namespace

std::string posixPath(const char* name) {
    const std::string_view text = name != nullptr ? name : "";
    std::string path;
    if (hasDriveLetter(text)) {
        path = driveRoot() + '/' + static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
        appendMatched(path, text.substr(2));
    } else if (text.starts_with("\\\\")) {
        path = driveRoot() + "/unc";
        appendMatched(path, text.substr(2));
    } else if (text.find('\\') != std::string_view::npos) {
        if (isSeparator(text[0])) path = "/";
        appendMatched(path, text);
    } else {
        path = utf8From1252(text);
    }
    return path;
}

}  // namespace platform
