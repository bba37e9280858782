#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include <platform/faulty_files.h>
#include <platform/files.h>
#include <platform/replaceable.h>

#include "../support/memory_files.h"
#include "../support/temporary_folder.h"

using platform::FileKind;
using platform::OpenMode;
using platform::theFiles;

namespace {

/// Names of a folder; a `\` behind those of folders.
std::set<std::string> entries(const std::string& folder) {
    std::set<std::string> names;
    theFiles().list(folder.c_str(), [&](const char* name, FileKind kind) {
        names.insert(name + std::string(kind == FileKind::folder ? "\\" : ""));
        return true;
    });
    return names;
}

}  // namespace

TEST(Files, NamesMatchWithoutRegardToCaseAndStayOnTheirDrive) {
    const TemporaryFolder folder;
    folder.write("Été\\Plan.CHT", "12345");
    const std::string up = "..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\";
    const std::string drive = folder.folder().substr(0, 3), rest = folder.folder().substr(3);
    struct {
        std::string path;
        FileKind kind;
    } const cases[] = {
        {folder.path("éTÉ\\pLAN.cht"), FileKind::file},
        {folder.path("été/.\\../été\\plan.cht"), FileKind::file},
        {drive + up + rest + "été\\PLAN.cht", FileKind::file},
        {folder.path("ÉTÉ\\"), FileKind::folder},
        {drive.substr(0, 2), FileKind::folder},
        {folder.path(std::string(100'000, 'a')), FileKind::missing},
        {"", FileKind::missing},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(theFiles().kind(row.path.c_str()), row.kind) << row.path.substr(0, 300);
        EXPECT_EQ(theFiles().size(row.path.c_str()), row.kind == FileKind::file ? 5 : -1);
        EXPECT_EQ(theFiles().open(row.path.c_str(), OpenMode::read) != nullptr, row.kind == FileKind::file);
    }
    EXPECT_EQ(theFiles().open(folder.path("ÉTÉ\\PLAN.cht").c_str(), OpenMode::createNew), nullptr);
    EXPECT_NE(theFiles().open(folder.path("ÉTÉ\\PLAN.cht").c_str(), OpenMode::create), nullptr);
    EXPECT_EQ(entries(folder.path("été")), std::set<std::string>{"Plan.CHT"});
    EXPECT_EQ(theFiles().open(nullptr, OpenMode::create), nullptr);
    EXPECT_EQ(theFiles().kind(nullptr), FileKind::missing);
}

TEST(Files, RenamingReplacesOnlyWhenTold) {
    const TemporaryFolder folder;
    const std::string one = folder.write("one", "1"), two = folder.write("two", "2");
    folder.write("folder\\x", "");
    EXPECT_FALSE(theFiles().rename(one.c_str(), two.c_str(), false));
    EXPECT_TRUE(theFiles().rename(one.c_str(), two.c_str(), true));
    EXPECT_FALSE(theFiles().rename(one.c_str(), two.c_str(), true));
    EXPECT_FALSE(theFiles().rename(two.c_str(), folder.path("folder").c_str(), true));
    EXPECT_EQ(folder.read("two"), "1");
}

TEST(Files, AbsoluteFormsAreResolvedByTheirText) {
    const std::pair<const char*, const char*> cases[] = {
        {"D:\\a\\.\\b\\..\\c", "D:\\a\\c"},
        {"D:\\..\\..\\x", "D:\\x"},
        {"\\\\srv\\part\\a\\..\\", "\\\\srv\\part\\"},
        {"", ""},
    };
    for (const auto& [path, absolute] : cases) EXPECT_EQ(theFiles().absolute(path), absolute) << path;
    const std::string relative = theFiles().absolute("a\\..\\b.txt");
    EXPECT_EQ(relative, theFiles().absolute("b.txt"));
    EXPECT_TRUE(relative.ends_with("b.txt") && relative.size() > 6) << relative;
    EXPECT_EQ(theFiles().absolute(nullptr), "");
    for (const std::string& ended : {theFiles().programFolder(), theFiles().temporaryFolder()})
        EXPECT_TRUE(platform::isSeparator(ended.back())) << ended;
}

#ifndef _WIN32
TEST(Files, NewNamesAreFoundAtOnceAndMissesStayCheap) {
    const TemporaryFolder folder;
    for (int i = 0; i < 2000; ++i) folder.write("full\\f" + std::to_string(i), "");
    for (int i = 0; i < 3; ++i) {
        const std::string made = folder.write("full\\m", ""), otherCase = folder.path("full\\M");
        EXPECT_EQ(theFiles().kind(otherCase.c_str()), FileKind::file);
        EXPECT_TRUE(theFiles().remove(otherCase.c_str()));
        EXPECT_EQ(theFiles().kind(made.c_str()), FileKind::missing);
    }
}

TEST(Files, DrivesAndSharesLieBelowTheDriveRoot) {
    const TemporaryFolder folder;  // puts a drive root of its own in force
    const std::filesystem::path root = std::getenv("KESTRA_DRIVES");
    EXPECT_TRUE(theFiles().createFolder("\\\\Srv\\Part\\Été"));
    EXPECT_TRUE(std::filesystem::is_directory(root / "unc/Srv/Part/\xC3\x89t\xC3\xA9"));
    EXPECT_EQ(theFiles().kind("\\\\SRV\\part\\..\\ÉTÉ"), FileKind::folder);
    EXPECT_EQ(theFiles().kind((root.string() + "\\C").c_str()), FileKind::folder);
    EXPECT_EQ(theFiles().kind((root.string() + "/C").c_str()), FileKind::missing);
    EXPECT_EQ(theFiles().absolute((root.string() + "\\C\\").c_str()), root.string() + "/c/");
    std::filesystem::remove_all(root / "unc");
}
#endif

TEST(Files, PositionsBeyondTheEndAndBeforeTheStart) {
    const TemporaryFolder folder;
    const auto file = theFiles().open(folder.path("f").c_str(), OpenMode::createNew);
    ASSERT_NE(file, nullptr);
    char bytes[8] = {};
    EXPECT_TRUE(file->writeAt(2, "abc", 3));
    EXPECT_TRUE(file->writeAt(0, nullptr, 0));
    EXPECT_EQ(file->readAt(1, bytes, 8), 4);
    EXPECT_EQ(std::string(bytes, 4), std::string("\0abc", 4));
    EXPECT_EQ(file->readAt(500, bytes, 8), 0);
    EXPECT_EQ(file->readAt(-1, bytes, 8), -1);
    EXPECT_FALSE(file->writeAt(-1, "x", 1));
    EXPECT_TRUE(file->truncate(3));
    EXPECT_EQ(file->size(), 3);
    EXPECT_TRUE(file->lock(0));
    const auto other = theFiles().open(folder.path("f").c_str(), OpenMode::update);
    EXPECT_FALSE(other->lock(5));
    EXPECT_EQ(other->readAt(0, bytes, 8), 3);
}

TEST(Files, WholeFilesAreReplacedOrLeftAsTheyWere) {
    namespace fs = std::filesystem;
    const TemporaryFolder folder;
    const std::string path = folder.write("f.ini", "old");
    for (long n = 1; n < 12; ++n) {
        folder.write("f.ini", "old");
        platform::FaultyFiles faulty(theFiles());
        faulty.failAtCall(n);
        const bool replaced = [&] {
            const platform::Replaced inForce(platform::replaceFiles, faulty);
            return platform::replaceWholeFile(path.c_str(), "new");
        }();
        EXPECT_EQ(folder.read("f.ini"), replaced ? "new" : "old") << n;
        EXPECT_EQ(entries(folder.folder()).size(), 1u) << n;
    }
    EXPECT_FALSE(platform::createWholeFile(path.c_str(), "other"));
    EXPECT_FALSE(platform::replaceWholeFile(folder.folder().c_str(), "x") ||
                 platform::replaceWholeFile(nullptr, "x"));
    EXPECT_TRUE(platform::createWholeFile(folder.path("g").c_str(), "other"));
    std::string content = "kept";
    EXPECT_FALSE(platform::readWholeFile(path.c_str(), content, 2) ||
                 platform::readWholeFile(folder.path("absent").c_str(), content));
    EXPECT_EQ(content, "kept");
#ifdef _WIN32
    fs::permissions(path, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    EXPECT_FALSE(platform::replaceWholeFile(path.c_str(), "x"));
    EXPECT_EQ(folder.read("f.ini"), "new");
    EXPECT_EQ(entries(folder.folder()), (std::set<std::string>{"f.ini", "g"}));
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
#else
    const fs::path disk = fs::path(std::getenv("KESTRA_DRIVES")) / "c" /
                          folder.folder().substr(3, folder.folder().size() - 4) / "f.ini";
    fs::permissions(disk, fs::perms(0640));
    EXPECT_TRUE(platform::replaceWholeFile(path.c_str(), "x"));
    EXPECT_EQ(fs::status(disk).permissions(), fs::perms(0640));
#endif
}

TEST(Files, AReplacedFileIsOnTheDiskBeforeItHasItsName) {
    for (unsigned seed = 1; seed < 20; ++seed) {
        MemoryFiles files;
        const platform::Replaced inForce(platform::replaceFiles, files);
        files.put("C:\\f", "old");
        EXPECT_TRUE(platform::replaceWholeFile("C:\\f", "new"));
        files.cutPower(seed);
        std::string content;
        EXPECT_TRUE(platform::readWholeFile("C:\\f", content));
        EXPECT_EQ(content, "new");
    }
}
