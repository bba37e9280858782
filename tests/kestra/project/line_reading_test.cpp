#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include <dorsel/globals.h>
#include <dorsel/settings.h>
#include <kestra/project/chantier.h>
#include <platform/replaceable.h>

#include "../../support/memory_files.h"
#include "../../support/project_check.h"

namespace {

constexpr const char* projectPath = "C:\\p\\a.cht";

/// A project over a file in memory.
class ProjectLines : public testing::Test {
  protected:
    void use(std::string content) {
        m_project.Close();
        m_files.put(projectPath, std::move(content));
        m_project.m_cheminCht = projectPath;
    }
    std::vector<ReferenceLine> linesOf(std::string content) {
        use(std::move(content));
        return readLines(m_project);
    }

    MemoryFiles m_files;
    platform::Replaced<platform::FileSystem> m_inForce{platform::replaceFiles, m_files};
    Cchantier m_project;
};

TEST_F(ProjectLines, AreJoinedTrimmedAndCounted) {
    using namespace std::string_literals;
    const std::string x4998(4998, 'x');
    const std::vector<std::pair<std::string, std::vector<ReferenceLine>>> cases = {
        {"", {}},
        {"$VARCHT;X;a+\r\n   b\r\n", {{"$VARCHT;X;ab", 0, 2}}},
        {"a +\n", {{"a ", 0, 1}}},
        {"+\n+\nC;x", {{"C;x", 0, 3}}},
        {"a +\n\t \nb", {{"a", 0, 2}, {"b", 7, 1}}},
        {"\r\n \t a;b \t\r\nc", {{"", 0, 1}, {"a;b", 2, 1}, {"c", 12, 1}}},
        {"a\0+\nb+\0x\nc"s, {{"a", 0, 1}, {"bc", 4, 2}}},
        {"\0\n\0"s, {{"", 0, 1}, {"", 2, 1}}},
        {x4998 + "y\nz", {{x4998, 0, 1}, {"y", 4998, 1}, {"z", 5000, 1}}},
        {std::string(4997, 'x') + "\nz", {{std::string(4997, 'x'), 0, 1}, {"z", 4998, 1}}},
        {std::string(4997, 'x') + "+  y", {{std::string(4997, 'x') + "y", 0, 2}}},
    };
    for (const auto& [content, lines] : cases) EXPECT_EQ(linesOf(content), lines) << content;
}

/// Random pieces of what matters to the reader, with physical lines of about the longest length among them.
std::string randomContent(std::mt19937& random) {
    using namespace std::string_literals;
    static const std::vector<std::string> pieces = {
        "\n",       "\r\n",       " ",           "\t",          "+",           "+\r\n",   "\0"s, ";",
        "$VARCHT;", "$varcht;v;", "\n$VARCHT;V", "$VARCHT;VX;", "CHTIVAR;b\n", "chtivar", "c",   "x"};
    std::string content;
    for (auto count = random() % 60; count > 0; --count) {
        content += pieces[random() % pieces.size()];
        if (random() % 20 == 0) content += std::string(4980 + random() % 40, random() % 2 != 0 ? 'x' : ' ');
        if (random() % 400 == 0) content += std::string(66000, '\n');
    }
    return content;
}

TEST_F(ProjectLines, AgreeWithThePlainRulesOnRandomFiles) {
    std::mt19937 random(2007);
    for (int round = 0; round < 500; ++round) {
        const std::string content = randomContent(random);
        const std::string included = randomContent(random);
        ASSERT_TRUE(projectAnswersByTheRules(content, included)) << "round " << round;
    }
}

TEST_F(ProjectLines, FindvarLeavesTheStreamAsItFoundIt) {
    use("CHTIVAR;commun;\r\n$VARCHT;NOTE\r\n$VARCHT\r\n$varcht;titre;A+\r\n B;C\r\n$VARCHT;TITRE2;D\r\n");
    char* line = nullptr;
    EXPECT_EQ(m_project.Findvar(line, "$Varcht", "TIT?E"), 40);
    EXPECT_STREQ(line, "$varcht;titre;AB;C");
    EXPECT_EQ(m_project.m_fp, nullptr);

    Cchantier::m_ChtIVAR.RemoveAll();
    m_project.Open();
    EXPECT_EQ(m_project.Findvar(line, "$VARCHT", "TITRE*"), 40);
    EXPECT_EQ(m_project.m_fp->tell(), 64);
    EXPECT_EQ(m_project.Findvar(line, "$VARCHT", "TITRE*"), 64);
    EXPECT_EQ(m_project.Findvar(line, "$VARCHT", "*"), -1);
    ASSERT_EQ(Cchantier::m_ChtIVAR.GetSize(), 1);
    EXPECT_EQ(Cchantier::m_ChtIVAR[0], "commun");
    Cchantier::m_ChtIVAR.RemoveAll();
    EXPECT_EQ(m_project.m_fp->tell(), 82);
    m_project.Close();
    m_project.m_cheminCht = "C:\\p\\none";
    EXPECT_EQ(m_project.Findvar(line, "$VARCHT", "NOTE"), -1);
}

TEST_F(ProjectLines, OpenFindsTheFileByItsName) {
    m_files.put("D:\\base\\d.cht", "x");
    use("x");
    DOS::Free_ini(&Cchantier::chemins_CHT);
    EXPECT_STREQ(m_project.Open("C:\\p\\a.DWG"), projectPath);
    for (const char* none : {"a", std::string(300, 'a').c_str(), "C:\\p", static_cast<const char*>(nullptr)})
        EXPECT_EQ(m_project.Open(none), nullptr);
    EXPECT_EQ(m_project.m_fp, nullptr);
    std::strcpy(pvg.networkFolder, "D:\\base\\");
    EXPECT_STREQ(m_project.Open("..R\\d"), "D:\\base\\d.cht");
    EXPECT_EQ(m_project.m_cheminCht, projectPath);
    EXPECT_STREQ(m_project.Open(), projectPath) << "an open stream is rewound, whatever it is";
}

TEST_F(ProjectLines, KeptTheCutIsAtTheLastDotEvenOneInAFolderName) {
    m_files.put("D:\\v1.cht", "x");
    EXPECT_STREQ(m_project.Open("D:\\v1.2\\a"), "D:\\v1.cht");
}

TEST_F(ProjectLines, CopiesShareTheStream) {
    use("a\nb\n");
    m_project.Open();
    char* line = nullptr;
    {
        Cchantier copy = m_project;
        EXPECT_EQ(copy.Lisligne(line) + m_project.Lisligne(line), 2);
        EXPECT_STREQ(line, "b");
        copy.Close();
        EXPECT_EQ(m_project.Lisligne(line), 0);
        EXPECT_NE(m_project.Open(), nullptr);
    }
    EXPECT_EQ(m_project.Lisligne(line), 1) << "a copy that was closed holds nothing of the original's";
}

TEST_F(ProjectLines, ConstructionReadsTheSearchListAndTheDrawingFormat) {
    m_files.put("L:\\ini\\torel.ini", "[General]\nDirCht=D:\\base\nDirCht=E:\\x\n");
    m_files.put("E:\\x\\found.cht", "x");
    std::strcpy(pvg.localFolder, "L:\\");
    char dxf[] = ".DXF";
    DOS::Dwg_Dxf = dxf;
    std::strcpy(Cchantier::last_service, "1234");
    Cchantier project;
    DOS::Dwg_Dxf = nullptr;
    EXPECT_STREQ(Cchantier::chemins_CHT, "D:\\base;E:\\x");
    EXPECT_STREQ(project.Open("found"), "E:\\x\\found.cht");
    EXPECT_EQ(project.m_bDwg, 0);
    EXPECT_EQ(Cchantier().m_bDwg, 1);
    EXPECT_STREQ(Cchantier::last_service, "$$$");
    pvg.localFolder[0] = '\0';
}

}  // namespace
