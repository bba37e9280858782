#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <dorsel/paths.h>
#include <kestra/text/document_title.h>
#include <platform/document_properties.h>

#include <tests/support/document.h>
#include <tests/support/temporary_folder.h>

namespace {

using Texts = std::vector<std::string>;

/// Title, subject, comments and author, "-" for none; the result alone on failure.
Texts titlesOf(const std::string& path) {
    char* values[4] = {};
    if (GetTitreNTFS(path.c_str(), values) < 0) return {"failed"};
    Texts texts;
    for (char* value : values) {
        texts.emplace_back(value != nullptr ? value : "-");
        platform::freePropertyText(value);
    }
    return texts;
}

}  // namespace

TEST(DocumentTitle, WhatIsSetIsGotWithTheComputerAsAuthor) {
    const TemporaryFolder folder;
    const std::string file = folder.path("projet \xE9t\xE9.cht"), author = DOS::ComputerName();
    makeDocument(file);
    EXPECT_EQ(titlesOf(file), Texts{"failed"}) << "nothing is there yet";
    EXPECT_GE(SetTitreNTFS(file.c_str(), "Relev\xE9 \x80", "Sujet", nullptr), 0);
    EXPECT_EQ(titlesOf(file), (Texts{"Relev\xE9 \x80", "Sujet", "-", author}));
    EXPECT_GE(SetTitreNTFS(file.c_str(), "Autre", nullptr, "Note"), 0);
    EXPECT_EQ(titlesOf(file), (Texts{"Autre", "Sujet", "Note", author}))
        << "a null text leaves what is there";
    EXPECT_GE(SetTitreNTFS(file.c_str(), "", nullptr, std::string(2000, 'n').c_str()), 0);
    EXPECT_EQ(titlesOf(file), (Texts{"", "Sujet", std::string(2000, 'n'), author}));
}

TEST(DocumentTitle, TheSameTextsAreNotWrittenAgain) {
    const TemporaryFolder folder;
    const std::string file = folder.path("a.cht");
    makeDocument(file);
    ASSERT_GE(SetTitreNTFS(file.c_str(), "Titre", "Sujet", "Note"), 0);
    const std::int64_t written = changeTime(file);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_GE(SetTitreNTFS(file.c_str(), "Titre", nullptr, "Note"), 0);
    EXPECT_EQ(changeTime(file), written);
    EXPECT_GE(SetTitreNTFS(file.c_str(), "titre", nullptr, nullptr), 0);
    EXPECT_GT(changeTime(file), written);
}

TEST(DocumentTitle, FailuresAreNeutral) {
    const TemporaryFolder folder;
    const std::string plain = fileWithoutProperties(folder.write("simple.txt", "contenu"));
    for (const std::string& path : {folder.path("manque.cht"), folder.folder(), plain}) {
        char mark = 0;
        char* values[4] = {&mark, &mark, &mark, &mark};
        EXPECT_LT(GetTitreNTFS(path.c_str(), values), 0) << path;
        EXPECT_EQ(values[0], &mark);
        EXPECT_LT(SetTitreNTFS(path.c_str(), "a", "b", "c"), 0) << path;
    }
    EXPECT_EQ(folder.read("simple.txt"), "contenu");
    // Where the system has a limit for what it keeps beside a file, nothing is written beyond it.
    const std::string file = folder.path("b.cht");
    makeDocument(file);
    ASSERT_GE(SetTitreNTFS(file.c_str(), "Titre", nullptr, nullptr), 0);
    const Texts before = titlesOf(file);
    const bool written = SetTitreNTFS(file.c_str(), "Autre", "Sujet", std::string(100'000, 'n').c_str()) >= 0;
    EXPECT_EQ(titlesOf(file) == before, !written);
    EXPECT_TRUE(GetTitreNTFS(nullptr, nullptr) < 0 && SetTitreNTFS(nullptr, "", "", "") < 0);
}
