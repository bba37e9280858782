#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include <kestra/containers/file_sort.h>
#include <platform/faulty_files.h>
#include "../../support/file_sort_check.h"
#include "../../support/recorders.h"
#include "../../support/temporary_folder.h"

namespace {

/// A folder that is the current one while the test runs: the backup goes there.
class FileSort : public testing::Test {
  protected:
    FileSort() : startedIn(std::filesystem::current_path()) {
        place = std::filesystem::temp_directory_path() /
                ("kestra_sort_" + std::to_string(std::random_device()()));
        std::filesystem::create_directories(place);
        std::filesystem::current_path(place);
    }
    ~FileSort() override {
        std::filesystem::current_path(startedIn);
        std::filesystem::remove_all(place);
    }
    static std::string content(const char* path) {
        std::string bytes = "(missing)";
        platform::readWholeFile(path, bytes);
        return bytes;
    }
    std::string putAnew(const std::string& bytes) const {
        std::filesystem::remove(".bak");
        return folder.write("lignes.txt", bytes);
    }
    TemporaryFolder folder;
    std::filesystem::path startedIn, place;
};

TEST_F(FileSort, ModesOrderDropAndReport) {
    const struct {
        const char* content;
        int mode, unique, result;
        const char *sorted, *reported;
    } cases[] = {
        {"ccc\r\nb\r\naa\r\na\r\n", 0, 0, 2, "aa\r\nccc\r\n", ""},
        {"a\nbb\nc\ndd\n", 1, 0, 0, nullptr, ""},
        {"x10\nx20\nx10", -2, 0, 2, "x20\nx10\n", "\nElimin\xE9 : x10 "},
        {"x10\nx20\nx10\nx10", 1, 1, 2, "x10\nx20\n", "\nElimin\xE9 : x10 \nElimin\xE9 : x10 "},
        {"\xE9lan\nzoo\nabcd", 1, 0, 3, "abcd\nzoo\n\xE9lan\n", ""},
        {"records.records.", 8, 0, 0, nullptr, ""},
        {"zz\naaa\n", 2, 1, 1, nullptr, ""},
    };
    for (const auto& c : cases) {
        const std::string file = folder.write("lignes.txt", c.content);
        testing::internal::CaptureStdout();
        EXPECT_EQ(tri_de_fichier(file.c_str(), c.mode, c.unique), c.result) << c.content;
        std::string reported = testing::internal::GetCapturedStdout();
        std::erase(reported, '\r');
        EXPECT_EQ(reported, c.reported) << c.content;
        EXPECT_EQ(folder.read("lignes.txt"), c.sorted != nullptr ? c.sorted : c.content);
        if (c.sorted != nullptr) {
            EXPECT_EQ(content(".bak"), c.content);
        }
    }
}

TEST_F(FileSort, MissingAndShortFilesAreShownAndGive1) {
    for (const char* bytes : {"", "a", "abcd"}) {
        RecordingPrompt prompt;
        const platform::Replaced shown(platform::replacePrompt, prompt);
        EXPECT_EQ(tri_de_fichier(folder.write("court.txt", bytes).c_str(), 8, 0), 1);
        EXPECT_EQ(tri_de_fichier(folder.path("absent.txt").c_str(), 1, 0), 1);
        EXPECT_EQ(tri_de_fichier(nullptr, 1, 0), 1);
        EXPECT_EQ(prompt.texts, std::vector<std::string>(3, "fichier non trouv\xE9 ou Vide"));
        EXPECT_EQ(folder.read("court.txt"), bytes);
    }
}

TEST_F(FileSort, AnswersByTheRulesForRandomContents) {
    const std::string letters("ab\n\r\0\xE9", 6);
    for (unsigned seed = 0; seed < 400; ++seed) {
        std::mt19937 random(seed);
        std::string bytes;
        const std::string common(random() % 40, 'c');
        for (std::size_t size = random() % 3000; bytes.size() < size;) {
            bytes += random() % 4 == 0 ? common : std::string();
            bytes += letters[random() % (random() % 8 == 0 ? 6 : 3)];
        }
        ASSERT_TRUE(fileSortAnswersByTheRules(bytes, seed % 2 != 0, seed % 4 >= 2)) << "seed " << seed;
    }
}

TEST_F(FileSort, LongLinesAreSortedWhole) {
    const std::string long1(3'000'000, 'x'), long2 = long1 + "a", line = "court";
    const std::string file = folder.write("longues.txt", long2 + '\n' + long1 + '\n' + line);
    EXPECT_EQ(tri_de_fichier(file.c_str(), 1, 0), 3);
    EXPECT_TRUE(folder.read("longues.txt") == line + '\n' + long1 + '\n' + long2 + '\n');
}

/// Content large enough for several writes.
std::string manyLines() {
    std::string content;
    for (int i = 0; i < 120'000; ++i)
        content += "ligne " + std::to_string(i * 7919 % 120'000) + " du fichier\n";
    return content;
}

TEST_F(FileSort, APowerCutAtAnyWriteLeavesThePreviousContentInFull) {
    const std::string before = manyLines();
    const std::string after = sortByTheRules(before, false, false).file;
    bool finished = false;
    for (long writes = 0; !finished; ++writes) {
        const std::string file = putAnew(before);
        platform::FaultyFiles faulty(platform::theFiles());
        faulty.stopAfterWrites(writes);
        {
            const platform::Replaced inForce(platform::replaceFiles, faulty);
            tri_de_fichier(file.c_str(), 1, 0);
        }
        finished = !faulty.stopped();
        const std::string own = content(file.c_str()), backup = content(".bak");
        ASSERT_TRUE(own == before || backup == before) << writes;
        ASSERT_TRUE(own == before || own == after || own == "(missing)") << writes;
        ASSERT_LT(writes, 100);
    }
    EXPECT_EQ(folder.read("lignes.txt"), after);
}

TEST_F(FileSort, AFullDiskAndEachFailingCallLeaveThePreviousContent) {
    const std::string before = manyLines();
    for (long call = 0; call <= 12; ++call) {
        RecordingPrompt prompt;
        const platform::Replaced shown(platform::replacePrompt, prompt);
        const std::string file = putAnew(before);
        platform::FaultyFiles faulty(platform::theFiles());
        faulty.failAtCall(call);
        faulty.diskFull(call == 0);
        const platform::Replaced inForce(platform::replaceFiles, faulty);
        const auto outcome = kestra::sortLines({file.c_str(), false, false, nullptr, nullptr}).outcome;
        const bool sorted = outcome == kestra::LineSortOutcome::sorted;
        EXPECT_EQ(content(file.c_str()) == before, !sorted) << call;
        EXPECT_TRUE(!sorted || content(".bak") == before) << call;
        EXPECT_TRUE(call != 0 || outcome == kestra::LineSortOutcome::notWritten);
        int others = 0;
        platform::theFiles().list(folder.path("").c_str(), [&](const char* name, platform::FileKind) {
            others += std::string_view(name) != "lignes.txt";
            return true;
        });
        EXPECT_EQ(others, 0) << "a draft stays behind call " << call;
    }
}

}  // namespace
