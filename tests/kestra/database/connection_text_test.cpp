#include <kestra/database/connection_text.h>

#include <dorsel/globals.h>
#include <kestra/database/questions.h>
#include <kestra/project/chantier.h>
#include <platform/cp1252.h>

#include <tests/support/settings_folders.h>
#include "test_database.h"

namespace {

/// Answers with a path, or gives up; keeps what was asked.
struct FilePrompt : platform::Prompt {
    platform::Answer ask(unsigned style, const char* text, const char*) override {
        asked.push_back(std::to_string(style) + " " + text);
        return answer;
    }
    bool chooseFile(platform::FileQuestion& question) override {
        files.push_back(question);
        if (chosen.empty()) return false;
        question.path = chosen;
        return true;
    }
    platform::Answer answer = platform::answerNo;
    std::string chosen;
    std::vector<std::string> asked;
    std::vector<platform::FileQuestion> files;

  private:
    platform::Replaced<platform::Prompt> m_inForce{platform::replacePrompt, *this};
};

}  // namespace

TEST(ConnectionText, ThePathGoesIntoThePattern) {
    const struct {
        const char *pattern, *path, *text;
    } cases[] = {
        {"%s;%s", "a%sb", "a%sb;%s"},
        {"none", "x", "none"},
        {"100%% %n%d% %s%", "x", "100% %n%d% x%"},
        {"Source=%s;", "C:\\a;b.mdb", "Source=\"C:\\a;b.mdb\";"},
        {"Source='%s';", "C:\\a;b.mdb", "Source='C:\\a;b.mdb';"},
    };
    for (const auto& c : cases) EXPECT_EQ(kestra::connectionText(c.pattern, c.path), c.text);
    EXPECT_EQ(kestra::readOnlyPattern("Mode=ReadWrite;X=ReadWrite"), "Mode=Read;X=Read");
    EXPECT_EQ(kestra::readOnlyPattern("readwrite"), "readwriteMode=ReadOnly;") << "case counts";
    EXPECT_EQ(kestra::readOnlyPattern(""), "Mode=ReadOnly;");
}

TEST(ConnectionText, KeptTheBlankInFrontOfEqualsAndNoneInFrontOfModeReadOnly) {
    const SettingsFolders folders;
    folders.local("TOREL",
                  "[DATABASE64]\n.DB=Driver=%s;Mode=ReadWrite;\n.XY=%s\n.Long=" + std::string(3000, 'x'));
    const std::string ace = "Provider =Microsoft.ACE.OLEDB.12.0;Data Source=";
    const struct {
        const char* path;
        int flags;
        std::string text;
    } cases[] = {
        {"C:\\Z\\a.MDB", 0, ace + "C:\\Z\\a.MDB;"},
        {"C:\\Z\\a.MDB", Database::readOnly, ace + "C:\\Z\\a.MDB;Mode=ReadOnly;"},
        {"C:\\Z\\a.UDL", Database::readOnly, "File Name=C:\\Z\\a.UDLMode=ReadOnly;"},
        {"C:\\Z\\a.udl", 0, ace + "C:\\Z\\a.udl;"},
        {"C:\\Z\\a.DB", Database::readOnly, "Driver=C:\\Z\\a.DB;Mode=Read;"},
        {"C:\\Z\\a.db", 0, "Driver=C:\\Z\\a.db;Mode=ReadWrite;"},
        {"C:\\Z\\a.LONG", 0, std::string(3000, 'x')},
        {nullptr, 0, ace + "*.mdb;"},
        {"ab", 0, ace + "*.mdb;"},
    };
    for (const auto& c : cases) {
        Database database;
        EXPECT_EQ(database.GetConnectString(c.path, c.flags), c.text);
        EXPECT_EQ(database.m_Path, c.path != nullptr && strlen(c.path) > 2 ? c.path : "*.mdb");
    }
}

