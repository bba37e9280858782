#include "drive_paths.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <span>
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

/// Calls `visit` with the name of each entry of a folder.
template <class Visit>
void forEachEntry(const std::string& folder, Visit visit) {
    struct Close {
        void operator()(DIR* directory) const { ::closedir(directory); }
    };
    const std::unique_ptr<DIR, Close> directory(::opendir(folder.c_str()));
    if (directory == nullptr) return;
    while (const dirent* entry = ::readdir(directory.get())) visit(std::string_view(entry->d_name));
}

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Of names that differ in case only the first in byte order answers, whatever the disk's order is.
void keepFirst(std::string& best, std::string_view name) {
    if (best.empty() || name < best) best = name;
}

/// The answer for one name, read off the disk without keeping anything.
std::string scannedMatch(const std::string& folder, std::string_view component) {
    std::string best;
    forEachEntry(folder, [&](std::string_view name) {
        if (name.size() < component.size()) return;  // UTF-8 is never the shorter one
        if (equalNoCase1252(isAscii(name) ? name : cp1252FromUtf8(name), component)) keepFirst(best, name);
    });
    return best;
}

/// The names of a folder as they were at some moment, by their upper-case form.
class FolderNames {
  public:
    void read(const std::string& folder, const struct stat& status) {
        m_status = status;
        m_names.clear();
        forEachEntry(folder, [&](std::string_view name) {
            keepFirst(m_names[upperCased1252(cp1252FromUtf8(name))], name);
        });
    }
    bool isOf(const struct stat& status) const {
        return status.st_dev == m_status.st_dev && status.st_ino == m_status.st_ino &&
               nanoseconds(status.st_mtim) == nanoseconds(m_status.st_mtim);
    }
    std::string find(std::string_view component) const {
        const auto found = m_names.find(upperCased1252(component));
        return found != m_names.end() ? found->second : std::string();
    }
    std::size_t size() const { return m_names.size(); }

  private:
    std::unordered_map<std::string, std::string> m_names;
    struct stat m_status {};
};

/// A folder's time stamp moves in steps: a listing taken within one could miss what comes later in it.
bool isSettled(const struct stat& status) {
    const std::int64_t step = status.st_mtim.tv_nsec == 0 ? 2'000'000'000 : 20'000'000;
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return nanoseconds(now) - nanoseconds(status.st_mtim) > step;
}

/// Listings are kept while their folder does not change: names that are looked for in vain a million times
/// cost one listing. One set a thread, so that none waits for another.
class FolderListings {
  public:
    /// The entry of `folder` that equals `component` without regard to case; empty when there is none.
    std::string match(const std::string& folder, std::string_view component) {
        struct stat status;
        if (::stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return {};
        if (const auto kept = m_folders.find(folder); kept != m_folders.end()) {
            if (kept->second.isOf(status)) return kept->second.find(component);
            m_nameCount -= kept->second.size();
            m_folders.erase(kept);
        }
        return isSettled(status) ? keep(folder, status).find(component) : scannedMatch(folder, component);
    }

  private:
    static constexpr std::size_t mostFolders = 64, mostNames = 500'000;

    const FolderNames& keep(const std::string& folder, const struct stat& status) {
        if (m_folders.size() >= mostFolders || m_nameCount > mostNames) {
            m_folders.clear();
            m_nameCount = 0;
        }
        FolderNames& names = m_folders[folder];
        names.read(folder, status);
        m_nameCount += names.size();
        return names;
    }

    std::unordered_map<std::string, FolderNames> m_folders;
    std::size_t m_nameCount = 0;
};

void append(std::string& path, std::string_view component) {
    if (!path.empty() && path.back() != '/') path += '/';
    path += component;
}

/// The components behind `root`, each as it stands on the disk. Most names are right as they are written, and
/// of most others all but the last: what is above is looked at only when it is needed.
std::string matchedPath(const std::string& root, std::span<const std::string_view> components) {
    static thread_local FolderListings listings;
    std::string exact = root;
    for (const std::string_view component : components) append(exact, utf8From1252(component));
    if (components.empty() || exact.size() >= PATH_MAX || exists(exact)) return exact;
    std::string path = matchedPath(root, components.first(components.size() - 1));
    const std::string match = listings.match(path.empty() ? "." : path, components.back());
    append(path, match.empty() ? utf8From1252(components.back()) : match);
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
