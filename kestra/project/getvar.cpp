#include <string>
#include <string_view>
#include <utility>

#include <kestra/project/chantier.h>
#include <kestra/project/project_walk.h>
#include <kestra/project/returned_fields.h>
#include <kestra/project/variable_lookup.h>
#include <platform/cp1252.h>

namespace {

using kestra::FoundLine;
using kestra::LineFilter;
using kestra::ProjectWalk;

/// What a caller asks for: the name without its leading stars, which say how includes are taken.
struct Request {
    std::string section;
    std::string name;
    bool includesOnly = false;

    Request(const char* wantedSection, const char* wantedName)
        : section(wantedSection != nullptr ? wantedSection : ""),
          name(wantedName != nullptr ? wantedName : "") {
        if (name.size() < 3 || name[0] != '*') return;
        const std::size_t stars = name.find_first_not_of('*');
        includesOnly = stars >= 2;
        name.erase(0, stars);
    }
    bool isValid() const { return !section.empty() && !name.empty(); }
    bool isNamedBy(std::string_view line) const {
        std::string_view lineName;
        return kestra::fieldOf(line, 1, lineName) && platform::equalNoCase1252(lineName, name);
    }
};

using Visit = std::function<void(const FoundLine&)>;

int visitOwnLines(ProjectWalk& walk, const LineFilter& filter, const Request& request, const Visit& visit) {
    int lines = 0;
    bool foundByName = false;
    std::string_view line;
    while (walk.nextLine(filter, line)) {
        if (request.includesOnly) continue;
        ++lines;
        visit({line, walk.folder(), false, false});
        foundByName = foundByName || request.isNamedBy(line);
    }
    if (foundByName) walk.dropIncludes();
    return lines;
}

int visitIncludedLines(ProjectWalk& walk, const LineFilter& filter, const Request& request,
                       const Visit& visit) {
    int lines = 0;
    std::string_view line;
    while (walk.nextLine(filter, line)) {
        ++lines;
        visit({line, walk.folder(), true, !request.includesOnly});
        if (request.isNamedBy(line)) break;
    }
    return lines;
}

std::string joinedFields;

}  // namespace

int kestra::visitVariable(Cchantier& project, const char* section, const char* name, const Visit& visit) {
    const Request request(section, name);
    ProjectWalk walk(project);
    if (!request.isValid() || !walk.start()) return -1;
    const LineFilter filter(request.section, request.name);
    int lines = visitOwnLines(walk, filter, request, visit);
    while (walk.nextInclude()) lines += visitIncludedLines(walk, filter, request, visit);
    return lines;
}

void kestra::appendFields(CStringArray& out, const FoundLine& line, int maxFields) {
    const int nameAt = out.GetSize() + 1;
    appendFields(out, line.text, 0, maxFields, line.folder);
    if (line.marked && nameAt < out.GetSize()) out[nameAt] = "**" + out[nameAt];
}

CStringArray kestra::lastLineOf(Cchantier& project, const char* section, const char* name, int maxFields) {
    CStringArray fields;
    visitVariable(project, section, name, [&](const FoundLine& line) {
        fields.RemoveAll();
        appendFields(fields, line, maxFields);
    });
    return fields;
}

int Cchantier::Getvar(const char* section, const char* name, int maxFields, CStringArray& out) {
    m_spareC = 0;
    CStringArray found;
    const int lines = kestra::visitVariable(
        *this, section, name, [&](const FoundLine& line) { kestra::appendFields(found, line, maxFields); });
    if (lines < 0) return 0;
    out = std::move(found);
    return lines;
}

int Cchantier::Getvar(char*& joined, const char* section, const char* name, int maxFields,
                      CDWordArray* starts) {
    CStringArray fields;
    const int lines = Getvar(section, name, maxFields, fields);
    std::string().swap(joinedFields);
    if (starts != nullptr) starts->RemoveAll();
    if (lines == 0) return 0;
    for (int i = 0; i < fields.GetSize(); ++i) {
        if (starts != nullptr) starts->Add(static_cast<std::uint32_t>(joinedFields.size()));
        joinedFields.append(fields[i].view()) += '\0';
    }
    joined = joinedFields.data();
    return lines;
}
