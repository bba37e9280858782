#include <gtest/gtest.h>

#include <cstring>

#include <dorsel/globals.h>
#include <kestra/project/chantier.h>

#include "../../support/temporary_folder.h"

namespace {

std::string joined(const CStringArray& fields) {
    std::string all;
    for (int i = 0; i < fields.GetSize(); ++i) all.append(i > 0 ? "|" : "").append(fields[i].view());
    return all;
}

/// A project in a folder of its own, asked for variables.
class Getvar : public testing::Test {
  protected:
    void SetUp() override { m_project.m_cheminCht = m_folder.path("a.cht").c_str(); }
    std::string ask(const char* name, int maxFields = 0, const char* section = "$VARCHT") {
        CStringArray out;
        out.Add("before");
        const int lines = m_project.Getvar(section, name, maxFields, out);
        EXPECT_EQ(m_project.m_fp, nullptr);
        EXPECT_EQ(Cchantier::m_ChtIVAR.GetSize() + Cchantier::m_ChtIVAROK.GetSize(), 0);
        return std::to_string(lines) + ":" + joined(out);
    }
    TemporaryFolder m_folder;
    Cchantier m_project;
};

TEST_F(Getvar, ReturnsTheLinesOfTheFileItself) {
    m_folder.write("a.cht",
                   "$VARCHT;Titre;Plan \x02 Coupe;\xE9t\xE9\r\nnote\r\n$VARCHT;TITRE2\r\n$MEP;TITRE;x\r\n"
                   "$varcht;TITRE;second+\r\n;y\r\n$VARCHT;\xE9;1");
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"titre", "2:$VARCHT|Titre|Plan ; Coupe|\xE9t\xE9|$varcht|TITRE|second|y"},
        {"TITRE?", "1:$VARCHT|TITRE2"},
        {"T*E*", "3:$VARCHT|Titre|Plan ; Coupe|\xE9t\xE9|$VARCHT|TITRE2|$varcht|TITRE|second|y"},
        {"\xC9", "1:$VARCHT|\xE9|1"},
        {"**TITRE", "0:"},
        {"***", "0:before"},
        {"", "0:before"},
        {"ABSENT", "0:"},
    };
    for (const auto& [name, expected] : cases) EXPECT_EQ(ask(name.c_str()), expected) << name;
    EXPECT_EQ(ask("**"),
              "4:$VARCHT|Titre|Plan ; Coupe|\xE9t\xE9|$VARCHT|TITRE2|$varcht|TITRE|second|y|$VARCHT|\xE9|1");
    EXPECT_EQ(ask("titre", 3), "2:$VARCHT|Titre|Plan ; Coupe|$varcht|TITRE|second");
    EXPECT_EQ(ask("titre", 0, "$mep"), "1:$MEP|TITRE|x");
    EXPECT_EQ(ask("titre", 0, ""), "0:before");
    EXPECT_EQ(ask(nullptr), "0:before");
    m_project.m_cheminCht = m_folder.path("none").c_str();
    EXPECT_EQ(ask("titre"), "0:before");
}

TEST_F(Getvar, ReadsIncludesBreadthFirstEachOnce) {
    m_folder.write("b.cht", "$VARCHT;V;b1\r\nCHTIVAR;d\r\n$VARCHT;V;b2\r\nCHTIVAR;a.cht\r\n");
    m_folder.write("sub\\c.cht", "$VARCHT;V;..\\x\r\nCHTIVAR;" + m_folder.path("b.cht") + "\r\n");
    m_folder.write("d.cht", "$VARCHT;W;d\r\nCHTIVAR;b\r\nCHTIVAR;d\r\n$VARCHT;OWN;2\r\n");
    m_folder.write("sub\\d.cht", "$VARCHT;W;beside the project comes first\r\n");
    m_folder.write("e.cht\\x.txt", "CHTIVAR;e means a folder");
    const std::string c = m_folder.path("sub\\c.cht");
    m_folder.write("a.cht",
                   "CHTIVAR;b\r\n$VARCHT;OWN;1\r\nchtivar;" + c +
                       ";\r\nCHTIVAR;a\r\nCHTIVAR;B\r\nCHTIVAR;missing\r\nCHTIVAR;e\r\nCHTIVAR;\r\n");
    EXPECT_EQ(ask("V"), "2:$VARCHT|**V|b1|$VARCHT|**V|" + m_folder.path("sub\\x"));
    EXPECT_EQ(ask("**V", 2), "2:$VARCHT|V|$VARCHT|V");
    EXPECT_EQ(ask("w"), "1:$VARCHT|**W|d");
    EXPECT_EQ(ask("own"), "1:$VARCHT|OWN|1") << "found by its very name: no include is read";
    EXPECT_EQ(ask("own*"), "2:$VARCHT|OWN|1|$VARCHT|**OWN|2");
}

