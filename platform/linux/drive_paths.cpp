#include "drive_paths.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <unordered_map>

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

constexpr std::int64_t nanoseconds(const timespec& time) {
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

/// The names of one folder as they were at some moment, by their upper-case form.
class FolderNames {
  public:
    /// False when the folder cannot be read.
    bool read(const std::string& folder, const struct stat& status) {
        struct Close {
            void operator()(DIR* directory) const { ::closedir(directory); }
        };
        m_status = status;
        m_names.clear();
        timespec now{};
        ::clock_gettime(CLOCK_REALTIME, &now);
        m_settled = nanoseconds(now) - nanoseconds(status.st_mtim) > stampStep(status);
        const std::unique_ptr<DIR, Close> directory(::opendir(folder.c_str()));
        if (directory == nullptr) return false;
        while (const dirent* entry = ::readdir(directory.get())) add(entry->d_name);
        return true;
    }

    bool isCurrent(const struct stat& status) const {
        return m_settled && status.st_dev == m_status.st_dev && status.st_ino == m_status.st_ino &&
               nanoseconds(status.st_mtim) == nanoseconds(m_status.st_mtim);
    }

    const std::string* find(std::string_view component) const {
        const auto found = m_names.find(upperCased1252(component));
        return found != m_names.end() ? &found->second : nullptr;
    }
    std::size_t size() const { return m_names.size(); }

  private:
    /// A folder's time stamp moves in steps; a listing taken within one may miss what came later in it.
    static std::int64_t stampStep(const struct stat& status) {
        return status.st_mtim.tv_nsec == 0 ? 2'000'000'000 : 20'000'000;
    }
    /// Of names that differ in case only the first in byte order answers, whatever the disk's order is.
    void add(const char* name) {
        const auto [place, isNew] = m_names.try_emplace(upperCased1252(cp1252FromUtf8(name)), name);
        if (!isNew && place->second > name) place->second = name;
    }

    std::unordered_map<std::string, std::string> m_names;
    struct stat m_status {};
    bool m_settled = false;
};

/// Listings are kept while their folder does not change: a name that is looked for in vain a million times
/// costs one listing. One set a thread, so that none waits for another.
class FolderListings {
  public:
    /// The entry of `folder` that equals `component` without regard to case; empty when there is none.
    std::string match(const std::string& folder, std::string_view component) {
        struct stat status;
        if (::stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return {};
        FolderNames& names = m_folders[folder];
        if (!names.isCurrent(status)) {
            m_nameCount -= names.size();
            const bool read = names.read(folder, status);
            m_nameCount += names.size();
            if (!read) return {};
        }
        const std::string* found = names.find(component);
        const std::string result = found != nullptr ? *found : std::string();
        if (m_folders.size() > mostFolders || m_nameCount > mostNames) forget();
        return result;
    }

  private:
    static constexpr std::size_t mostFolders = 64, mostNames = 500'000;
    void forget() {
        m_folders.clear();
        m_nameCount = 0;
    }
    std::unordered_map<std::string, FolderNames> m_folders;
    std::size_t m_nameCount = 0;
};

void append(std::string& path, std::string_view component) {
    if (!path.empty() && path.back() != '/') path += '/';
    path += component;
}

/// Appends components to `path`, each as it stands on the disk.
std::string matchedPath(const std::string& root, const std::vector<std::string_view>& components) {
    static thread_local FolderListings listings;
    std::string exact = root;
    for (const std::string_view component : components) append(exact, utf8From1252(component));
    if (exact.size() >= PATH_MAX || exists(exact)) return exact;

    std::string path = root;
    bool present = true;
    for (const std::string_view component : components) {
        const std::string written = utf8From1252(component);
        std::string next = path;
        append(next, written);
        if (present && !exists(next)) {
            const std::string match = listings.match(path.empty() ? "." : path, component);
            present = !match.empty();
            if (present) {
                next = path;
                append(next, match);
            }
        }
        path.swap(next);
    }
    return path;
}

}  // namespace

bool hasDriveLetter(std::string_view name) {
    return name.size() >= 2 && name[1] == ':' &&
           ((name[0] >= 'A' && name[0] <= 'Z') || (name[0] >= 'a' && name[0] <= 'z'));
}

std::size_t uncRootLength(std::string_view name) {
    if (!name.starts_with("\\\\")) return 0;
    const std::size_t server = std::min(name.find_first_of("\\/", 2), name.size() - 1);
    return std::min(name.find_first_of("\\/", server + 1), name.size() - 1) + 1;
}

std::vector<std::string_view> componentsOf(std::string_view name, bool rooted) {
    std::vector<std::string_view> components;
    while (!name.empty()) {
        std::size_t length = 0;
        while (length < name.size() && !isSeparator(name[length])) ++length;
        const std::string_view component = name.substr(0, length);
        name.remove_prefix(length < name.size() ? length + 1 : length);
        if (component.empty() || component == ".") continue;
        if (component != "..")
            components.push_back(component);
        else if (!components.empty() && components.back() != "..")
            components.pop_back();
        else if (!rooted)
            components.push_back(component);
    }
    return components;
}

std::string posixPath(const char* name) {
    const std::string_view text = name != nullptr ? name : "";
    if (hasDriveLetter(text)) {
        const char letter = static_cast<char>(text[0] | 0x20);
        return matchedPath(driveRoot() + '/' + letter, componentsOf(text.substr(2), true));
    }
    if (const std::size_t root = uncRootLength(text); root > 0) {
        auto components = componentsOf(text.substr(0, root), true);
        const auto below = componentsOf(text.substr(root), true);
        components.insert(components.end(), below.begin(), below.end());
        return matchedPath(driveRoot() + "/unc", components);
    }
    if (text.find('\\') == std::string_view::npos) return utf8From1252(text);
    const bool rooted = isSeparator(text[0]);
    return matchedPath(rooted ? "/" : "", componentsOf(text, rooted));
}

}  // namespace platform
