#include <gtest/gtest.h>

#include <platform/files.h>

#include <tests/support/command_answers.h>
#include "../../support/settings_folders.h"

namespace {

TEST(ProjectCommand, ASessionOfATechnician) {
    const SettingsFolders settings;
    settings.local("services", "1000;1999;D:\\SERV\\;x\r\n");
    const auto& folder = settings.folder();
    const std::string p =
        folder.write("aff\\p.cht", "note\r\n$VARCHT;TITRE;Été \"2\"\r\n$VARCHT;REF;..\\x\r\nCHTIVAR;c\r\n");
    folder.write("aff\\c.cht", "$VARCHT;COMMUNE;24\r\n");
    const std::string bare = p.substr(0, p.size() - 4), file = "aff\\p.cht";
    const char commune[] =
        "[{\"section\":\"$VARCHT\",\"name\":\"COMMUNE\",\"values\":[\"24\"],\"included\":true}]\n";
    const std::vector<CommandAnswer> cases = {
        {{"project"}, exitUsage, "", "Usage : kestra project COMMANDE"},
        {{"project", "--help"}, exitDone, "compact      retire les lignes supprimées", ""},
        {{"project", "set", "--help"}, exitDone, "Usage : kestra project set", ""},
        {{"project", "fly"}, exitUsage, "", "kestra project : commande inconnue « fly »"},
        {{"project", "get", p, "VARCHT"}, exitUsage, "", "il manque le nom"},
        {{"project", "get", p, "a", "b", "c"}, exitUsage, "", "« c » est de trop"},
        {{"project", "get", p, "a", "b", "--x"}, exitUsage, "", "option inconnue « --x »"},
        {{"project", "get", bare, "VARCHT", "TITRE"}, exitDone, "Été \"2\"\n", ""},
        {{"project", "get", p, "VARCHT", "COMMUNE", "--json"}, exitDone, commune, ""},
        {{"project", "get", p, "VARCHT", "NONE"}, exitFailed, "", "aucune variable « NONE »"},
        {{"project", "get", bare + "q", "VARCHT", "X"}, exitFailed, "", "introuvable"},
        {{"project", "set", p, "VARCHT", "X", "a;b", "-1"}, exitDone, p + " : 1 ligne écrite\n", ""},
        {{"project", "set", p, "VARCHT", "X", "--json", "--", "--help"}, exitDone, "{\"lines\":1}\n", ""},
        {{"project", "set", p, "VARCHT", "X", "a+"}, exitUsage, "", "ne se relirait pas"},
        {{"project", "set", p, "VARCHT", "X*", "a"}, exitUsage, "", "ne se relirait pas"},
        {{"project", "set", bare + "q", "VARCHT", "X", "a"}, exitFailed, "", "introuvable"},
        {{"project", "show", p}, exitDone, "$VARCHT;COMMUNE;24   (c.cht)\n", ""},
        {{"project", "show", p, "--json"}, exitDone, "\"title\":\"Été \\\"2\\\"\",\"service\":\"\"", ""},
        {{"project", "rename", p, "VARCHT", "X", "TROP"}, exitUsage, "", "longueur"},
        {{"project", "rename", p, "VARCHT", "X", "VORTLI"}, exitDone, "1 ligne changée", ""},
        {{"project", "delete", p, "VORTLI", "X"}, exitDone, "1 ligne supprimée", ""},
        {{"project", "delete", p, "VORTLI", "X"}, exitFailed, "", "aucune variable"},
        {{"project", "compact", p, "--json"}, exitDone, "{\"lines\":1}\n", ""},
        {{"project", "create", folder.path("neuf"), p}, exitDone, "neuf.CHT : 2 lignes écrites\n", ""},
        {{"project", "create", folder.path("neuf"), p}, exitFailed, "", "existe déjà"},
        {{"project", "create", folder.path("a.b\\neuf"), p}, exitUsage, "", "pas de point"},
        {{"project", "create", folder.path("neuf"), bare + "q"}, exitFailed, "", "modèle introuvable"},
        {{"project", "move", p, folder.path("là\\bas"), "--json"}, exitDone, "là\\\\bas\\\\p.cht\"}\n", ""},
        {{"project", "move", folder.path("neuf"), folder.path("")}, exitFailed, "", "existe déjà"},
        {{"service", "A1234-B"}, exitDone, "D:\\SERV\\1234\\\n", ""},
        {{"service", "1234", "--json"}, exitDone, "\"1234\",\"folder\":\"D:\\\\SERV\\\\1234\\\\\"}\n", ""},
        {{"service", "9"}, exitFailed, "", "aucun dossier pour ce code"},
    };
    expectAnswers(cases);
    EXPECT_EQ(platform::theFiles().kind(p.c_str()), platform::FileKind::missing);
    const std::string moved = folder.read("là\\bas\\p.cht");
    EXPECT_EQ(moved.substr(0, moved.find("$VARCHT;MAJDIRCHT")),
              "note\r\n$VARCHT;TITRE;Été \"2\"\r\n$VARCHT;REF;..\\x\r\nCHTIVAR;c\r\n");
    KeptTerminal terminal;
    platform::theFiles().remove(folder.path("local\\ini\\services.ini").c_str());
    EXPECT_EQ(runHost(std::vector<std::string>{"service", "1"}, terminal), exitFailed);
    EXPECT_TRUE(terminal.err.starts_with("**** VOUS devez Creer un fichier"));
}

}  // namespace
