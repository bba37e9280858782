#include <gtest/gtest.h>

#include <string>

#include <dorsel/paths.h>
#include <dorsel/settings.h>
#include <platform/faulty_files.h>
#include <platform/replaceable.h>

#include "../support/settings_folders.h"

using namespace std::string_view_literals;

namespace {

std::string text(const char* source, const char* section, const char* mode, const char* key) {
    char out[5000];
    const int length = gets_ini(source, section, mode, key, out, sizeof out);
    EXPECT_EQ(length, static_cast<int>(std::strlen(out)));
    return out;
}

}  // namespace

TEST(Settings, TextsAreFoundAsTheFormatSays) {
    const SettingsFolders folders;
    folders.local("torel",
                  "\xEF\xBB\xBF"
                  "before=any\n[ General ] rest\r\n  CODSOC = Géomètre & Fils \r\n;Société=no\nÉTAT=a=b\n"
                  "DirCht=D:\\a\n[Autre]\nDirCht=X\n[\nbad line\n=no key\n[GENERAL]\ndircht = E:\\b;F:\\c\r\n"
                  "Vide=\nNul=ab\0cd\nLast=no end"sv);
    struct {
        const char *section, *key, *value;
    } const cases[] = {
        {"general", "codsoc", "Géomètre & Fils"},
        {"General", "DIRCHT", "D:\\a;E:\\b;F:\\c"},
        {"General", "Vide", ""},
        {"General", "Nul", "ab"},
        {"General", "before", ""},
        {"General", ";Société", ""},
        {"General", nullptr, "CODSOC;ÉTAT;DirCht;Vide;Nul;Last"},
        {nullptr, "CODSOC", ""},
    };
    for (const auto& row : cases) EXPECT_EQ(text("TOREL", row.section, "l", row.key), row.value);
    char out[8] = "-------";
    EXPECT_EQ(gets_ini("torel", "general", "l", "codsoc", out, 8), 7);
    EXPECT_STREQ(out, "Géomètr");
    EXPECT_EQ(gets_ini("torel", "general", "l", "codsoc", out, 1), 0);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(gets_ini(nullptr, "general", "l", "codsoc", out, 8), 0);
}

TEST(Settings, FoldersAreTriedInTheOrderOfTheMode) {
    const SettingsFolders folders;
    folders.local("a", "[s]\nk=local\nvide=\n");
    folders.network("a", "[s]\nk=network\nn=only\nvide=no\n[t]\nx=1\n");
    const struct {
        const char *section, *mode, *key, *value;
    } cases[] = {
        {"s", "lr", "k", "local"}, {"s", "RL", "k", "network"},    {"s", "?Plr", "n", "only"},
        {"s", "lr", "vide", ""},   {"s", "lr", nullptr, "k;vide"}, {"t", "lr", nullptr, "x"},
        {"s", "l", "n", ""},       {"s", nullptr, "k", ""},
    };
    for (const auto& row : cases)
        EXPECT_EQ(text("a", row.section, row.mode, row.key), row.value) << &row - cases;
    char out[20];
    const std::string path = folders.folder().path("network\\ini\\A.INI");
    EXPECT_EQ(DOS::Gets_ini(path.c_str(), "s", "", "k", out, 20), 7);
    EXPECT_STREQ(out, "network");
    EXPECT_EQ(DOS::Gets_ini("a", "s", "LR", "k", out, 20), 5);
}

TEST(Settings, NumbersHavePointOrComma) {
    struct {
        const char* text;
        int read;
        double value;
    } const cases[] = {
        {"12", 1, 12},     {"-1,5", 1, -1.5},     {"+.25x", 1, 0.25}, {"1e3", 1, 1000}, {"1.5e+;2", 1, 1.5},
        {"2,E-1", 1, 0.2}, {"1.234,5", 1, 1.234}, {"inf", 0, -7},     {"nan", 0, -7},   {"x1", 0, -7},
        {"", 0, -7},       {",", 0, -7},          {"+-1", 0, -7},     {"1e999", 0, -7}, {"0x10", 1, 0},
    };
    const SettingsFolders folders;
    for (const auto& row : cases) {
        folders.local("n", std::string("[s]\nk= ") + row.text + "\n");
        double value = -7;
        EXPECT_EQ(getr_ini("n", "s", "l", "k", &value), row.read) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
        EXPECT_EQ(DOS::Getr_ini("n", "s", "l", "k", &value), row.read);
    }
    double value = -7;
    EXPECT_EQ(getr_ini("n", "s", "l", nullptr, &value), 0);
    EXPECT_EQ(getr_ini("n", "s", "l", "k", nullptr), 0);
}

