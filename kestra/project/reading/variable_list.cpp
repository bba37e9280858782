#include "variable_list.h"

#include <string_view>

#include <kestra/project/reading/project_walk.h>
#include <kestra/project/reading/returned_fields.h>
#include <kestra/project/reading/variable_lookup.h>

namespace {

void readVariable(std::string_view line, const std::string& folder, ProjectVariable& variable) {
    std::string_view field;
    if (kestra::fieldOf(line, 0, field)) variable.section = kestra::returnedField(field, 0, folder);
    if (kestra::fieldOf(line, 1, field)) variable.name = kestra::returnedField(field, 1, folder);
    variable.values.RemoveAll();
    kestra::appendFields(variable.values, line, 2, 0, folder);
}

}  // namespace

int VisitVariables(Cchantier& project, const std::function<bool(const ProjectVariable&)>& visit) {
    kestra::ProjectWalk walk(project);
    if (!walk.start()) return -1;
    const auto filter = kestra::LineFilter::everyVariable();
    ProjectVariable variable;
    variable.included = false;
    int lines = 0;
    do {
        variable.file = walk.file();
        std::string_view line;
        while (walk.nextLine(filter, line)) {
            readVariable(line, walk.folder(), variable);
            ++lines;
            if (!visit(variable)) return lines;
        }
        variable.included = true;
    } while (walk.nextInclude());
    return lines;
}

int VisitFoundLines(Cchantier& project, const char* section, const char* name,
                    const std::function<void(const CStringArray& fields, bool included)>& visit) {
    return kestra::visitVariable(project, section, name, [&](const kestra::FoundLine& line) {
        CStringArray fields;
        kestra::appendFields(fields, line.text, 0, 0, line.folder);
        visit(fields, line.included);
    });
}
