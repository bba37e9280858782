#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include <dorsel/strings.h>
#include <kestra/project/chantier.h>
#include <kestra/project/writing/written_line.h>

#include "../../support/recorders.h"
#include "../../support/temporary_folder.h"

namespace {

/// A project in a folder of its own, written to.
class Setvar : public testing::Test {
  protected:
    void SetUp() override { m_project.m_cheminCht = m_folder.path("a.cht").c_str(); }
    std::string read(const char* name) {
        CStringArray out;
        std::string all = std::to_string(m_project.Getvar("$VARCHT", name, 0, out));
        for (int i = 2; i < out.GetSize(); ++i) all.append("|").append(out[i].view());
        return all;
    }
    TemporaryFolder m_folder;
    Cchantier m_project;
};

CStringArray fieldsOf(const std::vector<std::string>& texts) {
    CStringArray fields;
    for (const std::string& text : texts) fields.Add(CString(text));
    return fields;
}

TEST_F(Setvar, WritesTheDescribedBytes) {
    const std::string n = "note\r\n", x = "$VARCHT;X;", z = "$VARCHT;Z;9\r\n", big(100'000, 'v');
    struct {
        const char *what, *name;
        std::string values, before, after;
        int result = 2;
    } const cases[] = {
        {"same length", "x", "two", n + "$varcht;X;one\r\n" + z, n + x + "two\r\n" + z},
        {"shorter: blanks before the line end", "X", "", n + x + "one\n" + z, n + x + "  \r\n" + z},
        {"longer: what follows moves", "X", "a;b", n + x + "\r\n" + z, n + x + "a;b\r\n" + z, 3},
        {"appended without a line end", "X", "1", "a long last line", "a long last line\r\n" + x + "1\r\n"},
        {"appended before an end-of-file mark", "X", "1", "note\x1A", n + x + "1\r\n"},
        {"Kept: a last line of three characters", "X", "1", n + "abc\r\n", n + "abc\r\n" + x + "1\r\n"},
        {"Kept: a last line of two is written over", "X", "1", n + "ab\r\n", "note\r\r\n" + x + "1\r\n"},
        {"Kept: a file of less than five bytes", "X", "1", "\nab", "\r\n" + x + "1\r\n"},
        {"an empty file", "X", "1", "", "\r\n" + x + "1\r\n"},
        {"Kept: the first line stays", "X", "2", x + "1\r\n" + z, x + "1\r\n" + z + x + "2\r\n"},
        {"a deleted line, the first one too", "X", "2", "$.ARCHT;X;1\r\n" + z, x + "2\r\n" + z},
        {"Kept: three bytes are covered", "X", "123", n + x + "1\r\nb\r\n", n + x + "123\r\n\n"},
        {"Kept: a wildcard", "X*", "1", n + "$VARCHT;XYZ;1234\r\n" + z, n + "$VARCHT;X*;1    \r\n" + z},
        {"a name with a ;", "X;Y", "1", n + x + "Y;2\r\n", n + x + "Y;2\r\n" + x + "Y;1\r\n", 3},
        {"100,000 characters", "X", big, n + x + "1\r\n" + z, n + x + big + "\r\n" + z},
    };
    for (const auto& c : cases) {
        m_folder.write("a.cht", c.before);
        EXPECT_EQ(m_project.Setvar("$varcht", c.name, c.values.c_str()), c.result) << c.what;
        EXPECT_TRUE(m_folder.read("a.cht") == c.after) << c.what << ":\n"
                                                       << m_folder.read("a.cht").substr(0, 200);
        EXPECT_EQ(platform::theFiles().kind(m_folder.path("a.ch~").c_str()), platform::FileKind::missing);
    }
    m_project.m_cheminCht = m_folder.path("none").c_str();
    EXPECT_EQ(m_project.Setvar("$VARCHT", "X", "1"), 1);
}

TEST_F(Setvar, ArraysKeepSemicolonsAndBreakLongLines) {
    const std::string thirty(30, 'a'), name(300, 'n'), most(5000, 'x');
    m_folder.write("a.cht", "note\r\n");
    EXPECT_EQ(m_project.Setvar(fieldsOf({"$varcht", "v", "a;b", "", "c"})), 4);
    EXPECT_EQ(m_folder.read("a.cht"),
              "note\r\n$VARCHT;V;a\x02"
              "b;;c\r\n");
    EXPECT_EQ(read("v"), "1|a;b||c");

    const std::string eighty = "$VARCHT;LONG;" + thirty + ';' + thirty;
    const struct {
        std::vector<std::string> fields;
        std::string line;
        bool readsBack;
    } lines[] = {
        {{"$VARCHT", "LONG", thirty, thirty, "5432 "}, eighty + ";5432 ", false},
        {{"$VARCHT", "LONG", thirty, thirty, "65 4321"}, eighty + ";+\r\n65 4321", true},
        {{"$VARCHT", "LONG", thirty, thirty, " 654321"}, eighty + ";+\r\n 654321", false},
        {{"$VARCHT", "LONG", "a+"}, "$VARCHT;LONG;a+", false},
        {{"$VARCHT", "LONG", "a\x02"}, "$VARCHT;LONG;a\x02", false},
        {{"$VARCHT", "LONG", most}, "$VARCHT;LONG;+\r\n" + most, false},
        {{std::string(25, '$'), name, "1"},
         std::string(19, '$') + ';' + std::string(254, 'N') + ";+\r\n1",
         false},
    };
    for (const auto& c : lines) {
        m_folder.write("a.cht", "note\r\n");
        EXPECT_GE(m_project.Setvar(fieldsOf(c.fields)), 2);
        EXPECT_EQ(m_folder.read("a.cht"), "note\r\n" + c.line + "\r\n");
        EXPECT_EQ(kestra::readsBack(fieldsOf(c.fields)), c.readsBack) << c.line.substr(0, 120);
    }

    char section[] = "$VARCHT", variable[] = "v", value[] = "a;b";
    MyPCharArray texts;
    for (char* text : {section, variable, value, static_cast<char*>(nullptr), value}) texts.Add(text);
    EXPECT_EQ(m_project.Setvar(texts), 2);
    EXPECT_STREQ(value,
                 "a\x02"
                 "b")
        << "Kept: the caller's own texts are changed";
}

TEST_F(Setvar, ChangevarRenamesOrDeletesEveryLine) {
    const std::string content = "$VARCHT;X;1\r\n  $varcht;x;2\r\n$MEP;X;3\r\n$VARCHT;XY;$4\r\n";
    struct {
        const char *section, *name, *newSection;
        int result;
        std::string after;
    } const cases[] = {
        {"$varcht", "x", nullptr, 2, "$.ARCHT;X;1\r\n  $.archt;x;2\r\n$MEP;X;3\r\n$VARCHT;XY;$4\r\n"},
        {"$VARCHT", "X*", "$vortli", 3, "$VORTLI;X;1\r\n  $VORTLI;x;2\r\n$MEP;X;3\r\n$VORTLI;XY;$4\r\n"},
        {"$VARCHT", "XY", "mep", 1, "$VARCHT;X;1\r\n  $varcht;x;2\r\n$MEP;X;3\r\n$MEPCHT;XY;$4\r\n"},
        {"$MEP", "X", "$VARC", -1, content},
    };
    for (const auto& c : cases) {
        m_folder.write("a.cht", content);
        EXPECT_EQ(m_project.Changevar(c.section, c.name, c.newSection), c.result) << c.name;
        EXPECT_EQ(m_folder.read("a.cht"), c.after)
            << "Kept: a shorter tag leaves the rest of the old one standing";
    }
}

#ifndef _WIN32
TEST_F(Setvar, AProjectWrittenThroughALinkIsTheOneThatItLeadsTo) {
    namespace fs = std::filesystem;
    m_folder.write("real\\b.cht", "$.ARCHT;X;1\r\nnote\r\n");
    const fs::path root = fs::path(std::getenv("KESTRA_DRIVES")) / "c" /
                          m_folder.folder().substr(3, m_folder.folder().size() - 4);
    fs::create_symlink("real/b.cht", root / "a.cht");
    EXPECT_EQ(m_project.Compresse(), 1);
    EXPECT_EQ(m_project.Setvar("$VARCHT", "Y", "1"), 2);
    EXPECT_TRUE(fs::is_symlink(root / "a.cht"));
    EXPECT_EQ(m_folder.read("real\\b.cht"), "note\r\n$VARCHT;Y;1\r\n");
    m_folder.write("real\\b.ch~", "somebody's own file");
    EXPECT_EQ(m_project.Setvar("$VARCHT", "Y", "2"), 1) << "the lock stands beside the file itself";
}
#endif

TEST_F(Setvar, CompresseRemovesDeletedLinesOnly) {
    const std::string kept = "$VARCHT;X;1   \n\r\n note+\r\n $.this belongs to the note\r\n$",
                      gone = " $.ARCHT;Y;a+\r\nb\r\n";
    m_folder.write("a.cht", gone + kept);
    EXPECT_EQ(m_project.Compresse(), 1);
    EXPECT_EQ(m_folder.read("a.cht"), kept);
    EXPECT_EQ(m_project.Compresse(), 0);
    m_folder.write("a.cht", gone + kept);
    ASSERT_NE(m_project.Open(), nullptr) << "an open stream is taken over";
    EXPECT_EQ(m_project.Compresse(), 1);
    EXPECT_EQ(m_folder.read("a.cht"), kept);
}

}  // namespace
