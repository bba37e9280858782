#include "moved_project.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include <kestra/project/chantier.h>
#include <kestra/project/places/relative_paths.h>
#include <kestra/project/writing/change_file.h>
#include <platform/cp1252.h>
#include <platform/files.h>

namespace {

using kestra::ChangeFile;
using platform::FileKind;
using platform::theFiles;

constexpr std::string_view recordTag = "$VARCHT;MAJDIRCHT;";
constexpr std::string_view projectTag = "$VARCHT;CHANTIER;";
constexpr std::size_t longestFolder = 500;

bool isControl(char c) {
    return static_cast<unsigned char>(c) < ' ';
}

/// The field that starts at `start`, up to a ";" or a control character.
std::string_view folderAt(std::string_view text, std::size_t start) {
    text = text.substr(start, longestFolder);
    const auto* const end =
        std::find_if(text.begin(), text.end(), [](char c) { return c == ';' || isControl(c); });
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

/// The folder in which the project stood when it was last recorded.
std::optional<std::string> oldFolder(std::string_view text, std::size_t record) {
    if (record != text.npos) return std::string(folderAt(text, record + recordTag.size()));
    const std::size_t project = text.find(projectTag);
    if (project == text.npos) return std::nullopt;
    const std::size_t first = project + projectTag.size();
    const std::size_t end = text.find_first_of(";\r\n", first);
    if (end == text.npos || text[end] != ';') return std::nullopt;
    const std::string_view old = folderAt(text, end + 1);
    // A relative folder moves along, and stands in too many other paths to be replaced.
    return old.starts_with("..") ? std::nullopt : std::optional(std::string(old));
}

std::string withReplaced(std::string_view text, std::string_view before, std::string_view after) {
    std::string out;
    for (;;) {
        const std::size_t found = before.empty() ? text.npos : text.find(before);
        out += text.substr(0, found);
        if (found == text.npos) return out;
        out += after;
        text.remove_prefix(found + before.size());
    }
}

/// Makes a text end a line, for another one to follow.
void endLine(std::string& text) {
    if (text.empty() || text.back() == '\n') return;
    const auto last = static_cast<unsigned char>(text.back());
    if (last >= ' ' && last < 0x7F)
        text += "\r\n";
    else
        text.back() = ' ';  // Kept: an odd last byte gives way to a blank, and the record follows on its line
}

/// The text with the project's folder put up to date.
std::string broughtUpToDate(const std::string& text, const std::string& folder) {
    const std::size_t record = text.find(recordTag);
    const std::optional<std::string> old = oldFolder(text, record);
    std::string updated = old && *old != folder ? withReplaced(text, *old, folder) : text;
    if (record != text.npos) return updated;
    endLine(updated);
    return updated.append(recordTag).append(folder).append("\r\n");
}

enum class Recorded { done, unread, unwritten };

/// Brings a project up to date for the place where it stands; the caller has the turn to write it.
Recorded recordFolder(const std::string& path) {
    std::string text;
    if (!platform::readWholeFile(path.c_str(), text)) return Recorded::unread;
    const std::string folder = kestra::folderOf(path.c_str());
    // Where case counts (POSIX paths) an upper-case folder would lead nowhere.
    const std::string updated =
        broughtUpToDate(text, folder.starts_with('/') ? folder : platform::upperCased1252(folder));
    const bool isThere = updated == text || platform::replaceWholeFile(path.c_str(), updated);
    return isThere ? Recorded::done : Recorded::unwritten;
}

/// Moves a file to another folder, onto another disk too; what is there is not replaced.
bool moveFile(const std::string& from, const std::string& to) {
    if (theFiles().kind(to.c_str()) != FileKind::missing) return false;
    if (theFiles().rename(from.c_str(), to.c_str(), false)) return true;
    std::string content;
    if (!platform::readWholeFile(from.c_str(), content) || !platform::createWholeFile(to.c_str(), content))
        return false;
    theFiles().copyIdentity(from.c_str(), to.c_str());
    if (theFiles().remove(from.c_str())) return true;
    theFiles().remove(to.c_str());
    return false;
}

bool canBeChanged(const std::string& path) {
    return theFiles().open(path.c_str(), platform::OpenMode::update) != nullptr;
}

}  // namespace

bool kestra::moveProject(const std::string& from, const std::string& to) {
    if (!canBeChanged(from)) return false;
    const auto turn = ChangeFile::take(from), turnThere = ChangeFile::take(to);
    // The place where it stands now is what the move replaces.
    if (!turn || !turnThere || recordFolder(from) != Recorded::done || !moveFile(from, to)) return false;
    if (recordFolder(to) == Recorded::done) return true;
    moveFile(to, from);
    return false;
}

int Cchantier::Maj_DirCht() {
    Close();
    const std::string path = m_cheminCht.GetString();
    if (path.size() < 2) return 0;
    if (!canBeChanged(path)) return 0;
    const auto turn = ChangeFile::take(path);
    return turn != nullptr && recordFolder(path) != Recorded::unwritten ? 1 : 0;
}
