#include "write_check.h"

#include <algorithm>
#include <string>

#include <kestra/project/chantier.h>
#include <kestra/project/variable_list.h>
#include <kestra/project/written_line.h>
#include <platform/cp1252.h>
#include <platform/faulty_files.h>
#include <platform/replaceable.h>

#include "memory_files.h"
#include "project_reference.h"

namespace {

constexpr const char* path = "C:\\p\\a.cht";

/// Runs `write` over the content, stopping after `writes` (negative: never), and gives the file as it is read
/// then.
template <class Write>
std::string contentAfter(std::string_view content, long writes, const Write& write, bool& stopped) {
    MemoryFiles files;
    files.put(path, std::string(content));
    platform::FaultyFiles faulty(files);
    faulty.stopAfterWrites(writes);
    const platform::Replaced<platform::FileSystem> inForce(platform::replaceFiles, faulty);
    Cchantier project;
    project.m_cheminCht = path;
    write(project);
    stopped = faulty.stopped();
    faulty.stopAfterWrites(-1);
    if (project.Open() == nullptr) return "not opened";
    project.Close();
    std::string now;
    platform::readWholeFile(path, now);
    return now;
}

template <class Write>
bool isWholeOrNotAtAll(std::string_view content, const Write& write, std::string& after) {
    bool stopped = false;
    after = contentAfter(content, -1, write, stopped);
    for (long writes = 1; stopped || writes == 1; ++writes) {
        const std::string now = contentAfter(content, writes, write, stopped);
        if (now != after && (now != content || !stopped)) return false;
    }
    return true;
}

struct Place {
    std::size_t start, end;
};

/// Where the first line of the section and name stands; `end` 0 for none.
Place find(std::string_view content, const std::string& field) {
    const auto lines = ReferenceReader(content).lines();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string text = platform::upperCased1252(lines[i].text);
        if (text != field && !text.starts_with(field + ';')) continue;
        const auto end =
            i + 1 < lines.size() ? static_cast<std::size_t>(lines[i + 1].offset) : content.size();
        return {static_cast<std::size_t>(lines[i].offset), end};
    }
    return {0, 0};
}

/// The file that writing a line must give, told as plainly as the rules are.
std::string written(const std::string& content, const std::string& name, const std::string& value) {
    std::string line = "$VARCHT;" + platform::upperCased1252(name) + ';' + value + "\r\n";
    Place place = find(content, "$VARCHT;" + platform::upperCased1252(name));
    if (place.start == 0) place = find(content, "$.ARCHT;" + platform::upperCased1252(name));
    if (place.end == 0) {
        const std::size_t looked = content.size() > 5 ? content.size() - 5 : 0;
        const std::size_t end = content.find_first_of("\r\n\x1A", looked);
        return content.substr(0, end) + "\r\n" + line;
    }
    const std::size_t room = place.end - place.start;
    if (room >= line.size()) line.insert(line.size() - 2, room - line.size(), ' ');
    const bool moves = content.size() - place.end >= 4;
    const std::size_t covered = room >= line.size() || moves ? room : line.size();
    return content.substr(0, place.start) + line +
           content.substr(std::min(place.start + covered, content.size()));
}

bool readsBackFrom(const std::string& content, const CStringArray& fields) {
    MemoryFiles files;
    files.put(path, content);
    const platform::Replaced<platform::FileSystem> inForce(platform::replaceFiles, files);
    Cchantier project;
    project.m_cheminCht = path;
    bool found = fields[2].Find("..") >= 0;  // a relative path comes back as another text
    VisitFoundLines(project, fields[0], fields[1], [&](const CStringArray& line, bool) {
        found = found || (line.GetSize() == 3 && line[2] == fields[2]);
    });
    return found;
}

}  // namespace

bool writesByTheRules(std::string_view content, std::string_view name, std::string_view value) {
    CStringArray fields;
    for (const std::string_view field : {std::string_view("$VARCHT"), name, value})
        fields.Add(CString(field.substr(0, field.find('\0'))));
    const std::string text(fields[1].view());
    if (text.empty() || text[0] == ' ' || text.find_first_of("*?;") != text.npos || text.size() > 200)
        return true;
    std::string after;
    const auto write = [&](Cchantier& project) { project.Setvar(fields[0], fields[1], fields[2]); };
    if (!isWholeOrNotAtAll(content, write, after)) return false;
    if (after != written(std::string(content), text, fields[2].GetString())) return false;
    const auto writeArray = [&](Cchantier& project) { project.Setvar(fields); };
    // What stands before the new line may go on into it.
    const bool goesOn = content.find('+') != content.npos || !content.ends_with("whole line\r\n");
    return isWholeOrNotAtAll(content, writeArray, after) &&
           (goesOn || !kestra::readsBack(fields) || readsBackFrom(after, fields));
}

bool compactsByTheRules(std::string_view content) {
    const auto lines = ReferenceReader(content).lines();
    std::string expected;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto start = static_cast<std::size_t>(lines[i].offset);
        const std::size_t end =
            i + 1 < lines.size() ? static_cast<std::size_t>(lines[i + 1].offset) : content.size();
        if (!lines[i].text.starts_with("$.")) expected += content.substr(start, end - start);
    }
    std::string after;
    const auto compact = [](Cchantier& project) { project.Compresse(); };
    return isWholeOrNotAtAll(content, compact, after) && after == expected;
}
