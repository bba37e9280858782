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
        {"$VARCHT;DWG_DXF;DWG", "", "", 1, "$VARCHT;DWG_DXF;.DWG"},
        {"$VORTLIN;PROJECTION;3", "", "L-III:", 1, "$VORTLIN;PROJECTION;L-III:"},
        {"$VORTLIN;PROJECTION;99", "", "_Locale", 1, "$VORTLIN;PROJECTION;_Locale"},
        {"$VORTLIN;PROJECTION;19", "", "_Non Définie", 1, "$VORTLIN;PROJECTION;_Non Définie"},
        {"$VORTLIN;PROJECTION;1234", "", "1234", 1, ""},
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
    write("a.cht", "$VORTLIN;INFOS;a\r\n");
    EXPECT_EQ(project.Set("", 0), 1);
    EXPECT_EQ(project.m_infoA + project.m_infoB + project.m_fichiers, "f2");
    project.m_titre = "x";
    EXPECT_EQ(project.Set(path("none").c_str(), 0), 0);
    EXPECT_EQ(project.m_cheminCht.view(), path("a.cht"));
    EXPECT_TRUE(project.m_titre.IsEmpty());
    EXPECT_STREQ(Cchantier::GetNomProj(18), "_Non Définie");

    const CString before = chtdef.m_cheminCht;
    EXPECT_EQ(chtdef.Set(path("a").c_str(), 0), 1);
    EXPECT_EQ(DOS::m_NomChtDef, path("a"));
    chtdef.m_cheminCht = before;
    project = Cchantier(path("a").c_str());
    Cchantier::cht_charge = [](const char* name) { return static_cast<int>(std::strlen(name)); };
    EXPECT_EQ(project.PrjLoad(), static_cast<int>(path("a").size()));
    Cchantier::cht_charge = nullptr;
    EXPECT_EQ(project.PrjLoad(), 0);
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
    EXPECT_EQ(project.Create(path("c").c_str(), path("none").c_str()), 0);
    write("file", "");
    EXPECT_EQ(project.Create(path("file\\c").c_str(), model.c_str()), 0);
    EXPECT_EQ(m_prompt.texts,
              std::vector<std::string>{"Impossible de créer le fichier :" + path("file\\c.CHT") +
                                       " ; Vérifiez l'existance du disque ou du directory " + path("file\\") +
                                       " "});
    EXPECT_EQ(m_prompt.styles, std::vector<unsigned>{platform::iconExclamation});
}

TEST_F(Load, ListsTheFoldersAroundAProject) {
    char wau[] = "W:\\wau;", headers[] = "W:\\ent;";
    DOS::chemins_WAU = wau;
    DOS::chemins_ENTETE = headers;
    const struct {
        const char *project, *subFolder, *list;
    } cases[] = {
        {"D:\\AFF.ABC\\P12\\a.cht", nullptr, "D:\\AFF.ABC\\P12\\;D:\\AFF.ABC\\;"},
        {"D:\\AFF.ABC\\P12\\a.cht", "X\\", "D:\\AFF.ABC\\P12\\X\\;D:\\AFF.ABC\\X\\;"},
        {"D:\\AFF.AB\\P12\\a.cht", nullptr, "D:\\AFF.AB\\P12\\;"},
        {"D:\\a.cht", nullptr, "D:\\;"},
    };
    Cchantier project;
    for (const auto& c : cases) {
        project.m_cheminCht = c.project;
        EXPECT_EQ(project.GetPathWau(0, c.subFolder), c.list) << c.project;
    }
    EXPECT_EQ(project.GetPathWau(1, nullptr), "D:\\;W:\\wau;");

    const CString before = chtdef.m_cheminCht;
    chtdef.m_cheminCht =
        write("d.cht", "$VARCHT;DIRENTETE;" + path("ent\\") + ";" + path("EN") + ";" + path("no\\")).c_str();
    write("ent\\h.txt", "");
    EXPECT_EQ(project.GetPathEntete(1).view(),
              path("ent\\") + ";" + path("EN") + ";D:\\ENTETES\\;D:\\;W:\\ent;");
    chtdef.m_cheminCht = before;

    project.m_cheminCht = write("p\\t.cht", "$VARCHT;TABLES_DEF;a.lgn;b.lgn\r\n").c_str();
    write("a.lgn", "");
    char t1[260], t2[260], t3[260], t4[260];
    EXPECT_EQ(project.GetTables(t1, t2, t3, t4, 0), 2);
    EXPECT_EQ(std::string(t1) + t2 + t3 + t4, "a.lgnb.lgnTABLE.LGN");
    EXPECT_EQ(project.GetTables(t1, t2, nullptr, t4, 1), 2);
    EXPECT_EQ(std::string(t1), path("a.lgn")) << "found in the parent";
    EXPECT_EQ(std::string(t2) + t4, "");
    DOS::chemins_WAU = DOS::chemins_ENTETE = nullptr;
}

}  // namespace
