#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <dorsel/paths.h>

#include "../support/settings_folders.h"

namespace {

constexpr int pathSize = DOS::pathSize;

}  // namespace

TEST(Paths, SplitIntoDriveDirectoryNameAndExtension) {
    const struct {
        const char* path;
        int result;
        const char* parts[4];
    } cases[] = {
        {"D:\\a\\b.c", 0, {"D:", "\\a\\", "b", ".c"}},
        {"D:\\v1.2\\plan", 0, {"D:", "\\v1.2\\", "plan", ""}},
        {"d:plan.cht", 0, {"d:", "", "plan", ".cht"}},
        {"/home/x.y/.cht", 0, {"", "/home/x.y/", "", ".cht"}},
        {"", -1, {"", "", "", ""}},
        {nullptr, -1, {"", "", "", ""}},
        {"D:\\a?\\b*.c", 2, {"D:", "\\a?\\", "b*", ".c"}},
        {"D:\\a:b", 2, {"D:", "\\", "a:b", ""}},
    };
    for (const auto& row : cases) {
        char drive[4], directory[pathSize], name[pathSize], extension[pathSize];
        SCOPED_TRACE(row.path != nullptr ? row.path : "null");
        EXPECT_EQ(DOS::Controle_chemin(row.path, drive, directory, name, extension, 0), row.result);
        const char* const parts[] = {drive, directory, name, extension};
        for (int i = 0; i < 4; ++i) EXPECT_STREQ(parts[i], row.parts[i]);
        EXPECT_EQ(DOS::Controle_chemin(row.path, nullptr, nullptr, nullptr, nullptr, 0), row.result);
        EXPECT_STREQ(DOS::GetPName(row.path, "enru"),
                     (std::string(drive) + directory + name + extension).c_str());
    }
}

