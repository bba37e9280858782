#include <dorsel/paths.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <dorsel/globals.h>
#include <dorsel/strings.h>
#include <platform/cp1252.h>
#include <platform/files.h>
#include <platform/machine.h>

#include "guarded.h"

namespace {

using dorsel::guarded;
using platform::isSeparator;

constexpr std::string_view separators = "\\/";

std::string_view viewOf(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

/// Copies as much as `room` bytes hold, and the terminating NUL; nothing without `out`.
void copyCut(char* out, std::size_t room, std::string_view text) {
    if (out == nullptr) return;
    const std::size_t length = std::min(text.size(), room - 1);
    std::memmove(out, text.data(), length);
    out[length] = '\0';
}

bool hasDrive(std::string_view path) {
    return path.size() >= 2 && path[1] == ':' &&
           ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
}

struct Parts {
    std::string_view drive;      ///< "D:" or empty
    std::string_view directory;  ///< ends in its separator
    std::string_view name;
    std::string_view extension;  ///< with its dot
};

Parts split(std::string_view path) {
    Parts parts;
    if (hasDrive(path)) {
        parts.drive = path.substr(0, 2);
        path.remove_prefix(2);
    }
    // npos + 1 is 0: no separator, no directory.
    const std::size_t nameStart = path.find_last_of(separators) + 1;
    parts.directory = path.substr(0, nameStart);
    path.remove_prefix(nameStart);
    const std::size_t dot = std::min(path.rfind('.'), path.size());
    parts.name = path.substr(0, dot);
    parts.extension = path.substr(dot);
    return parts;
}

bool isForbidden(char c) {
    return static_cast<unsigned char>(c) < 32 ||
           std::string_view("<>\"|?*:").find(c) != std::string_view::npos;
}

/// `\`, or `/` for a text whose separators are all `/`.
char separatorLike(std::string_view path) {
    return path.find('\\') == std::string_view::npos && path.find('/') != std::string_view::npos ? '/' : '\\';
}

std::string ended(std::string_view folder) {
    std::string out(folder);
    if (!out.empty() && !isSeparator(out.back())) out += separatorLike(out);
    return out;
}

/// Length of the part of a path that ".." cannot climb out of: "D:\", "\\server\share\", "\".
std::size_t rootLength(std::string_view path) {
    const std::size_t drive = hasDrive(path) ? 2 : 0;
    if (drive == 0 && path.size() >= 2 && isSeparator(path[0]) && isSeparator(path[1])) {
        const std::size_t server = std::min(path.find_first_of(separators, 2), path.size());
        return std::min(path.find_first_of(separators, server + 1), path.size() - 1) + 1;
    }
    return path.size() > drive && isSeparator(path[drive]) ? drive + 1 : drive;
}

/// The folder above a folder; both end in a separator. A root stays.
void climb(std::string& folder) {
    if (folder.size() <= rootLength(folder)) return;
    const std::string_view inner(folder.data(), folder.size() - 1);
    folder.resize(std::max(inner.find_last_of(separators) + 1, rootLength(folder)));
}

/// A standard-directory marker at the start of a path: the letter of its folder and its length, 0 for none.
struct Marker {
    char letter = '\0';
    std::size_t length = 0;
};

Marker markerOf(std::string_view path, char mode) {
    if (path.size() >= 2 && path[0] == '~' && isSeparator(path[1])) return {mode, 2};
    if (path.size() >= 4 && path.starts_with("..") && isSeparator(path[3]) &&
        std::string_view("LNRPlnrp").find(path[2]) != std::string_view::npos)
        return {path[2], 4};
    return {};
}

bool climbsAt(std::string_view path) {
    return path.size() >= 3 && path.starts_with("..") && isSeparator(path[2]);
}

/// The path with its marker replaced; as it is when there is none.
std::string withoutMarker(std::string_view path, char mode) {
    const Marker marker = markerOf(path, mode);
    std::string folder = standardFolder(marker.letter);
    if (marker.length == 0 || folder.empty()) return std::string(path);
    path.remove_prefix(marker.length);
    for (; climbsAt(path); path.remove_prefix(3)) climb(folder);
    return folder.append(path);
}

/// The first file, in alphabetical order, that a path with '*' or '?' in its last part matches; empty for
/// none.
std::string firstMatch(const std::string& pattern) {
    const std::size_t nameStart = pattern.find_last_of(separators) + 1;
    const std::string folder = pattern.substr(0, nameStart);
    const std::string wanted = platform::upperCased1252(std::string_view(pattern).substr(nameStart));
    std::string best;
    platform::theFiles().list(folder.c_str(), [&](const char* name, platform::FileKind kind) {
        if (kind == platform::FileKind::file &&
            STR::Teste_ASCII(platform::upperCased1252(name).c_str(), wanted.c_str(), nullptr) != 0 &&
            (best.empty() || platform::compareNoCase1252(name, best) < 0))
            best = name;
        return true;
    });
    return best.empty() ? best : folder + best;
}

/// Full path of a file that is there and whose path fits; empty otherwise.
std::string fullPathOfFile(const std::string& file, bool patterns) {
    const bool isPattern =
        patterns && file.find_first_of("*?", file.find_last_of(separators) + 1) != std::string::npos;
    const std::string found = isPattern ? firstMatch(file) : file;
    if (found.empty() || platform::theFiles().kind(found.c_str()) != platform::FileKind::file) return {};
    const std::string full = platform::theFiles().absolute(found.c_str());
    return full.size() < DOS::pathSize ? full : std::string();
}

std::string localise(const std::string& file, std::string_view list, bool patterns) {
    std::string found = fullPathOfFile(file, patterns);
    if (hasDrive(file) || isSeparator(file.front())) return found;
    while (found.empty() && !list.empty()) {
        const std::size_t length = std::min(list.find(';'), list.size());
        std::string folder(list.substr(0, length));
        STR::Espace(folder.data());
        folder.resize(std::strlen(folder.c_str()));
        if (!folder.empty()) found = fullPathOfFile(ended(folder) + file, patterns);
        list.remove_prefix(std::min(length + 1, list.size()));
    }
    return found;
}

bool selects(std::string_view letters, char letter) {
    return letters.find(letter) != std::string_view::npos ||
           letters.find(static_cast<char>(letter + 'a' - 'A')) != std::string_view::npos;
}

}  // namespace

namespace DOS {

char* Localise_fichier(char* out, const char* file, const char* list, int flag) {
    if (out == nullptr || file == nullptr || *file == '\0') return nullptr;
    return guarded<char*>(nullptr, [&]() -> char* {
        const std::string found = localise(file, viewOf(list), flag == 1);
        if (found.empty()) return nullptr;
        copyCut(out, pathSize, found);
        return out;
    });
}

int Controle_chemin(const char* path, char* drive, char* directory, char* name, char* extension, int) {
    return guarded(-1, [&] {
        const std::string text(viewOf(path));  // an output may be the path's own buffer
        const Parts parts = split(text);
        copyCut(drive, 4, parts.drive);
        copyCut(directory, pathSize, parts.directory);
        copyCut(name, pathSize, parts.name);
        copyCut(extension, pathSize, parts.extension);
        if (text.empty()) return -1;
        if (text.size() >= pathSize) return 1;
        return std::any_of(text.begin() + static_cast<std::ptrdiff_t>(parts.drive.size()), text.end(),
                           isForbidden)
                   ? 2
                   : 0;
    });
}

int CreateDir(const char* path, int) {
    if (path == nullptr || *path == '\0') return 0;
    return guarded(0, [&] { return platform::theFiles().createFolder(path) ? 1 : 0; });
}

int Rename(const char* from, const char* to, int flag) {
    if (from == nullptr || to == nullptr) return 0;
    return guarded(0, [&] { return platform::theFiles().rename(from, to, flag == 1) ? 1 : 0; });
}

int Delete(const char* file) {
    if (file == nullptr) return 0;
    return guarded(0, [&] { return platform::theFiles().remove(file) ? 1 : 0; });
}

long Taille_fichier(const char* file) {
    if (file == nullptr) return -1;
    return guarded(-1L, [&] {
        return static_cast<long>(std::min<std::int64_t>(platform::theFiles().size(file), INT32_MAX));
    });
}

const char* GetPName(const char* path, const char* parts) {
    static char result[pathSize];
    return guarded<const char*>("", [&] {
        const std::string_view letters = viewOf(parts);
        const Parts pieces = split(viewOf(path));
        std::string out;
        if (selects(letters, 'U')) out += pieces.drive;
        if (selects(letters, 'R')) out += pieces.directory;
        if (selects(letters, 'N')) out += pieces.name;
        if (selects(letters, 'E')) out += pieces.extension;
        copyCut(result, sizeof result, out);
        return result;
    });
}

const char* ComputerName() {
    static char name[256];
    return guarded<const char*>("", [&] {
        copyCut(name, sizeof name, platform::theMachine().computerName());
        return name;
    });
}

int Shell(const char* commandLine, int) {
    return guarded(0, [&] { return platform::theMachine().run(commandLine) ? 1 : 0; });
}

int Aide(const char* file, const char* topic, int) {
    return guarded(0, [&] { return platform::theMachine().classicHelp(file, topic) ? 1 : 0; });
}

int AideHtml(const char* file, const char* command, int) {
    return guarded(0, [&] { return platform::theMachine().htmlHelp(file, command) ? 1 : 0; });
}

int WinNT() {
    return guarded(0, [] { return platform::theMachine().windowsNtVersion(); });
}

}  // namespace DOS

char* ReplaceStdDir(char* path, const char* mode, int size) {
    return ReplaceStdDir(path, mode != nullptr ? *mode : '\0', size);
}

char* ReplaceStdDir(char* path, char mode, int size) {
    if (path == nullptr) return path;
    return guarded(path, [&] {
        const std::string replaced = withoutMarker(path, mode);
        if (size > 0 && replaced.size() < static_cast<std::size_t>(size))
            std::memcpy(path, replaced.c_str(), replaced.size() + 1);
        return path;
    });
}

char* directory(char* path, int finish) {
    if (path == nullptr) return path;
    const std::string_view text = path;
    if (finish == 0) {
        const Parts parts = split(text);
        path[parts.drive.size() + parts.directory.size()] = '\0';
    } else if (!text.empty() && !isSeparator(text.back()) && text.size() < DOS::pathSize - 1) {
        const char separator = separatorLike(text);
        path[text.size() + 1] = '\0';
        path[text.size()] = separator;
    }
    return path;
}

const char* standardFolder(char letter) {
    static std::string local, network, program;
    const auto held = [](const char(&folder)[260]) {
        return ended({folder, ::strnlen(folder, sizeof folder)});
    };
    return guarded<const char*>("", [&] {
        switch (letter) {
            case 'L':
            case 'l':
                return (local = held(pvg.localFolder)).c_str();
            case 'N':
            case 'n':
            case 'R':
            case 'r':
                return (network = held(pvg.networkFolder)).c_str();
            case 'P':
            case 'p':
                return (program = ended(platform::theFiles().programFolder())).c_str();
            default:
                return "";
        }
    });
}
