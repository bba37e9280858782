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
        {{"sort"}, exitUsage, "", "il manque le fichier"},
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

}  // namespace
