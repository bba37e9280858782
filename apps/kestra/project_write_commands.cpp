#include <kestra/project/writing/written_line.h>

#include "json.h"
#include "project_file.h"
#include "words.h"

namespace {

/// Tells how many lines a command has changed.
int report(const Command& command, const Words& words, int lines, std::string_view what, Terminal& terminal) {
    if (lines < 0) return failProject(command, words.names[0], cannotWrite, terminal);
    if (words.json)
        terminal.output(json::object({{"lines", std::to_string(lines)}}) + '\n');
    else
        terminal.output(words.names[0] + " : " + countedLines(lines, what) + '\n');
    return exitDone;
}

/// Opens the project, which then stays open for the command that follows; false after a message.
bool openProject(Cchantier& project, const Command& command, const Words& words, Terminal& terminal) {
    project.m_cheminCht = projectPath(words.names[0]).c_str();
    if (project.Open() != nullptr) return true;
    failProject(command, words.names[0], cannotOpen, terminal);
    return false;
}

int set(Arguments arguments, Terminal& terminal) {
    const Words words = readWords(arguments, {"le projet", "la section", "le nom"}, Further::taken);
    if (!words.fault.empty()) return refuseUsage(projectSet, words.fault, terminal);
    CStringArray fields;
    fields.Add(CString(sectionTag(words.names[1])));
    for (std::size_t i = 2; i < words.names.size(); ++i) fields.Add(CString(words.names[i]));
    if (!kestra::readsBack(fields) || words.names[2].find_first_of("*?;") != std::string::npos)
        return refuseUsage(projectSet, "la variable ne se relirait pas comme elle est donnée", terminal);
    Cchantier project;
    if (!openProject(project, projectSet, words, terminal)) return exitFailed;
    return report(projectSet, words, project.Setvar(fields) > 1 ? 1 : -1, "écrite", terminal);
}

/// Changes the lines of a variable; none is a failure.
int change(const Command& command, const Words& words, const char* newSection, std::string_view what,
           Terminal& terminal) {
    Cchantier project;
    if (!openProject(project, command, words, terminal)) return exitFailed;
    const int lines =
        project.Changevar(sectionTag(words.names[1]).c_str(), words.names[2].c_str(), newSection);
    if (lines == 0)
        return failProject(command, words.names[0], "aucune variable « " + words.names[2] + " »", terminal);
    return report(command, words, lines, what, terminal);
}

int remove(Arguments arguments, Terminal& terminal) {
    const Words words = readWords(arguments, {"le projet", "la section", "le nom"});
    if (!words.fault.empty()) return refuseUsage(projectDelete, words.fault, terminal);
    return change(projectDelete, words, nullptr, "supprimée", terminal);
}

int rename(Arguments arguments, Terminal& terminal) {
    const Words words = readWords(arguments, {"le projet", "la section", "le nom", "la nouvelle section"});
    if (!words.fault.empty()) return refuseUsage(projectRename, words.fault, terminal);
    const std::string section = sectionTag(words.names[3]);
    if (section.size() != sectionTag(words.names[1]).size() ||
        section.find_first_of(";.\r\n") != section.npos)
        return refuseUsage(projectRename, "la nouvelle section doit avoir la longueur de l'ancienne",
                           terminal);
    return change(projectRename, words, section.c_str(), "changée", terminal);
}

int compact(Arguments arguments, Terminal& terminal) {
    const Words words = readWords(arguments, {"le projet"});
    if (!words.fault.empty()) return refuseUsage(projectCompact, words.fault, terminal);
    Cchantier project;
    if (!openProject(project, projectCompact, words, terminal)) return exitFailed;
    return report(projectCompact, words, project.Compresse(), "retirée", terminal);
}

}  // namespace

const Command projectSet = {
    "project set", "écrit une variable",
    "Usage : kestra project set PROJET SECTION NOM [VALEUR ...] [--json]\n"
    "\n"
    "Écrit la variable à la place de sa ligne, ou d'une ligne supprimée, sinon à la fin. Un\n"
    "« ; » dans une valeur y reste. Une variable sur la toute première ligne du fichier y reste\n"
    "aussi : la nouvelle est écrite ailleurs. Est refusé ce qui ne se relirait pas : fins de\n"
    "ligne, « + » à la fin, plusieurs milliers de caractères. Ce qui suit « -- » n'est jamais\n"
    "une option.\n"
    "\n"
    "  --json  un objet : lines, le nombre de lignes\n"
    "\n"
    "Code de retour : 0 ; 1 quand le projet ne peut être ouvert ou écrit ; 2 ligne de commande\n"
    "incorrecte ou variable refusée.\n",
    set};

const Command projectDelete = {
    "project delete", "supprime une variable",
    "Usage : kestra project delete PROJET SECTION NOM [--json]\n"
    "\n"
    "Marque comme supprimées les lignes de la variable (« * » et « ? » admis) ; « compact » les\n"
    "retire du fichier.\n"
    "\n"
    "  --json  un objet : lines, le nombre de lignes\n"
    "\n"
    "Code de retour : 0 ; 1 quand il n'y a pas de telle variable ou que le projet ne peut être\n"
    "ouvert ou écrit ; 2 ligne de commande incorrecte.\n",
    remove};

const Command projectRename = {
    "project rename", "change la section d'une variable",
    "Usage : kestra project rename PROJET SECTION NOM NOUVELLE-SECTION [--json]\n"
    "\n"
    "Change la section des lignes de la variable (« * » et « ? » admis). Les deux sections ont\n"
    "la même longueur.\n"
    "\n"
    "  --json  un objet : lines, le nombre de lignes\n"
    "\n"
    "Code de retour : 0 ; 1 quand il n'y a pas de telle variable ou que le projet ne peut être\n"
    "ouvert ou écrit ; 2 ligne de commande incorrecte.\n",
    rename};

const Command projectCompact = {
    "project compact", "retire les lignes supprimées",
    "Usage : kestra project compact PROJET [--json]\n"
    "\n"
    "Retire du fichier les lignes supprimées ; tout le reste y demeure, octet pour octet.\n"
    "\n"
    "  --json  un objet : lines, le nombre de lignes\n"
    "\n"
    "Code de retour : 0 ; 1 quand le projet ne peut être ouvert ou écrit ; 2 ligne de commande\n"
    "incorrecte.\n",
    compact};
