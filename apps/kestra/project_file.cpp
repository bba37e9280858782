#include "project_file.h"

#include <dorsel/paths.h>
#include <platform/cp1252.h>
#include <platform/files.h>

const std::string_view cannotOpen = "introuvable, ou ne peut être modifié";
const std::string_view cannotWrite = "écriture impossible, le fichier est resté comme il était";

std::string projectPath(const std::string& named) {
    const std::string path = platform::theFiles().absolute(named.c_str());
    const bool isWhole = platform::equalNoCase1252(DOS::GetPName(path.c_str(), "E"), ".cht");
    // `create` gives the extension in upper case, and there are disks on which case counts.
    for (const char* extension : {isWhole ? "" : ".cht", ".CHT"})
        if (const std::string file = path + extension;
            platform::theFiles().kind(file.c_str()) == platform::FileKind::file)
            return file;
    return named;
}

std::string sectionTag(const std::string& named) {
    return named.starts_with('$') ? named : '$' + named;
}

int failProject(const Command& command, const std::string& project, std::string_view why,
                Terminal& terminal) {
    terminal.error("kestra " + std::string(command.name) + " : « " + project + " » : " + std::string(why) +
                   '\n');
    return exitFailed;
}