TEST_F(Getvar, SurvivesAMillionIncludes) {
    std::string many;
    for (int i = 0; i < 1000000; ++i)
        many += i % 1000 == 0 ? "CHTIVAR;x" + std::to_string(i) + "\n" : "CHTIVAR;b\n";
    m_folder.write("a.cht", many + "$VARCHT;OTHER;\n");
    m_folder.write("b.cht", "$VARCHT;V;1\n");
    EXPECT_EQ(ask("V"), "1:$VARCHT|**V|1");
}

TEST_F(Getvar, ExpandsRelativePaths) {
    std::strcpy(pvg.localFolder, "L:\\loc\\");
    std::strcpy(pvg.networkFolder, "\\\\srv\\share\\net\\");
    const CString before = chtdef.m_cheminCht;
    chtdef.m_cheminCht = "E:\\def\\d.cht";
    const std::string here = m_folder.folder();
    const std::string up = here.substr(0, here.rfind('\\', here.size() - 2) + 1);
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"..\\data\\x.txt", here + "data\\x.txt"},
        {"..\\..\\x", up + "x"},
        {"..\\..\\..\\..\\..\\x", "C:\\x"},
        {"..\\a\x02..\\b\x02z..\\c", here + "a;" + here + "b;z..\\c"},
        {"..l\\x\x02..N\\..\\y", "L:\\loc\\x;\\\\srv\\share\\y"},
        {"..r\\..\\..\\y", "\\\\srv\\share\\y"},
        {"..C\\..\\x", "E:\\x"},
        {" ..\\x", " ..\\x"},
        {"../x", "../x"},
    };
    for (const auto& [value, expected] : cases) {
        m_folder.write("a.cht", "$VARCHT;..\\V;" + value);
        EXPECT_EQ(ask("..\\v"), "1:$VARCHT|..\\V|" + expected) << value;
    }
    pvg.localFolder[0] = '\0';
    m_folder.write("a.cht", "$VARCHT;V;..L\\x");
    EXPECT_EQ(ask("V"), "1:$VARCHT|V|..L\\x") << "a prefix without folder stays";
    chtdef.m_cheminCht = m_project.m_cheminCht;
    CStringArray out;
    EXPECT_EQ(ChtdefGetVar("$VARCHT", "v", 0, out), 1);
    chtdef.m_cheminCht = before;
}

TEST_F(Getvar, LaysFieldsEndToEnd) {
    m_folder.write("a.cht", "$VARCHT;V;un;;trois\r\n$VARCHT;V;x\r\n");
    char* text = nullptr;
    CDWordArray starts;
    EXPECT_EQ(m_project.Getvar(text, "$VARCHT", "V", 0, &starts), 2);
    EXPECT_EQ(std::string(text, 31), std::string("$VARCHT\0V\0un\0\0trois\0$VARCHT\0V\0x", 31));
    ASSERT_EQ(starts.GetSize(), 8);
    EXPECT_EQ(starts[4], 14u);
    EXPECT_EQ(starts[7], 30u);
    char* const kept = text;
    EXPECT_EQ(m_project.Getvar(text, "$VARCHT", "NONE", 0, &starts), 0);
    EXPECT_EQ(text, kept);
}

TEST_F(Getvar, StartsAnOpenStreamAgain) {
    m_folder.write("a.cht", "$VARCHT;V;1\nCHTIVAR;o\n");
    m_folder.write("o.cht", "$VARCHT;V;2\nCHTIVAR;o\n");
    char* line = nullptr;
    ASSERT_NE(m_project.Open(), nullptr);
    m_project.Lisligne(line);
    EXPECT_EQ(ask("V"), "1:$VARCHT|V|1");
    ASSERT_NE(m_project.Open(m_folder.path("o").c_str()), nullptr);
    EXPECT_EQ(ask("V*"), "1:$VARCHT|V|2") << "the file that is open counts as the project's own, and as read";
}

}  // namespace
