#include <string>
#include <string_view>

#include <kestra/project/chantier.h>
#include <kestra/project/project_walk.h>
#include <kestra/project/returned_fields.h>
#include <platform/cp1252.h>

namespace {

using kestra::LineFilter;
using kestra::ProjectWalk;

/// What a caller of `Getvar` asks for: the name without its leading stars, which say how includes are taken.
struct Request {
    std::string section;
    std::string name;
    bool includesOnly = false;
    int maxFields = 0;

    Request(const char* wantedSection, const char* wantedName, int maximum)
        : section(wantedSection != nullptr ? wantedSection : ""),
          name(wantedName != nullptr ? wantedName : ""),
          maxFields(maximum) {
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

int collectOwnLines(ProjectWalk& walk, const LineFilter& filter, const Request& request, CStringArray& out) {
    int lines = 0;
    bool foundByName = false;
    std::string_view line;
    while (walk.nextLine(filter, line)) {
        if (request.includesOnly) continue;
        ++lines;
        kestra::appendFields(out, line, 0, request.maxFields, walk.folder());
        foundByName = foundByName || request.isNamedBy(line);
    }
    if (foundByName) walk.dropIncludes();
    return lines;
}

int collectIncludedLines(ProjectWalk& walk, const LineFilter& filter, const Request& request,
                         CStringArray& out) {
    int lines = 0;
    std::string_view line;
    while (walk.nextLine(filter, line)) {
        ++lines;
        const int nameAt = out.GetSize() + 1;
        kestra::appendFields(out, line, 0, request.maxFields, walk.folder());
        if (!request.includesOnly && nameAt < out.GetSize()) out[nameAt] = "**" + out[nameAt];
        if (request.isNamedBy(line)) break;
    }
    return lines;
}

std::string joinedFields;

}  // namespace

int Cchantier::Getvar(const char* section, const char* name, int maxFields, CStringArray& out) {
    m_spareC = 0;
    const Request request(section, name, maxFields);
    ProjectWalk walk(*this);
    if (!request.isValid() || !walk.start()) return 0;
    out.RemoveAll();
    const LineFilter filter(request.section, request.name);
    int lines = collectOwnLines(walk, filter, request, out);
    while (walk.nextInclude()) lines += collectIncludedLines(walk, filter, request, out);
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
