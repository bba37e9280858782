#include <dorsel/paths.h>
#include <kestra/project/places/moved_project.h>
#include <platform/files.h>

#include "json.h"
#include "project_file.h"
#include "words.h"

namespace {

using platform::FileKind;
using platform::theFiles;

int create(Arguments arguments, Terminal& terminal) {
    const Words words = readWords(arguments, {"le nouveau projet", "le modèle"});
    if (!words.fault.empty()) return refuseUsage(projectCreate, words.fault, terminal);
    const std::string path = theFiles().absolute(words.names[0].c_str());
    if (DOS::GetPName(path.c_str(), "UR") + std::string(DOS::GetPName(path.c_str(), "N")) !=
        path.substr(0, path.find('.')))
        return refuseUsage(projectCreate, "pas de point dans le chemin, sinon devant l'extension", terminal);
    const std::string model = projectPath(words.names[1]);
    Cchantier project;
    if (project.Open(model.c_str()) == nullptr)
        return failProject(projectCreate, words.names[1], "modèle introuvable", terminal);
    project.Close();
    const int lines = project.Create(path.c_str(), model.c_str());
    if (lines == 0)
        return failProject(projectCreate, words.names[0], "existe déjà, est vide ou ne peut être créé",
                           terminal);
    if (words.json)
        terminal.output(json::object({{"file", json::text(project.m_cheminCht.view())},
                                      {"lines", std::to_string(lines)}}) +
                        '\n');
    else
        terminal.output(std::string(project.m_cheminCht.view()) + " : " + countedLines(lines, "écrite") +
                        '\n');
    return exitDone;
}

int move(Arguments arguments, Terminal& terminal) {
    const Words words = readWords(arguments, {"le projet", "le dossier"});
    if (!words.fault.empty()) return refuseUsage(projectMove, words.fault, terminal);
    Cchantier project;
    const std::string from = projectPath(words.names[0]);
    const char* const opened = project.Open(from.c_str());
    if (opened == nullptr) return failProject(projectMove, words.names[0], cannotOpen, terminal);
    project.m_cheminCht = opened;
    char folder[DOS::pathSize] = "";
    const std::string asked = theFiles().absolute(words.names[1].c_str());
    if (asked.size() + 1 < sizeof folder) asked.copy(folder, sizeof folder - 1);
    const std::string to = directory(folder, 1) + std::string(DOS::GetPName(opened, "NE"));
    if (theFiles().kind(to.c_str()) != FileKind::missing)
        return failProject(projectMove, to, "existe déjà", terminal);
    project.Close();
    if (DOS::CreateDir(folder, 4) == 0 || !kestra::moveProject(project.m_cheminCht.GetString(), to))
        return failProject(projectMove, to, "déplacement impossible", terminal);
    terminal.output(words.json ? json::object({{"file", json::text(to)}}) + '\n' : to + '\n');
    return exitDone;
}

}  // namespace

const Command projectCreate = {
    "project create", "crée un projet à partir d'un modèle",
    "Usage : kestra project create NOUVEAU MODELE [--json]\n"
    "\n"
    "Crée un projet à partir d'un projet modèle ; ses variables « $$ » deviennent celles du\n"
    "projet, ses commandes et ses propres réglages n'y sont pas copiés. Un dossier absent est\n"
    "créé, un projet qui existe n'est jamais remplacé.\n"
    "\n"
    "  --json  un objet : file, lines\n"
    "\n"
    "Code de retour : 0 ; 1 quand le modèle est introuvable ou que le projet existe déjà ou ne\n"
    "peut être créé ; 2 ligne de commande incorrecte.\n",
    create};

const Command projectMove = {
    "project move", "déplace un projet dans un autre dossier",
    "Usage : kestra project move PROJET DOSSIER [--json]\n"
    "\n"
    "Déplace le fichier du projet, et lui seul ; les chemins qui y menaient à l'ancien dossier\n"
    "mènent ensuite au nouveau. Un dossier absent est créé, un fichier n'est jamais remplacé.\n"
    "\n"
    "  --json  un objet : file\n"
    "\n"
    "Code de retour : 0 ; 1 quand le déplacement est impossible ; 2 ligne de commande\n"
    "incorrecte.\n",
    move};
