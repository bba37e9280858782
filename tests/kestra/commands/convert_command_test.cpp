#include <gtest/gtest.h>

#include <platform/faulty_files.h>
#include <platform/replaceable.h>

#include <tests/support/kept_terminal.h>
#include <tests/support/settings_folders.h>

using Words = std::vector<std::string>;

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
    const std::string in = folder.write("in.csv", text), out = folder.path("out.csv");
    const Words command = {"convert", "--from=L-93", "--to=LZ93-CC49", "--output", out, in};
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
    const std::string from = "--from=L-IIE", to = "--to=L-93";
    const struct {
        Words arguments;
        int exitCode;
        const char* err;
    } cases[] = {
        {{from, to, good}, exitDone, "Précision au point le plus défavorable : 2 m\n"},
        {{from, to, "--round-trip", good}, exitDone, "Aller-retour : écart 0.00"},
        {{"--from", "L-IIE", "--to", "L-93", bad}, exitFailed, "ligne 2 : colonne absente\n"},
        {{"--from=II grille absente", to, good}, exitFailed, "absente.txt INTROUVABLE"},
        {{from, to, "--alti-from", "nulle.mnt", good}, exitFailed, "nulle.mnt INUTILISABLE"},
        {{from, to, folder.path("none.csv")}, exitFailed, "ne peut être lu\n"},
        {{from, "--to=L-99", good}, exitUsage, "projection inconnue : L-99"},
        {{"--columns", "1,1", good}, exitUsage, "valeur incorrecte « 1,1 » de « --columns »"},
    };
    int number = 0;
    for (const auto& c : cases) {
        Words command = {"convert", "--output", folder.path(std::to_string(number++) + ".out")};
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
    EXPECT_EQ(runHost(Words{"convert", from, to, "--output", folder.path("full.out"), good}, terminal),
              exitFailed);
    EXPECT_NE(terminal.err.find("écriture impossible"), std::string::npos) << terminal.err;
}
