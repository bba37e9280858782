#include "ini_file.h"

#include <unordered_set>

#include <platform/cp1252.h>

namespace dorsel {
namespace {

using platform::equalNoCase1252;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

enum class LineKind { section, key, other };

/// A line of the file; `whole` includes its line end.
struct Line {
    std::string_view whole;
    std::string_view content;  ///< up to a NUL, without blanks at both ends
    LineKind kind = LineKind::other;
    std::string_view name;   ///< of the section or the key
    std::string_view value;  ///< of the key; an empty one stands directly behind the '='
};

void classify(Line& line) {
    const std::string_view content = line.content;
    if (content.empty() || content.front() == ';') return;
    if (content.front() == '[') {
        const std::size_t end = content.find(']');
        if (end == std::string_view::npos) return;
        line.kind = LineKind::section;
        line.name = withoutBlanks(content.substr(1, end - 1));
        return;
    }
    const std::size_t equals = content.find('=');
    if (equals == std::string_view::npos) return;
    line.name = withoutBlanks(content.substr(0, equals));
    if (line.name.empty()) return;
    line.kind = LineKind::key;
    line.value = withoutBlanks(content.substr(equals + 1));
    if (line.value.empty()) line.value = content.substr(equals + 1, 0);
}

Line lineAt(std::string_view text, std::size_t start) {
    const std::size_t feed = text.find('\n', start);
    Line line;
    line.whole = text.substr(start, feed == std::string_view::npos ? feed : feed + 1 - start);
    std::string_view content = line.whole;
    if (content.ends_with('\n')) content.remove_suffix(1);
    if (start == 0 && content.starts_with(byteOrderMark)) content.remove_prefix(byteOrderMark.size());
    line.content = withoutBlanks(content.substr(0, content.find('\0')));
    classify(line);
    return line;
}

/// Calls `visit(line, inSection)` for each line; a section's own header counts as in it.
template <class Visit>
void forEachLine(std::string_view text, std::string_view section, Visit visit) {
    bool inSection = false;
    for (std::size_t start = 0; start < text.size();) {
        const Line line = lineAt(text, start);
        if (line.kind == LineKind::section) inSection = equalNoCase1252(line.name, section);
        visit(line, inSection);
        start += line.whole.size();
    }
}

std::string_view lineEndOf(std::string_view text) {
    const std::size_t feed = text.find('\n');
    return feed != std::string_view::npos && (feed == 0 || text[feed - 1] != '\r') ? "\n" : "\r\n";
}

/// What stands of a key's line before its value.
std::string_view beforeValue(const Line& line) {
    return line.whole.substr(0, static_cast<std::size_t>(line.value.data() - line.whole.data()));
}

std::string_view endOf(std::string_view line) {
    return line.ends_with("\r\n") ? "\r\n" : line.ends_with('\n') ? "\n" : "";
}

bool isOneLine(std::string_view text) {
    return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

/// The text as it is rewritten: where a new key of the section goes is known once all lines have passed.
struct Rewriting {
    std::string out;
    std::size_t sectionEnd = 0;  ///< behind the last line with content of the section's first stretch
    bool sectionSeen = false;
    bool stretchOver = false;

    void keep(const Line& line, bool inSection) {
        out += line.whole;
        if (!inSection) stretchOver = sectionSeen;
        if (!inSection || stretchOver) return;
        if (sectionSeen && line.kind == LineKind::section) {
            stretchOver = true;
            return;
        }
        sectionSeen = true;
        if (!line.content.empty()) sectionEnd = out.size();
    }
};

}  // namespace

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t start = text.find_first_not_of(blanks);
    if (start == std::string_view::npos) return {};
    return text.substr(start, text.find_last_not_of(blanks) + 1 - start);
}

std::vector<std::string_view> IniFile::values(std::string_view section, std::string_view key) const {
    std::vector<std::string_view> found;
    forEachLine(m_text, section, [&](const Line& line, bool inSection) {
        if (inSection && line.kind == LineKind::key && equalNoCase1252(line.name, key))
            found.push_back(line.value);
    });
    return found;
}

std::vector<std::string_view> IniFile::keys(std::string_view section) const {
    std::vector<std::string_view> found;
    std::unordered_set<std::string> seen;
    forEachLine(m_text, section, [&](const Line& line, bool inSection) {
        if (inSection && line.kind == LineKind::key &&
            seen.insert(platform::upperCased1252(line.name)).second)
            found.push_back(line.name);
    });
    return found;
}

bool IniFile::canHold(std::string_view section, std::string_view key, std::string_view value) {
    if (!isOneLine(section) || !isOneLine(key) || !isOneLine(value)) return false;
    return section.find(']') == std::string_view::npos && !key.empty() &&
           key.find('=') == std::string_view::npos && key.front() != ';' && key.front() != '[';
}

std::string IniFile::withValue(std::string_view section, std::string_view key, std::string_view value) const {
    Rewriting text;
    text.out.reserve(m_text.size() + section.size() + key.size() + value.size() + 16);
    bool written = false;
    forEachLine(m_text, section, [&](const Line& line, bool inSection) {
        if (!inSection || line.kind != LineKind::key || !equalNoCase1252(line.name, key)) {
            text.keep(line, inSection);
        } else if (!written) {
            text.out.append(beforeValue(line)).append(value).append(endOf(line.whole));
            written = true;
        }
    });
    if (written) return text.out;

    const std::string end(lineEndOf(m_text));
    std::string added = std::string(key) + '=' + std::string(value) + end;
    if (!text.sectionSeen) {
        added = '[' + std::string(section) + ']' + end + added;
        text.sectionEnd = text.out.size();
    }
    const bool open =
        text.sectionEnd > 0 && text.out[text.sectionEnd - 1] != '\n' && text.out != byteOrderMark;
    return text.out.insert(text.sectionEnd, open ? end + added : added);
}

std::string IniFile::withoutKey(std::string_view section, std::string_view key) const {
    std::string out;
    forEachLine(m_text, section, [&](const Line& line, bool inSection) {
        if (!inSection || line.kind != LineKind::key || !equalNoCase1252(line.name, key)) out += line.whole;
    });
    return out;
}

}  // namespace dorsel
