#include <gtest/gtest.h>

#include <cstring>

#include <dorsel/globals.h>
#include <dorsel/strings.h>
#include <kestra/frame/app.h>
#include <kestra/frame/frame_hooks.h>
#include <kestra/frame/start_up.h>
#include <kestra/project/chantier.h>
#include <platform/files.h>

#include "../../support/recorders.h"
#include "../../support/settings_folders.h"

namespace {

std::string temporaryDatabase;
const char* temporaryDatabasePath() {
    return temporaryDatabase.c_str();
}

}  // namespace

TEST(StartUp, CompanyAndProjectionFallBackToTheirSecondSource) {
    const struct {
        const char *torel, *olmek, *company, *projection;
    } cases[] = {
        {"[general]\nCODSOC=Géomètres\n[VORTLIN]\nPROJECTION=L-93 :\n", "", "Géomètres", "L-93 :"},
        {"[general]\nCODSOC=G\n", "[general]\nCODSOC=Second\nPROJECTION=L-III:\n", "Second", "L-III:"},
        {"[general]\nCODSOC=G\n[VORTLIN]\nPROJECTION=\n", "", "G", ""},
        {"", "", "Avant", ""},
    };
    for (const auto& c : cases) {
        const SettingsFolders settings;
        settings.network("torel", c.torel);
        settings.network("OLMEK", c.olmek);
        std::strcpy(vfVar.society, "Avant");
        kestra::readCompanyName();
        kestra::readProjectionName();
        EXPECT_STREQ(vfVar.society, c.company);
        EXPECT_STREQ(pvg.projection, c.projection);
    }
    vfVar.society[0] = '\0';
}

TEST(StartUp, ASharedBlockOfTheWrongSizeIsReported) {
    const SettingsFolders settings;
    const RecordedTraces traces;
    kestra::checkSharedBlock();
    EXPECT_TRUE(traces.lines().empty());
    pvg.size = 4460;
    kestra::checkSharedBlock();
    EXPECT_EQ(traces.lines(),
              std::vector<std::string>{
                  "$G$******** Probleme de taille (KESTRA) de 'DorselSeg' 4460 au lieu de 4464 "});
}

TEST(StartUp, OnlyTheFirstInitialisationAndTheLastExitDoTheOneTimeWork) {
    const SettingsFolders settings;
    settings.local("torel", "[general]\nCODSOC=Un\nDirCht=D:\\CHT\\\n[VORTLIN]\nPROJECTION=L-I  :\n");
    temporaryDatabase = settings.folder().write("temporaire.mdb", "x");
    const kestra::TextFunction before = kestra::setTemporaryDatabase(&temporaryDatabasePath);
    const Cchantier readsTheSearchList;
    vfVar.society[0] = '\0';

    CKestraApp app;
    EXPECT_EQ(STR::Chr_majuscule[0xE9], 0xC9);
    EXPECT_NE(app.InitInstance(), 0);
    EXPECT_STREQ(vfVar.society, "Un");
    EXPECT_EQ(platform::theFiles().kind("c:\\temp"), platform::FileKind::folder);
    settings.local("torel", "[general]\nCODSOC=Deux\n[VORTLIN]\nPROJECTION=L-II :\n");
    EXPECT_NE(app.InitInstance(), 0);
    EXPECT_STREQ(vfVar.society, "Un");
    EXPECT_STREQ(pvg.projection, "L-II :");

    app.ExitInstance();
    EXPECT_EQ(platform::theFiles().kind(temporaryDatabase.c_str()), platform::FileKind::file);
    EXPECT_STREQ(Cchantier::chemins_CHT, "D:\\CHT\\");
    app.ExitInstance();
    EXPECT_EQ(platform::theFiles().kind(temporaryDatabase.c_str()), platform::FileKind::missing);
    EXPECT_EQ(Cchantier::chemins_CHT, nullptr);
    kestra::setTemporaryDatabase(before);
    vfVar.society[0] = '\0';
}
