#include <kestra/database/connection_text.h>

#include <array>

#include <dorsel/settings.h>

namespace kestra {

namespace {

// Kept: the blank in front of "="; data-link files and traces of the offices hold it so.
constexpr std::string_view accessPattern = "Provider =Microsoft.ACE.OLEDB.12.0;Data Source=%s;";
constexpr std::string_view dataLinkPattern = "File Name=%s";
// Kept: small letters do not count, ".udl" files get the Access provider's text.
constexpr std::string_view dataLinkExtension = ".UDL";

constexpr std::string_view pathMark = "%s", percentMark = "%%";
constexpr std::string_view writable = "ReadWrite", readable = "Read", readOnlyMode = "Mode=ReadOnly;";

/// A path as a value of a connection string: a ';' would end it.
std::string pathValue(std::string_view path, std::string_view before) {
    const bool isQuoted = !before.empty() && (before.back() == '"' || before.back() == '\'');
    if (isQuoted || path.find(';') == std::string_view::npos) return std::string(path);
    return '"' + std::string(path) + '"';
}

}  // namespace

std::string connectionPattern(std::string_view extension) {
    std::array<char, 5000> setting;
    const std::string key(extension);
    // An empty key would ask for the names of all settings.
    if (!key.empty() && DOS::Gets_ini("TOREL", "DATABASE64", "LR", key.c_str(), setting.data(),
                                      static_cast<int>(setting.size())) > 2)
        return setting.data();
    return std::string(extension == dataLinkExtension ? dataLinkPattern : accessPattern);
}

std::string readOnlyPattern(std::string pattern) {
    bool wasWritable = false;
    for (std::size_t at = 0; (at = pattern.find(writable, at)) != std::string::npos; at += readable.size()) {
        pattern.replace(at, writable.size(), readable);
        wasWritable = true;
    }
    // Kept: appended without a ';' in front, so that a data-link file is opened read-only only through a
    // pattern of the settings that ends in ';'.
    if (!wasWritable) pattern += readOnlyMode;
    return pattern;
}

std::string connectionText(std::string_view pattern, std::string_view path) {
    std::string text;
    bool isPlaced = false;
    for (std::size_t mark; (mark = pattern.find('%')) != std::string_view::npos;) {
        text += pattern.substr(0, mark);
        const std::string_view name = pattern.substr(mark, pathMark.size());
        const bool isPath = name == pathMark && !isPlaced;
        text += isPath ? pathValue(path, text) : name == percentMark ? "%" : std::string(name);
        isPlaced = isPlaced || isPath;
        pattern.remove_prefix(mark + name.size());
    }
    return text += pattern;
}

}  // namespace kestra
