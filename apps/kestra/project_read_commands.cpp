#include <kestra/project/reading/variable_list.h>

#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <platform/files.h>

#include "json.h"
#include "project_file.h"
#include "words.h"

namespace {

std::vector<std::string> textsOf(const CStringArray& fields, bool asJson) {
    std::vector<std::string> texts;
    for (int i = 0; i < fields.GetSize(); ++i)
        texts.push_back(asJson ? json::text(fields[i].view()) : std::string(fields[i].view()));
    return texts;
}

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) all += (&text != texts.data() ? ";" : "") + text;
    return all;
}

std::string jsonOf(const ProjectVariable& variable) {
    return json::object({{"section", json::text(variable.section.view())},
                         {"name", json::text(variable.name.view())},
                         {"values", json::array(textsOf(variable.values, true))},
                         {"file", json::text(variable.file.view())},
                         {"included", json::truth(variable.included)}});
}

std::string lineOf(const ProjectVariable& variable) {
    std::string line = std::string(variable.section.view()) + ';' + std::string(variable.name.view());
    for (const std::string& value : textsOf(variable.values, false)) line += ';' + value;
    if (variable.included) line += "   (" + std::string(DOS::GetPName(variable.file, "NE")) + ')';
    return line + '\n';
}

/// First value of the last line of a variable that is found: the one that loading a project takes.
std::string valueInForce(Cchantier& project, const char* section, const char* name) {
    std::string value;
    VisitFoundLines(project, section, name, [&](const CStringArray& fields, bool) {
        value = fields.GetSize() > 2 ? fields[2].view() : std::string_view();
    });
    return value;
}

/// The service code, where there is a services file to tell it.
std::string serviceOf(const std::string& project) {
    const auto isThere = [](char folder, const char* file) {
        return platform::theFiles().kind((standardFolder(folder) + std::string(file)).c_str()) ==
               platform::FileKind::file;
    };
    char code[DOS::pathSize] = "";
    if (isThere('L', "ini\\services.ini") || isThere('R', "ini\\services.def"))
        Cchantier::Dir_serv(project.c_str(), code);
    return code;
}

struct Summary {
    std::string file;
    std::string title = {}, service = {}, drawing = {}, projection = {};
    std::vector<std::string> variables = {};

    std::string asJson() const {
        return json::object({{"file", json::text(file)},
                             {"title", json::text(title)},
                             {"service", json::text(service)},
                             {"drawing", json::text(drawing)},
                             {"projection", json::text(projection)},
                             {"variables", json::array(variables)}}) +
               '\n';
    }
    std::string asText() const {
        std::string text = "Projet     : " + file + "\nTitre      : " + title + "\nService    : " + service +
                           "\nDessins    : " + drawing + "\nProjection : " + projection + "\n\n";
        for (const std::string& line : variables) text += line;
        return text;
    }
};

int show(Arguments arguments, Terminal& terminal) {
    const Words words = readWords(arguments, {"le projet"});
    if (!words.fault.empty()) return refuseUsage(projectShow, words.fault, terminal);
    Cchantier project;
    project.m_cheminCht = projectPath(words.names[0]).c_str();
    Summary summary{words.names[0]};
    const int lines = VisitVariables(project, [&](const ProjectVariable& variable) {
        summary.variables.push_back(words.json ? jsonOf(variable) : lineOf(variable));
        return true;
    });
    if (lines < 0) return failProject(projectShow, words.names[0], cannotOpen, terminal);
    summary.title = valueInForce(project, "$VARCHT", "TITRE");
    summary.drawing = valueInForce(project, "$VARCHT", "DWG_DXF");
    summary.projection = valueInForce(project, "$VORTLIN", "PROJECTION");
    summary.file = project.m_cheminCht.view();
    summary.service = serviceOf(summary.file);
    terminal.output(words.json ? summary.asJson() : summary.asText());
    return exitDone;
}

/// A line as `Getvar` returns it: section, name, values.
std::string answerOf(const CStringArray& fields, bool included, bool asJson) {
    CStringArray values;
    for (int i = 2; i < fields.GetSize(); ++i) values.Add(fields[i]);
    if (!asJson) return joined(textsOf(values, false)) + '\n';
    return json::object({{"section", json::text(fields[0].view())},
                         {"name", json::text(fields[1].view())},
                         {"values", json::array(textsOf(values, true))},
                         {"included", json::truth(included)}});
}

int get(Arguments arguments, Terminal& terminal) {
    const Words words = readWords(arguments, {"le projet", "la section", "le nom"});
    if (!words.fault.empty()) return refuseUsage(projectGet, words.fault, terminal);
    Cchantier project;
    project.m_cheminCht = projectPath(words.names[0]).c_str();
    std::vector<std::string> answers;
    const int lines = VisitFoundLines(project, sectionTag(words.names[1]).c_str(), words.names[2].c_str(),
                                      [&](const CStringArray& fields, bool included) {
                                          answers.push_back(answerOf(fields, included, words.json));
                                      });
    if (lines < 0) return failProject(projectGet, words.names[0], cannotOpen, terminal);
    if (words.json) {
        terminal.output(json::array(answers) + '\n');
    } else {
        std::string text;
        for (const std::string& answer : answers) text += answer;
        terminal.output(text);
    }
    if (lines > 0) return exitDone;
    return failProject(projectGet, words.names[0], "aucune variable « " + words.names[2] + " »", terminal);
}

}  // namespace

const Command projectShow = {
    "project show", "montre un projet et ses variables",
    "Usage : kestra project show PROJET [--json]\n"
    "\n"
    "Montre le titre, le service, le format des dessins, la projection, puis chaque variable\n"
    "du projet et des fichiers qu'il inclut. Le fichier n'est pas modifié.\n"
    "\n"
    "  --json  un objet : file, title, service, drawing, projection, variables\n"
    "          (section, name, values, file, included)\n"
    "\n"
    "Code de retour : 0 ; 1 quand le projet ne peut être ouvert ; 2 ligne de commande incorrecte.\n",
    show};

const Command projectGet = {
    "project get", "donne les valeurs d'une variable",
    "Usage : kestra project get PROJET SECTION NOM [--json]\n"
    "\n"
    "Écrit une ligne par ligne trouvée, ses valeurs séparées par « ; ». Le nom peut contenir\n"
    "« * » et « ? » ; deux « * » devant lui ne cherchent que dans les fichiers inclus.\n"
    "\n"
    "  --json  un tableau d'objets : section, name, values, included\n"
    "\n"
    "Code de retour : 0 ; 1 quand la variable ou le projet est introuvable ; 2 ligne de\n"
    "commande incorrecte.\n",
    get};