TEST(ConnectionText, TheFileIsFoundBesideTheProjectOrAskedFor) {
    const SettingsFolders folders;
    const TemporaryFolder& folder = folders.folder();
    folder.write("affaire\\ACCESS\\points.mdb", "");
    folder.write("affaire\\ACCESS\\zones.mdb", "");
    folder.write("ailleurs\\Été.mdb", "");
    const std::string project = folder.path("affaire\\chantier.cht");
    const std::string points = folder.path("affaire\\ACCESS\\points.mdb");
    const std::string zones = folder.path("affaire\\ACCESS\\zones.mdb");
    const std::string summer = folder.path("ailleurs\\Été.mdb");
    std::strcpy(DOS::m_NomChtDef, project.c_str());
    const std::string builtIn =
        "Fichiers Microsoft(.mdb,.xls,.dbf)|*.mdb;*.XLS;*.MDB|Autre Base de Données (.UDL)|*.UDL|Tous|*.*||";
    const struct {
        const char* pattern;
        int flags;
        std::string chosen, path, asked, extension;  ///< what the dialog is asked; empty: not shown
    } cases[] = {
        {"", 0, summer, points, "", ""},
        {"zones.mdb", Database::askWhenMissing, summer, zones, "", ""},
        {"rien.mdb", Database::askWhenMissing, "", "rien.mdb", "rien.mdb", "mdb"},
        {"rien", Database::askWhenMissing, "", "rien", "MDB", ""},
        {"zones.mdb", Database::askAlways, summer, platform::upperCased1252(summer), zones, "mdb"},
    };
    for (const auto& c : cases) {
        FilePrompt prompt;
        prompt.chosen = c.chosen;
        Database database;
        database.GetConnectString(c.pattern, c.flags);
        EXPECT_EQ(database.m_Path, c.path.c_str());
        ASSERT_EQ(prompt.files.size(), c.asked.empty() ? 0u : 1u) << c.pattern;
        if (c.asked.empty()) continue;
        EXPECT_EQ(prompt.files[0].path, c.asked);
        EXPECT_EQ(prompt.files[0].extension, c.extension);
        EXPECT_EQ(prompt.files[0].filter, builtIn);
        EXPECT_EQ(prompt.files[0].style, 0x80002u);
    }
    DOS::m_NomChtDef[0] = '\0';
    const Cchantier before = chtdef;
    chtdef.m_cheminCht = project.c_str();
    Database database;
    database.GetConnectString("", 0);
    EXPECT_EQ(database.m_Path, points.c_str());
    chtdef = before;

    folders.local("TOREL", "[DATABASE64]\nTYPEFICH=Bases|*.mdb||\n");
    FilePrompt prompt;
    database.GetConnectString("rien.mdb", Database::askWhenMissing);
    EXPECT_EQ(prompt.files[0].filter, "Bases|*.mdb||");
}

TEST(ConnectionText, AMissingFileThatWasChosenBecomesADataLink) {
    const SettingsFolders folders;
    const std::string upper = platform::upperCased1252(folders.folder().path("NOUVEAU.MDB"));
    const std::string link = platform::upperCased1252(folders.folder().path("NOUVEAU.UDL"));
    RecordingMachine machine;
    platform::Replaced inForce(platform::replaceMachine, machine);
    FilePrompt prompt;
    prompt.chosen = folders.folder().path("NOUVEAU.MDB");
    Database database;
    database.GetConnectString("*.mdb", Database::askAlways);
    EXPECT_EQ(database.m_Path, upper.c_str()) << "refused";
    prompt.answer = platform::answerYes;
    EXPECT_EQ(database.GetConnectString("*.mdb", Database::askAlways), "File Name=" + link);
    // Yes and No, an exclamation mark, No is the default.
    EXPECT_EQ(prompt.asked[1],
              std::to_string(0x134) + " ** Voulez-vous CREER le Fichier : '" + link + "' **");
    EXPECT_EQ(folders.folder().read("NOUVEAU.UDL"), "");
    EXPECT_EQ(machine.calls, std::vector<std::string>{"open|" + link + "|"});
}
