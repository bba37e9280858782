#include <gtest/gtest.h>

#include <filesystem>

#include <tests/support/command_answers.h>
#include <tests/support/temporary_folder.h>

namespace {

TEST(SortCommand, AnswersWithTextsAndExitCodes) {
    const TemporaryFolder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::temp_directory_path());
    const std::string file = folder.path("lignes.txt");
    const std::vector<CommandAnswer> cases = {
        {{}, exitUsage, "", "Usage : kestra COMMANDE"},
        {{"--help"}, exitDone, "trie les lignes", ""},
        {{"autre"}, exitUsage, "", "commande inconnue « autre »"},
        {{"sort", "--help"}, exitDone, "--unique", ""},
        {{"sort"}, exitUsage, "", "il manque le fichier"},
        {{"sort", file, "--vite"}, exitUsage, "", "option inconnue « --vite »"},
        {{"sort", file, "b"}, exitUsage, "", "« b » est de trop"},
        {{"sort", "--", "--absent"}, exitFailed, "", "« --absent » : fichier non trouvé ou vide"},
        {{"sort", file, "--descending", "--unique"}, exitDone, "Eliminé : aaa\nEliminé : aaa\n", ""},
        {{"sort", file}, exitDone, "2 lignes conservées\n", ""},
    };
    folder.write("lignes.txt", "aaa\r\naaa\r\nzzz\r\naaa\r\n");
    expectAnswers(cases);
    EXPECT_EQ(folder.read("lignes.txt"), "aaa\r\nzzz\r\n");
    std::filesystem::remove(".bak");
    std::filesystem::current_path(before);
}

TEST(SortCommand, ALargeFileShowsItsProgress) {
    const TemporaryFolder folder;
    const std::string file = folder.write("grand.txt", std::string(50'000'001, 'x'));
    KeptTerminal terminal;
    EXPECT_EQ(runHost(std::vector<std::string>{"sort", file}, terminal), exitDone);
    EXPECT_NE(terminal.err.find("\rTri : 100 %"), std::string::npos);
    EXPECT_EQ(terminal.out, file + " : 1 ligne conservée, fichier inchangé\n");
}

}  // namespace
