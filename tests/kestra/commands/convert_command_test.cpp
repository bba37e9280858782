#include <gtest/gtest.h>

#include <platform/faulty_files.h>
#include <platform/replaceable.h>

#include <tests/support/kept_terminal.h>
#include <tests/support/settings_folders.h>

TEST(ConvertCommand, LinesOfAnyLengthPassAsBytes) {
    const TemporaryFolder folder;
    const std::string tail = ";" + std::string(3'000'000, 'x') + "\r\n";
    std::string text, expected;
    for (int i = 0; i < 3; ++i) {
        text += "652381.123;6862047.5" + tail;
        expected += "1652379.9710;8184269.1390" + tail;
    }
    const std::string last = ';' + std::string(300'000, 'y');
    text += "652381.123;6862047.5" + last;
    expected += "1652379.9710;8184269.1390" + last;
    const std::vector<std::string> command = {"convert",
                                              "--from",
                                              "L-93",
                                              "--to",
                                              "LZ93-CC49",
                                              "--output",
                                              folder.path("out.csv"),
                                              folder.write("in.csv", text)};
    KeptTerminal terminal;
    EXPECT_EQ(runHost(command, terminal), exitDone) << terminal.err;
    EXPECT_TRUE(folder.read("out.csv") == expected);
    EXPECT_NE(terminal.err.find("4 points convertis, 0 lignes en erreur sur 4\n"), std::string::npos)
        << terminal.err;
    EXPECT_EQ(runHost(command, terminal), exitFailed) << "an output that exists is left";
    EXPECT_TRUE(folder.read("out.csv") == expected);
}

TEST(ConvertCommand, AnswersWithReportsAndExitCodes) {
    const SettingsFolders settings;
    settings.local("projections", "[PROJECTIONS]\nII grille absente=COMME=L-IIE;GRILLE=absente.txt\n");
    const TemporaryFolder& folder = settings.folder();
    const std::string good = folder.write("good.csv", "600000;2200000;10\n");
    const std::string bad = folder.write("bad.csv", "600000;2200000;10\n600000\n");
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        const char* err;
    } cases[] = {
        {{"--from", "L-IIE", "--to", "L-93", good},
         exitDone,
         "Précision au point le plus défavorable : 2 m\n"},
        {{"--from", "L-IIE", "--to", "L-93", "--round-trip", good}, exitDone, "Aller-retour : écart 0.00"},
        {{"--from", "L-IIE", "--to", "L-93", bad}, exitFailed, "ligne 2 : colonne absente\n"},
        {{"--from", "II grille absente", "--to", "L-93", good}, exitFailed, "absente.txt INTROUVABLE"},
        {{"--from", "L-IIE", "--to", "L-93", "--alti-from", "nulle.mnt", good},
         exitFailed,
         "nulle.mnt INUTILISABLE"},
        {{"--from", "L-IIE", "--to", "L-93", folder.path("none.csv")}, exitFailed, "ne peut être lu\n"},
        {{"--from", "L-IIE", good}, exitUsage, "--from et --to sont nécessaires"},
        {{"--from", "L-IIE", "--to", "L-99", good}, exitUsage, "projection inconnue : L-99"},
        {{"--from", "L-IIE", "--to", "L-93"}, exitUsage, "il manque le fichier"},
        {{"--from", "L-IIE", "--to", "L-93", good, good}, exitUsage, "est de trop"},
        {{"--from", "L-IIE", "--to"}, exitUsage, "valeur absente"},
        {{"--columns", "1,1", good}, exitUsage, "valeur incorrecte « 1,1 » de « --columns »"},
        {{"--decimals", "99", good}, exitUsage, "valeur incorrecte « 99 » de « --decimals »"},
        {{"--separator", "ab", good}, exitUsage, "valeur incorrecte « ab » de « --separator »"},
    };
    int number = 0;
    for (const auto& c : cases) {
        std::vector<std::string> command = {"convert", "--output",
                                            folder.path(std::to_string(number++) + ".out")};
        command.insert(command.end(), c.arguments.begin(), c.arguments.end());
        KeptTerminal terminal;
        EXPECT_EQ(runHost(command, terminal), c.exitCode) << terminal.err;
        EXPECT_NE(terminal.err.find(c.err), std::string::npos) << terminal.err;
    }
    EXPECT_EQ(folder.read("2.out"), "649399.4198;6633524.5740;10\n# ligne 2 : colonne absente : 600000\n");

    platform::FaultyFiles full(platform::theFiles());
    full.diskFull(true);
    const platform::Replaced inForce(platform::replaceFiles, full);
    KeptTerminal terminal;
    EXPECT_EQ(runHost(std::vector<std::string>{"convert", "--from", "L-IIE", "--to", "L-93", "--output",
                                               folder.path("full.out"), good},
                      terminal),
              exitFailed);
    EXPECT_NE(terminal.err.find("écriture impossible"), std::string::npos) << terminal.err;
}

TEST(ProjectionsCommand, ListsEverySystemWithItsSource) {
    const SettingsFolders settings;
    KeptTerminal terminal;
    EXPECT_EQ(runHost(std::vector<std::string>{"projections"}, terminal), exitDone);
    for (const char* part :
         {"L-I  :", "LZ93-CC50:", "GEO-NTF:", "EPSG 2154", "aucune zone officielle", "-168 -60 +320"})
        EXPECT_NE(terminal.out.find(part), std::string::npos) << part;
    EXPECT_EQ(runHost(std::vector<std::string>{"projections", "x"}, terminal), exitUsage);
}