TEST(Settings, ListsAreAllocatedAndFreed) {
    const SettingsFolders folders;
    folders.network("torel", "[General]\nDirCht= D:\\a ; ;E:\\b;\nDirCht=F:\\c\nDirCht=\n");
    folders.network("autre", "[General]\nDirCht=G:\n");
    char* list = nullptr;
    EXPECT_STREQ(DOS::Alloc_ini(&list, "General", "LR", "DirCht", nullptr), "D:\\a;E:\\b;F:\\c");
    EXPECT_STREQ(DOS::Alloc_ini(&list, "General", "LR", "DirCht", "autre"), "G:");
    EXPECT_STREQ(DOS::Alloc_ini(&list, "General", "LR", "Absent", nullptr), "");
    DOS::Free_ini(&list);
    EXPECT_EQ(list, nullptr);
    DOS::Free_ini(&list);
    DOS::Free_ini(nullptr);
    EXPECT_EQ(DOS::Alloc_ini(nullptr, "General", "LR", "DirCht", nullptr), nullptr);
}

TEST(Settings, WritingKeepsEveryOtherLineByteForByte) {
    struct {
        const char *before, *section, *key, *value, *after;
    } const cases[] = {
        {"; c\n[s]\n  K = old  \n x\n", "S", "k", "new", "; c\n[s]\n  K = new\n x\n"},
        {"[s]\r\na=1\r\n\r\n[t]\r\nb=2", "s", "c", "3", "[s]\r\na=1\r\nc=3\r\n\r\n[t]\r\nb=2"},
        {"[t]\nb=2", "t", "c", "3", "[t]\nb=2\nc=3\n"},
        {"[t]\nb=2", "s", "b", "3", "[t]\nb=2\n[s]\nb=3\n"},
        {"[t", "s", "b", "3", "[t\r\n[s]\r\nb=3\r\n"},
        {"", "s", "b", "3", "[s]\r\nb=3\r\n"},
        {"[s]\nk=1\nx\nk=2\n[t]\nk=3\n[s]\nK=4\n", "s", "k", "5", "[s]\nk=5\nx\n[t]\nk=3\n[s]\n"},
        {"[s]\nk=1\nx=2\n", "s", "k", nullptr, "[s]\nx=2\n"},
        {"[s]\nk=\n", "s", "k", "one\r\n[two]", "[s]\nk=one\n"},
    };
    const SettingsFolders folders;
    for (const auto& row : cases) {
        folders.local("w", row.before);
        EXPECT_EQ(sets_ini("w", row.section, "l", row.key, row.value), 1) << row.before;
        EXPECT_EQ(folders.local("w"), row.after);
    }
    const char* const refused[][2] = {{"a]", "k"}, {"a\nb", "k"}, {"s", "k=1"},  {"s", ";k"},
                                      {"s", "[k"}, {"s", ""},     {nullptr, "k"}};
    for (const auto& row : refused) EXPECT_EQ(sets_ini("w", row[0], "l", row[1], "v"), 0) << row[1];
    EXPECT_EQ(folders.local("w"), cases[std::size(cases) - 1].after);
}

TEST(Settings, WritingChoosesTheFileThatHoldsTheKey) {
    const SettingsFolders folders;
    EXPECT_EQ(sets_ini("new", "s", "lr", "k", nullptr), 1);
    folders.network("both", "[s]\nn=1\n");
    for (const char* key : {"k", "n"}) {
        EXPECT_EQ(sets_ini("new", "s", "lr", key, "2"), 1);
        EXPECT_EQ(sets_ini("both", "s", "lr", key, "2"), 1);
    }
    EXPECT_EQ(folders.local("new"), "[s]\r\nk=2\r\nn=2\r\n");
    EXPECT_EQ(folders.network("both"), "[s]\nn=2\nk=2\n");
    EXPECT_EQ(sets_ini("new", "s", "?", "k", "1"), 0);
    folders.folder().write("local\\ini\\folder.ini\\x", "");
    EXPECT_EQ(sets_ini("folder", "s", "l", "k", "1"), 0);
}

TEST(Settings, FailureAtAnyCallLeavesTheFileWhole) {
    const SettingsFolders folders;
    const std::string before = "[s]\r\nk=old\r\n", after = "[s]\r\nk=new\r\n";
    long failures = 0;
    for (const bool powerCut : {false, true}) {
        for (long n = powerCut ? 0 : 1;; ++n) {
            ASSERT_LT(n, 100);
            folders.local("f", before);
            platform::FaultyFiles faulty(platform::theFiles());
            powerCut ? faulty.stopAfterWrites(n) : faulty.failAtCall(n);
            const int written = [&] {
                const platform::Replaced inForce(platform::replaceFiles, faulty);
                return sets_ini("f", "s", "l", "k", "new");
            }();
            EXPECT_EQ(folders.local("f"), written != 0 ? after : before) << n;
            failures += written == 0;
            if (powerCut ? !faulty.stopped() : faulty.calls() < n) break;
        }
    }
    EXPECT_GE(failures, 8);
    folders.local("big", "[s]\n" + std::string(64 * 1024 * 1024, '\n'));
    EXPECT_EQ(sets_ini("big", "s", "l", "k", "1"), 0);
}
