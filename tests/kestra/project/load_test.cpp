#include <gtest/gtest.h>

#include <cstring>

#include <dorsel/globals.h>
#include <kestra/project/chantier.h>

#include "../../support/recorders.h"
#include "../../support/settings_folders.h"

namespace {

/// Projects in a folder of their own, settings that name no service.
class Load : public testing::Test {
  protected:
    void SetUp() override { m_settings.local("services", ""); }
    std::string path(const char* name) { return m_settings.folder().path(name); }
    std::string write(const char* name, const std::string& content) {
        return m_settings.folder().write(name, content);
    }
    SettingsFolders m_settings;
    RecordingPrompt m_prompt;
    platform::Replaced<platform::Prompt> m_inForce{platform::replacePrompt, m_prompt};
};

TEST_F(Load, ReadsTheFieldsAndMendsTwoOldForms) {
    struct {
        std::string line, title, projection;
        int drawings;
        std::string lineAfter;
    } const cases[] = {
        {"$varcht;titre;Plan;x", "Plan", "", 1, ""},
        {"$VARCHT;DWG_DXF;.dxf", "", "", 0, "$VARCHT;DWG_DXF;.DXF"},
        {"$VORTLIN;PROJECTION;3", "", "L-III:", 1, "$VORTLIN;PROJECTION;L-III:"},
        {"$VORTLIN;PROJECTION;99", "", "_Locale", 1, "$VORTLIN;PROJECTION;_Locale"},
        {"$VORTLIN;PROJECTION;19", "", "_Non Définie", 1, "$VORTLIN;PROJECTION;_Non Définie"},
    };
    Cchantier project;
    for (const auto& c : cases) {
        const std::string file = write("a.cht", "note\r\n" + c.line + "\r\n");
        EXPECT_EQ(project.Set(file.c_str(), 0), 1);
        EXPECT_EQ(project.m_titre.view(), c.title) << c.line;
        EXPECT_EQ(project.m_projection.view(), c.projection) << c.line;
        EXPECT_EQ(project.m_bDwg, c.drawings) << c.line;
        EXPECT_EQ(m_settings.folder().read("a.cht"),
                  "note\r\n" + (c.lineAfter.empty() ? c.line : c.lineAfter) + "\r\n");
    }
    write("a.cht",
          "$VARCHT;TITRE;old\r\n$VORTLIN;INFOS;a;b\r\n$DORSEL;FICHIERS;f1\r\n$DORSEL;FICHIERS;f2\r\n"
          "$VARCHT;TITRE;new\r\n");
    EXPECT_EQ(project.Set(nullptr, 0), 1);
    EXPECT_EQ(project.m_titre, "new") << "of a variable that stands twice the last line counts";
    EXPECT_EQ(project.m_infoA + project.m_infoB + project.m_fichiers, "baf2");
    project.m_titre = "x";
    EXPECT_EQ(project.Set(path("none").c_str(), 0), 0);
    EXPECT_EQ(project.m_cheminCht.view(), path("a.cht"));
    EXPECT_TRUE(project.m_titre.IsEmpty());
}

TEST_F(Load, CreateCopiesWhatAModelHasForProjects) {
    const std::string model =
        write("model.cht",
              "\r\n  'note\n#macro;x\n#\n;x\n$$VARCHT;TITRE;Plan\n$VARCHT;OWN;of the "
              "model+\n$$VARCHT;gone;1\n$.ARCHT;X;1\n"
              "PRJ;x\nAR;kept out too\nvarmod;x\nVARS;1+\n$VORTLIN;goes on\nCHTIVAR;commune\n" +
                  std::string(6000, 'z'));
    const std::string lines =
        "\r\n'note\r\n#macro;x\r\n$VARCHT;TITRE;Plan\r\nVARS;1+\r\n$VORTLIN;goes on\r\nCHTIVAR;commune\r\n" +
        std::string(5998, 'z') + "\r\nzz\r\n";
    Cchantier project;
    EXPECT_EQ(project.Create(path("new\\deep\\b.x.cht").c_str(), model.c_str()), 9)
        << "Kept: cut at the first dot";
    EXPECT_TRUE(m_settings.folder().read("new\\deep\\b.cht") == lines);
    EXPECT_EQ(project.m_titre, "Plan");
    EXPECT_EQ(project.m_cheminCht.view(), path("new\\deep\\b.CHT"));
    EXPECT_EQ(project.Create(path("new\\deep\\B").c_str(), model.c_str()), 0)
        << "a project is never overwritten";
    write("file", "");
    EXPECT_EQ(project.Create(path("file\\c").c_str(), model.c_str()), 0);
    EXPECT_EQ(m_prompt.texts.size(), 1u);
}

TEST_F(Load, ListsTheFoldersAroundAProject) {
    char wau[] = "W:\\wau;";
    DOS::chemins_WAU = wau;
    const struct {
        const char *project, *subFolder, *list;
    } cases[] = {
        {"D:\\AFF.ABC\\P12\\a.cht", nullptr, "D:\\AFF.ABC\\P12\\;D:\\AFF.ABC\\;"},
        {"D:\\AFF.ABC\\P12\\a.cht", "X\\", "D:\\AFF.ABC\\P12\\X\\;D:\\AFF.ABC\\X\\;"},
        {"D:\\a.cht", nullptr, "D:\\;"},
    };
    Cchantier project;
    for (const auto& c : cases) {
        project.m_cheminCht = c.project;
        EXPECT_EQ(project.GetPathWau(0, c.subFolder), c.list) << c.project;
    }
    EXPECT_EQ(project.GetPathWau(1, nullptr), "D:\\;W:\\wau;");

    DOS::chemins_WAU = nullptr;
}

}  // namespace
