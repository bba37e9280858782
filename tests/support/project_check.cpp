#include "project_check.h"

#include <algorithm>
#include <string>

#include <kestra/project/reading/variable_list.h>
#include <platform/cp1252.h>
#include <platform/replaceable.h>

#include "memory_files.h"

namespace {

constexpr const char* section = "$VARCHT";
constexpr const char* name = "V";

bool isVariable(const ReferenceLine& line) {
    const std::string text = platform::upperCased1252(line.text);
    return text.starts_with("$VARCHT;V;") || text == "$VARCHT;V";
}

bool searchAgrees(Cchantier& project, const std::vector<ReferenceLine>& expected) {
    char* line = nullptr;
    project.Open();
    for (const ReferenceLine& reference : expected) {
        if (isVariable(reference) &&
            (project.Findvar(line, section, name) != reference.offset || line != reference.text))
            return false;
    }
    const bool atEnd = project.Findvar(line, section, name) == -1;
    project.Close();
    Cchantier::m_ChtIVAR.RemoveAll();
    return atEnd;
}

/// All lines of the project's own are found; without any, the first one of the include, if it is named.
bool lookupAgrees(Cchantier& project, const std::vector<ReferenceLine>& own, std::string_view included) {
    CStringArray out;
    const int found = project.Getvar(section, name, 0, out);
    if (const auto count = std::count_if(own.begin(), own.end(), isVariable); count > 0)
        return found == count;
    const auto others = ReferenceReader(included).lines();
    const bool isThere = std::any_of(others.begin(), others.end(), isVariable);
    const bool isNamed = std::any_of(own.begin(), own.end(), [](const ReferenceLine& line) {
        return (platform::upperCased1252(line.text) + ';').starts_with("CHTIVAR;B;");
    });
    return found == 0 ? !(isNamed && isThere) : found == 1 && isThere;
}

}  // namespace

std::vector<ReferenceLine> readLines(Cchantier& project) {
    std::vector<ReferenceLine> lines;
    if (project.Open() == nullptr) return lines;
    for (char* line = nullptr;;) {
        const std::int64_t offset = project.m_fp->tell();
        const int pieces = project.Lisligne(line);
        if (pieces == 0) return lines;
        lines.push_back({line, offset, pieces});
    }
}

bool projectAnswersByTheRules(std::string_view content, std::string_view included) {
    MemoryFiles files;
    const platform::Replaced<platform::FileSystem> inForce(platform::replaceFiles, files);
    files.put("C:\\p\\a.cht", std::string(content));
    files.put("C:\\p\\b.cht", std::string(included));
    Cchantier project;
    project.m_cheminCht = "C:\\p\\a";
    const auto own = ReferenceReader(content).lines();
    CStringArray out;
    const int all = VisitVariables(project, [](const ProjectVariable&) { return true; });
    const int found = project.Getvar(section, "V*", 3, out);
    return found <= all && out.GetSize() <= 3 * found && readLines(project) == own &&
           searchAgrees(project, own) && lookupAgrees(project, own, included);
}