TEST(Paths, LongTextsAreCutAndAliasedBuffersHold) {
    const std::string path = "D:\\" + std::string(100'000, 'd') + '\\' + std::string(100'000, 'n') + '.' +
                             std::string(100'000, 'e');
    char drive[4], directoryPart[pathSize], name[pathSize], extension[pathSize];
    EXPECT_EQ(DOS::Controle_chemin(path.c_str(), drive, directoryPart, name, extension, 0), 1);
    EXPECT_EQ(std::string(extension), '.' + std::string(pathSize - 2, 'e'));
    EXPECT_EQ(std::string(DOS::GetPName(path.c_str(), "NE")), std::string(pathSize - 1, 'n'));
    EXPECT_STREQ(DOS::GetPName(DOS::GetPName("D:\\a\\b.c", "NE"), "N"), "b");
    char inPlace[pathSize] = "D:\\a\\b.c";
    EXPECT_EQ(DOS::Controle_chemin(inPlace, drive, inPlace, name, nullptr, 0), 0);
    EXPECT_STREQ(inPlace, "\\a\\");
    EXPECT_STREQ(name, "b");
}

TEST(Paths, DirectoryFinishesAFolderOrCutsAPath) {
    struct {
        const char *path, *finished, *cut;
    } const cases[] = {
        {"D:\\a\\b.c", "D:\\a\\b.c\\", "D:\\a\\"},
        {"D:\\a\\", "D:\\a\\", "D:\\a\\"},
        {"a", "a\\", ""},
        {"D:", "D:\\", "D:"},
        {"", "", ""},
    };
    for (const auto& row : cases) {
        char path[pathSize];
        EXPECT_STREQ(directory(std::strcpy(path, row.path), 1), row.finished);
        EXPECT_STREQ(directory(std::strcpy(path, row.path), 0), row.cut);
    }
    std::string full(pathSize - 1, 'a');
    EXPECT_EQ(directory(full.data(), 1), std::string(pathSize - 1, 'a'));
    EXPECT_EQ(directory(nullptr, 1), nullptr);
}

TEST(Paths, ReplaceStdDirPutsTheFolderInPlaceOfItsMarker) {
    const DorselSeg before = pvg;
    std::strcpy(pvg.localFolder, "L:\\a\\b");
    std::strcpy(pvg.networkFolder, "\\\\srv\\part\\x\\");
    struct {
        const char *path, *mode;
        int size;
        const char* result;
    } const cases[] = {
        {"..L\\f.txt", "R", 260, "L:\\a\\b\\f.txt"},
        {"..R\\..\\f", nullptr, 260, "\\\\srv\\part\\f"},
        {"..R\\..\\..\\..\\f", "L", 260, "\\\\srv\\part\\f"},
        {"..L\\..\\../..\\..f", "L", 260, "L:\\..f"},
        {"~\\f", "L", 260, "L:\\a\\b\\f"},
        {"~\\f", nullptr, 260, "~\\f"},
        {"..\\f", "L", 260, "..\\f"},
        {"..L\\f", "L", 8, "..L\\f"},
        {"..L\\f", "L", 9, "L:\\a\\b\\f"},
    };
    for (const auto& row : cases) {
        char path[pathSize];
        EXPECT_EQ(ReplaceStdDir(std::strcpy(path, row.path), row.mode, row.size), path);
        EXPECT_STREQ(path, row.result) << row.path;
    }
    char path[pathSize] = "..L\\f";
    *pvg.localFolder = '\0';
    EXPECT_STREQ(ReplaceStdDir(path, 'L', pathSize), "..L\\f");
    EXPECT_STREQ(standardFolder('l'), "");
    std::memset(pvg.localFolder, 'a', sizeof pvg.localFolder);
    EXPECT_EQ(std::strlen(standardFolder('L')), sizeof pvg.localFolder + 1);
    EXPECT_NE(*standardFolder('P'), '\0');
    EXPECT_STREQ(standardFolder('?'), "");
    pvg = before;
}

TEST(Paths, LocaliseFindsAFileAsItStandsThenAlongTheList) {
    const TemporaryFolder folder;
    for (const char* name : {"un\\a.cht", "deux\\a.cht", "deux\\Zone.MDB", "deux\\b.mdb", "deux\\c\\x.txt"})
        folder.write(name, "x");
    const std::string list =
        ";" + folder.path("absent") + "; " + folder.path("un") + " ;" + folder.path("deux\\");
    struct {
        std::string file;
        int flag;
        const char* found;
    } const cases[] = {
        {"a.cht", 0, "un\\a.cht"},
        {"c", 0, nullptr},
        {folder.path("deux\\a.cht"), 0, "deux\\a.cht"},
        {"..\\un\\a.cht", 0, "un\\a.cht"},
        {"*.mdb", 1, "deux\\b.mdb"},
        {"*.mdb", 0, nullptr},
        {"", 0, nullptr},
    };
    for (const auto& row : cases) {
        char out[pathSize] = "-";
        const char* found = DOS::Localise_fichier(out, row.file.c_str(), list.c_str(), row.flag);
        EXPECT_EQ(found, row.found != nullptr ? out : nullptr) << row.file;
        EXPECT_EQ(out, row.found != nullptr ? folder.path(row.found) : "-") << row.file;
    }
    char same[pathSize] = "a.cht";
    EXPECT_EQ(DOS::Localise_fichier(same, same, list.c_str(), 0), folder.path("un\\a.cht"));
    EXPECT_EQ(DOS::Localise_fichier(same, "a.cht", nullptr, 0), nullptr);
}

TEST(Paths, FilesAreMadeRenamedMeasuredAndDeleted) {
    const TemporaryFolder folder;
    const std::string deep = folder.path("a.b\\é\\c\\"), one = deep + "un.txt", two = deep + "deux.txt";
    EXPECT_TRUE(DOS::CreateDir(deep.c_str(), 4) != 0 && DOS::CreateDir(deep.c_str(), 4) != 0);
    folder.write("a.b\\é\\c\\un.txt", "12345");
    folder.write("a.b\\é\\c\\deux.txt", "");
    EXPECT_EQ(DOS::CreateDir((one + "\\x").c_str(), 4), 0);
    EXPECT_EQ(DOS::Taille_fichier(one.c_str()), 5);
    EXPECT_EQ(DOS::Taille_fichier(deep.c_str()), -1);
    EXPECT_EQ(DOS::Rename(one.c_str(), two.c_str(), 0), 0);
    EXPECT_NE(DOS::Rename(one.c_str(), two.c_str(), 1), 0);
    EXPECT_EQ(DOS::Taille_fichier(two.c_str()), 5);
    EXPECT_NE(DOS::Delete(two.c_str()), 0);
    EXPECT_EQ(DOS::Delete(two.c_str()) + DOS::Delete(deep.c_str()) + DOS::Delete(nullptr), 0);
    EXPECT_EQ(DOS::CreateDir("", 4), 0);
}
