#include <dorsel/settings.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <dorsel/paths.h>
#include <platform/cp1252.h>
#include <platform/files.h>

#include "guarded.h"
#include "ini_file.h"

namespace {

using dorsel::guarded;
using dorsel::IniFile;
using dorsel::withoutBlanks;

constexpr std::int64_t largestFile = 64LL * 1024 * 1024;
constexpr std::string_view iniExtension = ".ini";

std::string_view viewOf(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

/// The files that a source and a lookup mode name, in order.
std::vector<std::string> filesOf(const char* source, const char* mode) {
    std::vector<std::string> files;
    if (source == nullptr || *source == '\0') return files;
    for (const char letter : viewOf(mode)) {
        const std::string folder = standardFolder(letter);
        if (!folder.empty()) files.push_back(folder + "ini\\" + source + std::string(iniExtension));
    }
    return files;
}

/// As `filesOf`, but a source that is itself the path of a settings file names that file.
std::vector<std::string> filesOrPath(const char* source, const char* mode) {
    const std::string_view path = viewOf(source);
    if (path.size() > iniExtension.size() &&
        platform::equalNoCase1252(path.substr(path.size() - iniExtension.size()), iniExtension))
        return {std::string(path)};
    return filesOf(source, mode);
}

std::string joined(const std::vector<std::string_view>& texts) {
    std::string out;
    for (const std::string_view text : texts) out.append(text).append(1, ';');
    if (!out.empty()) out.pop_back();
    return out;
}

/// The values of a key, or the keys of a section when `key` is empty, of the first file that has any.
std::optional<std::string> lookUp(const std::vector<std::string>& files, const char* section,
                                  std::string_view key) {
    if (section == nullptr) return std::nullopt;
    const std::string_view name = withoutBlanks(section);
    for (const std::string& file : files) {
        std::string text;
        if (!platform::readWholeFile(file.c_str(), text, largestFile)) continue;
        const IniFile ini(text);
        const auto found = key.empty() ? ini.keys(name) : ini.values(name, key);
        if (!found.empty()) return joined(found);
    }
    return std::nullopt;
}

std::string_view keyOf(const char* key) {
    return withoutBlanks(viewOf(key));
}

int readText(const std::vector<std::string>& files, const char* section, const char* key, char* out,
             int size) {
    const std::string text = lookUp(files, section, keyOf(key)).value_or("");
    const std::size_t length = text.copy(out, static_cast<std::size_t>(size) - 1);
    out[length] = '\0';
    return static_cast<int>(length);
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Moves `position` past the digits there; true when there was one.
bool passDigits(std::string_view text, std::size_t& position) {
    const std::size_t start = position;
    while (position < text.size() && isDigit(text[position])) ++position;
    return position > start;
}

/// The number at the start of a text, in the form that std::from_chars reads: '.' for the decimal separator,
/// no leading '+'. Empty when there is none.
std::string leadingNumber(std::string_view text) {
    const bool plus = text.starts_with('+');
    if (plus) text.remove_prefix(1);
    std::size_t end = !plus && text.starts_with('-') ? 1 : 0;
    bool digits = passDigits(text, end);
    std::size_t comma = std::string_view::npos;
    if (end < text.size() && (text[end] == '.' || text[end] == ',')) {
        comma = end++;
        digits = passDigits(text, end) || digits;
    }
    if (!digits) return {};
    std::size_t exponent = end;
    if (exponent < text.size() && (text[exponent] == 'e' || text[exponent] == 'E')) {
        ++exponent;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
        if (passDigits(text, exponent)) end = exponent;
    }
    std::string number(text.substr(0, end));
    if (comma != std::string_view::npos) number[comma] = '.';
    return number;
}

int readNumber(const std::vector<std::string>& files, const char* section, const char* key, double* value) {
    if (keyOf(key).empty()) return 0;
    const std::string number = leadingNumber(lookUp(files, section, keyOf(key)).value_or(""));
    double read = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), read);
    if (result.ec != std::errc()) return 0;
    *value = read;
    return 1;
}

enum class FileState { missing, unreadable, read };

FileState readFile(const std::string& path, std::string& text) {
    if (platform::readWholeFile(path.c_str(), text, largestFile)) return FileState::read;
    return platform::theFiles().kind(path.c_str()) == platform::FileKind::missing ? FileState::missing
                                                                                  : FileState::unreadable;
}

/// A settings file that is going to be changed.
struct Target {
    std::string path;
    std::string text;
    bool exists = false;
    bool holdsKey = false;
};

/// The file that a change goes to. None when one that comes before it cannot be read: it may hold the key.
std::optional<Target> targetOf(const std::vector<std::string>& files, std::string_view section,
                               std::string_view key) {
    std::optional<Target> firstThere;
    for (const std::string& path : files) {
        Target target{path, {}, true, false};
        const FileState state = readFile(path, target.text);
        if (state == FileState::unreadable) return std::nullopt;
        if (state == FileState::missing) continue;
        target.holdsKey = !IniFile(target.text).values(section, key).empty();
        if (target.holdsKey) return target;
        if (!firstThere) firstThere = std::move(target);
    }
    if (firstThere || files.empty()) return firstThere;
    return Target{files.front(), {}, false, false};
}

bool put(const Target& target, const std::string& text) {
    if (static_cast<std::int64_t>(text.size()) > largestFile) return false;
    if (target.exists) return text == target.text || platform::replaceWholeFile(target.path.c_str(), text);
    const std::string folder = target.path.substr(0, target.path.find_last_of("\\/"));
    return platform::theFiles().createFolder(folder.c_str()) &&
           platform::createWholeFile(target.path.c_str(), text);
}

bool writeSetting(const std::vector<std::string>& files, std::string_view section, std::string_view key,
                  const char* value) {
    std::string_view text = viewOf(value);
    text = text.substr(0, text.find_first_of("\r\n"));
    if (!IniFile::canHold(section, key, text)) return false;
    const std::optional<Target> target = targetOf(files, section, key);
    if (!target) return false;
    const IniFile ini(target->text);
    if (value == nullptr) return !target->holdsKey || put(*target, ini.withoutKey(section, key));
    return put(*target, ini.withValue(section, key, text));
}

/// A list of folders as `DOS::Alloc_ini` gives it: no blanks around an entry, no empty entry.
std::string tidied(std::string_view list) {
    std::vector<std::string_view> entries;
    while (!list.empty()) {
        const std::size_t length = std::min(list.find(';'), list.size());
        const std::string_view entry = withoutBlanks(list.substr(0, length));
        if (!entry.empty()) entries.push_back(entry);
        list.remove_prefix(std::min(length + 1, list.size()));
    }
    return joined(entries);
}

}  // namespace

