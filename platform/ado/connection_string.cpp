#include <algorithm>

#include <platform/ado/connection_string.h>
#include <platform/cp1252.h>
#include <platform/files.h>

namespace ado20 {

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::int64_t dataLinkLimit = 1 << 20;

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// A value at the front of `rest`, up to the `;` that ends it, which goes as well.
std::string takeValue(std::string_view& rest) {
    const auto start = std::min(rest.find_first_not_of(blanks), rest.size());
    const char quote = start < rest.size() ? rest[start] : '\0';
    std::string value;
    std::size_t end = 0;
    if (quote == '"' || quote == '\'') {
        for (end = start + 1; end < rest.size(); ++end) {
            if (rest[end] == quote && (++end == rest.size() || rest[end] != quote)) break;
            value += rest[end];
        }
        end = std::min(rest.find(';', end), rest.size());
    } else {
        end = std::min(rest.find(';', start), rest.size());
        value = trimmed(rest.substr(start, end - start));
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return value;
}

std::string quoted(const std::string& value) {
    std::string text = "\"";
    for (const char c : value) text.append(c == '"' ? 2 : 1, c);
    return text + '"';
}

bool needsQuotes(const std::string& value) {
    return value.find(';') != std::string::npos || trimmed(value).size() != value.size() ||
           (!value.empty() && (value[0] == '"' || value[0] == '\''));
}

/// UTF-16, low byte first, without its mark.
std::string textOfWide(std::string_view bytes) {
    std::string utf8;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto unit =
            static_cast<unsigned>(static_cast<unsigned char>(bytes[i]) |
                                  static_cast<unsigned>(static_cast<unsigned char>(bytes[i + 1])) << 8);
        if (unit < 0x80) {
            utf8 += static_cast<char>(unit);
        } else if (unit < 0x800) {
            utf8 += static_cast<char>(0xC0u | unit >> 6);
            utf8 += static_cast<char>(0x80u | (unit & 0x3Fu));
        } else {
            utf8 += static_cast<char>(0xE0u | unit >> 12);
            utf8 += static_cast<char>(0x80u | (unit >> 6 & 0x3Fu));
            utf8 += static_cast<char>(0x80u | (unit & 0x3Fu));
        }
    }
    return platform::cp1252FromUtf8(utf8);
}

}  // namespace

ConnectionString::ConnectionString(std::string_view text) {
    while (!text.empty()) {
        const auto separator = text.find_first_of("=;");
        if (separator == std::string_view::npos) return;
        const std::string_view key = trimmed(text.substr(0, separator));
        const bool isItem = text[separator] == '=';
        text.remove_prefix(separator + 1);
        if (!isItem) continue;
        std::string value = takeValue(text);
        if (key.empty()) continue;
        const std::string upper = platform::upperCased1252(key);
        std::erase_if(m_items, [&](const auto& item) { return item.first == upper; });
        m_items.emplace_back(upper, std::move(value));
    }
}

const std::string* ConnectionString::find(std::string_view key) const {
    for (const auto& [name, value] : m_items)
        if (platform::equalNoCase1252(name, key)) return &value;
    return nullptr;
}

std::string ConnectionString::value(std::string_view key) const {
    const std::string* found = find(key);
    return found != nullptr ? *found : std::string();
}

std::string ConnectionString::text() const {
    std::string text;
    for (const auto& [name, value] : m_items)
        text += name + '=' + (needsQuotes(value) ? quoted(value) : value) + ';';
    return text;
}

ConnectModeEnum modeOfText(std::string_view text) {
    constexpr std::pair<std::string_view, int> modes[] = {{"Read", adModeRead},
                                                          {"ReadOnly", adModeRead},
                                                          {"Write", adModeWrite},
                                                          {"ReadWrite", adModeReadWrite},
                                                          {"Share Deny Read", adModeShareDenyRead},
                                                          {"Share Deny Write", adModeShareDenyWrite},
                                                          {"Share Exclusive", adModeShareExclusive},
                                                          {"Share Deny None", adModeShareDenyNone}};
    int mode = adModeUnknown;
    while (!text.empty()) {
        const auto end = std::min(text.find('|'), text.size());
        const std::string_view word = trimmed(text.substr(0, end));
        for (const auto& [name, bits] : modes)
            if (platform::equalNoCase1252(word, name)) mode |= bits;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return static_cast<ConnectModeEnum>(mode);
}

bool isAccessProvider(std::string_view provider) {
    for (const std::string_view start : {"Microsoft.Jet.OLEDB", "Microsoft.ACE.OLEDB"})
        if (platform::equalNoCase1252(provider.substr(0, start.size()), start)) return true;
    return false;
}

bool isEmbeddedProvider(std::string_view provider) {
    return provider.empty() || platform::equalNoCase1252(provider, "SQLite") || isAccessProvider(provider);
}

std::string readDataLink(const char* path) {
    std::string content;
    if (!platform::readWholeFile(path, content, dataLinkLimit)) return {};
    if (content.starts_with("\xFF\xFE")) content = textOfWide(std::string_view(content).substr(2));
    std::string result;
    std::string_view rest = content;
    while (!rest.empty()) {
        const auto end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = trimmed(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        // A section's name, a comment.
        if (!line.empty() && line[0] != '[' && line[0] != ';') result += line;
    }
    return result;
}

std::string resolveDataLink(std::string_view connectionString) {
    const std::string file = ConnectionString(connectionString).value("File Name");
    return file.empty() ? std::string(connectionString) : readDataLink(file.c_str());
}

}  // namespace ado20
