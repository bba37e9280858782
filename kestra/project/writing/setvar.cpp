#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include <dorsel/strings.h>
#include <kestra/project/chantier.h>
#include <kestra/project/writing/write_turn.h>
#include <kestra/project/writing/written_line.h>
#include <platform/cp1252.h>

namespace {

using kestra::LineFilter;
using kestra::LinePlace;
using kestra::Replacement;
using kestra::WriteTurn;

constexpr int notWritten = 1;
constexpr std::string_view lineEnd = "\r\n";
/// With fewer bytes than this behind it, a line that grows is written over them.
constexpr std::int64_t leastMoved = 4;
/// Bytes at the end of the file in which its last line end is looked for.
constexpr std::int64_t tailLooked = 5;

std::string deletedSection(std::string section) {
    if (section.empty()) return section;
    section.resize(std::max<std::size_t>(section.size(), 2));
    section[1] = '.';
    return section;
}

/// The line to write over: the variable's, or else one of the variable that was deleted.
LinePlace targetOf(WriteTurn& turn, const std::string& section, std::string_view name) {
    const LinePlace own = turn.find(LineFilter(section, name));
    // Kept: the file's very first line counts as not found; the variable is written again elsewhere and both
    // lines remain.
    return own.start > 0 ? own : turn.find(LineFilter(deletedSection(section), name));
}

// Kept: the place is looked for in the last five bytes only, so that a last line of fewer than four
// characters is partly written over.
std::optional<Replacement> appended(platform::File& file, std::int64_t size, const std::string& line) {
    char tail[tailLooked];
    const std::int64_t looked = std::min(size, tailLooked);
    const std::string_view bytes(tail, static_cast<std::size_t>(looked));
    if (file.readAt(size - looked, tail, bytes.size()) != looked) return std::nullopt;
    const std::size_t end = std::min(bytes.find_first_of("\r\n\x1A"), bytes.size());
    const std::int64_t offset = size - looked + static_cast<std::int64_t>(end);
    return Replacement{offset, size - offset, std::string(lineEnd) + line};
}

std::optional<Replacement> over(const LinePlace& target, std::int64_t size, std::string line) {
    const std::int64_t room = target.end - target.start;
    const auto length = static_cast<std::int64_t>(line.size());
    if (room >= length)
        line.insert(line.size() - lineEnd.size(), static_cast<std::size_t>(room - length), ' ');
    // Kept: with a few bytes only behind the line nothing moves; a longer one covers them, the file is not
    // cut.
    const bool moves = room < length && size - target.end >= leastMoved;
    const std::int64_t covered = std::max(room, std::min(length, size - target.start));
    return Replacement{target.start, moves ? room : covered, std::move(line)};
}

std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

}  // namespace

int Cchantier::Setvar(const char* section, const char* name, const char* values) {
    const std::string tag = textOf(section);
    std::string bareName = textOf(name);
    bareName.erase(0, std::min(bareName.find_first_not_of(' '), bareName.size()));
    std::string line = platform::upperCased1252(tag + ';' + bareName + ';') + textOf(values);
    const auto separators = static_cast<int>(std::count(line.begin(), line.end(), ';'));
    line += lineEnd;

    WriteTurn turn(*this);
    const std::int64_t size = turn.isOpen() ? turn.file().size() : -1;
    if (size < 0) return notWritten;
    const LinePlace target = targetOf(turn, tag, bareName);
    auto change = target.isFound() ? over(target, size, std::move(line)) : appended(turn.file(), size, line);
    return change && turn.apply({std::move(*change)}) ? separators : notWritten;
}

int Cchantier::Setvar(const CStringArray& fields) {
    if (fields.GetSize() < 2 || fields[0].IsEmpty() || fields[1].IsEmpty()) return 0;
    kestra::WrittenLine line(fields[0].GetString(), fields[1].GetString());
    for (int i = 2; i < fields.GetSize(); ++i) line.add(fields[i].GetString());
    return Setvar(line.section().c_str(), line.name().c_str(), line.values().c_str());
}

int Cchantier::Setvar(MyPCharArray& fields) {
    if (textOf(fields[0]).empty() || textOf(fields[1]).empty()) return 0;
    kestra::WrittenLine line(fields[0], fields[1]);
    for (unsigned i = 2; fields[i] != nullptr; ++i) {
        // Kept: the caller's own texts are changed; callers count on the stored form.
        std::replace(fields[i], fields[i] + textOf(fields[i]).size(), ';', kestra::storedSemicolon);
        line.add(fields[i]);
    }
    return Setvar(line.section().c_str(), line.name().c_str(), line.values().c_str());
}

int ChtdefSetVar(const CStringArray& fields) {
    return chtdef.Setvar(fields);
}

namespace {

/// Position behind the first "$" of a line's bytes: the line's end when there is none, -1 when they cannot be
/// read.
std::int64_t tagPlace(platform::File& file, const LinePlace& line) {
    char piece[64];
    for (std::int64_t at = line.start; at < line.end; at += static_cast<std::int64_t>(sizeof piece)) {
        const auto wanted = std::min(line.end - at, static_cast<std::int64_t>(sizeof piece));
        if (file.readAt(at, piece, static_cast<std::size_t>(wanted)) != wanted) return -1;
        const auto* const found = std::find(piece, piece + wanted, '$');
        if (found != piece + wanted) return at + (found - piece) + 1;
    }
    return line.end;
}

}  // namespace

int Cchantier::Changevar(const char* section, const char* name, const char* newSection) {
    const std::string tag = platform::upperCased1252(textOf(section));
    std::string newTag = platform::upperCased1252(textOf(newSection));
    const bool deletes = newTag.empty();
    if (newTag.starts_with('$')) newTag.erase(0, 1);
    // Kept: a shorter tag leaves the rest of the old one standing; callers pass tags of the same length.
    if (!deletes && newTag.size() + 1 > tag.size()) return -1;

    WriteTurn turn(*this);
    if (!turn.isOpen()) return -1;
    std::vector<Replacement> replacements;
    for (const LinePlace& line : turn.findAll(LineFilter(tag, textOf(name)))) {
        const std::int64_t place = tagPlace(turn.file(), line);
        if (place < 0) return -1;
        if (place == line.end) continue;
        const std::string text = deletes ? "." : newTag;
        replacements.push_back({place, static_cast<std::int64_t>(text.size()), text});
    }
    const auto count = static_cast<int>(replacements.size());
    return turn.apply(std::move(replacements)) ? count : -1;
}