int getr_ini(const char* source, const char* section, const char* mode, const char* key, double* value) {
    if (value == nullptr) return 0;
    return guarded(0, [&] { return readNumber(filesOf(source, mode), section, key, value); });
}

int gets_ini(const char* source, const char* section, const char* mode, const char* key, char* out,
             int size) {
    if (out == nullptr || size < 1) return 0;
    *out = '\0';
    return guarded(0, [&] { return readText(filesOf(source, mode), section, key, out, size); });
}

int sets_ini(const char* source, const char* section, const char* mode, const char* key, const char* value) {
    if (section == nullptr) return 0;
    return guarded(0, [&] {
        return writeSetting(filesOf(source, mode), withoutBlanks(section), keyOf(key), value) ? 1 : 0;
    });
}

namespace DOS {

long Gets_ini(const char* file, const char* section, const char* mode, const char* key, char* out, int size) {
    if (out == nullptr || size < 1) return 0;
    *out = '\0';
    return guarded(0, [&] { return readText(filesOrPath(file, mode), section, key, out, size); });
}

long Getr_ini(const char* file, const char* section, const char* mode, const char* key, double* value) {
    if (value == nullptr) return 0;
    return guarded(0, [&] { return readNumber(filesOrPath(file, mode), section, key, value); });
}

char* Alloc_ini(char** list, const char* section, const char* mode, const char* key, const char* source) {
    if (list == nullptr) return nullptr;
    const std::string folders = guarded(std::string(), [&] {
        if (keyOf(key).empty()) return std::string();
        return tidied(
            lookUp(filesOf(source != nullptr ? source : "torel", mode), section, keyOf(key)).value_or(""));
    });
    Free_ini(list);
    *list = static_cast<char*>(std::malloc(folders.size() + 1));
    if (*list != nullptr) std::memcpy(*list, folders.c_str(), folders.size() + 1);
    return *list;
}

void Free_ini(char** list) {
    if (list == nullptr) return;
    std::free(*list);
    *list = nullptr;
}

}  // namespace DOS
