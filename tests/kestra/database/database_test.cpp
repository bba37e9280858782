#include <kestra/database/database.h>

#include <kestra/frame/frame_hooks.h>
#include <platform/files.h>

#include <tests/support/settings_folders.h>
#include "test_database.h"

namespace {

/// A machine with a process number.
struct NumberedMachine : RecordingMachine {
    unsigned long processId() override { return number; }
    unsigned long number = 0;

  private:
    platform::Replaced<platform::Machine> m_inForce{platform::replaceMachine, *this};
};

struct ListPrompt : platform::Prompt {
    platform::Answer ask(unsigned, const char*, const char*) override { return platform::answerNo; }
    bool chooseText(platform::ListQuestion& question) override {
        work(question);
        return answer;
    }
    std::function<void(platform::ListQuestion&)> work;
    bool answer = true;

  private:
    platform::Replaced<platform::Prompt> m_inForce{platform::replacePrompt, *this};
};

bool isThere(const std::string& path) {
    return platform::theFiles().kind(path.c_str()) == platform::FileKind::file;
}

}  // namespace

TEST(Database, TheErreurFormsSayWhatFailed) {
    RecordedTraces traces;
    EXPECT_EQ(Database::Erreur("message 100 %d %%", "où"), -1);
    EXPECT_EQ(Database::Erreur(static_cast<const char*>(nullptr), nullptr), -1);
    EXPECT_EQ(Database::Erreur(_com_error(ado20::hrNoTable, "Table absente %s", "moteur"), "Lire"), -4);
    EXPECT_EQ(Database::m_LastError.m_Description, "Table absente %s");
    EXPECT_EQ(Database::m_LastError.m_Code, ado20::hrNoTable);
    EXPECT_EQ(traces.lines(), (std::vector<std::string>{"\n***Erreur où:message 100 %d %%", "\n***Erreur :",
                                                        "\n***Erreur Lire:Table absente %s"}));
}

TEST(Database, WhatCannotBeOpenedIsReportedByTheNameThatWasAsked) {
    const SettingsFolders folders;
    const TemporaryFolder& folder = folders.folder();
    folder.write("dossier.mdb\\x", "");
    const std::string garbage = folder.write("faux.mdb", std::string(5000, '\x07'));
    const std::string cut = folder.write("court.mdb", "SQLite format 3");
    for (const std::string& path :
         {folder.path("absent.mdb"), folder.path("dossier.mdb"), garbage, cut,
          std::string("nulle part d'été [x].mdb"), folder.path("absent.UDL"), std::string(5000, 'x')}) {
        RecordedTraces traces;
        Database database;
        EXPECT_FALSE(database.OpenDB(path.c_str(), 0, ado20::adUseClient)) << path;
        const std::string start = "\n***Erreur Impossible d'ouvrir le Fichier :'" + path + "':";
        ASSERT_EQ(errorLines().size(), 1u);
        EXPECT_EQ(errorLines()[0].substr(0, start.size()), start);
        EXPECT_GT(errorLines()[0].size(), start.size()) << "and why";
        EXPECT_LT(Database::m_LastError.m_Code, 0);
    }
    EXPECT_FALSE(isThere(folder.path("absent.mdb")));
    EXPECT_EQ(folder.read("faux.mdb"), std::string(5000, '\x07'));
}

TEST(Database, DatabasesAreMadeAnewAndOpened) {
    const SettingsFolders folders;
    folders.local("TOREL", "[DATABASE]\nDEBUG=1,9\n");
    const TemporaryFolder& folder = folders.folder();
    const std::string path = folder.write("l'été [1] 'x'.mdb", "what was here goes");
    RecordedTraces traces;
    Database database;
    EXPECT_EQ(Database::debug, 1);
    // The answer may be handed on: it is the module-wide text.
    const _ConnectionPtr connection =
        database.OpenDB(database.CreateDatabase(path.c_str()), Database::readOnly, ado20::adUseClient);
    Database::debug = 0;
    ASSERT_TRUE(connection);
    EXPECT_EQ(connection->GetMode() & ado20::adModeReadWrite, ado20::adModeRead);
    EXPECT_EQ(errorLines(), std::vector<std::string>());
    const std::string opened =
        "\nGetConnectString()=Provider =Microsoft.ACE.OLEDB.12.0;Data Source=" + path + ";Mode=ReadOnly;";
    EXPECT_EQ(std::count(traces.lines().begin(), traces.lines().end(), opened), 1);
    EXPECT_EQ(traces.lines().back().substr(0, 15), "\npConn->Open()=");
}

TEST(Database, ADatabaseThatCannotBeMadeGivesAnEmptyPath) {
    const TemporaryFolder folder;
    for (const std::string& path : {folder.path("absent\\x.mdb"), std::string(), folder.folder()}) {
        RecordedTraces traces;
        Database database;
        EXPECT_STREQ(database.CreateDatabase(path.c_str()), "");
        const std::string start = "\n***Erreur Impossible de creer le Fichier:'" + path + "' :";
        ASSERT_EQ(errorLines().size(), 1u);
        EXPECT_EQ(errorLines()[0].substr(0, start.size()), start);
    }
}

TEST(Database, TheTemporaryDatabaseIsNamedAfterTheProcess) {
    NumberedMachine machine;
    platform::theFiles().createFolder("C:\\TEMP");
    for (const auto& [number, path] :
         {std::pair{0x12ABCul, "C:\\TEMP\\~12abcTempDb.Mdb"}, std::pair{7ul, "C:\\TEMP\\~0007TempDb.Mdb"}}) {
        machine.number = number;
        Database database;
        EXPECT_STREQ(database.CreateDatabase(nullptr), path);
        EXPECT_EQ(Database::m_TempDatabase, path);
        EXPECT_STREQ(kestra::temporaryDatabase(), path) << "deleted at the last exit";
        EXPECT_TRUE(isThere(path));
        platform::theFiles().remove(path);
    }
    Database::m_TempDatabase.Empty();
}

TEST(Database, DataLinksAreMadeAndEdited) {
    const TemporaryFolder folder;
    folder.write("lien.udl", "[oledb]");
    const struct {
        std::string path, own;
        int flags, result;
        std::string edited;  ///< empty: nothing was
    } cases[] = {
        {folder.path("lien.udl"), "", 0, 1, folder.path("lien.udl")},
        {folder.path("neuf"), "", 0, 1, folder.path("neuf.UDL")},
        {"", folder.path("lien.udl"), 1, 1, folder.path("lien.udl")},
        {folder.path("refus.udl"), "", 1, 0, ""},
        {folder.path("absent\\lien.udl"), "", 0, 0, ""},
        {"", "", 0, 0, ""},
    };
    for (const auto& c : cases) {
        NumberedMachine machine;
        RecordingPrompt prompt;
        platform::Replaced inForce(platform::replacePrompt, prompt);
        Database database;
        database.m_Path = c.own.c_str();
        EXPECT_EQ(database.EditUdl(c.path.c_str(), c.flags), c.result) << c.path;
        EXPECT_EQ(machine.calls,
                  c.edited.empty() ? std::vector<std::string>() : std::vector{"open|" + c.edited + "|"});
        EXPECT_EQ(prompt.texts.size(), c.path == folder.path("refus.udl") ? 1u : 0u);
    }
    EXPECT_FALSE(isThere(folder.path("refus.udl")));
    EXPECT_EQ(folder.read("lien.udl"), "[oledb]");
}

TEST(Database, ATableOrAQueryIsChosen) {
    const TestDatabase data({"CREATE TABLE POINTS (NUM INTEGER)", "CREATE TABLE \"L'été [1]\" (NUM INTEGER)",
                             "CREATE VIEW HAUTS AS SELECT NUM FROM POINTS"});
    using Entries = std::vector<std::string>;
    ListPrompt prompt;
    Database database;
    CString table("points");
    prompt.work = [&](platform::ListQuestion& question) {
        EXPECT_EQ(question.caption, "Choix de Table");
        EXPECT_EQ(question.boxes[0].label + question.boxes[1].label, "TablesRequêtes");
        EXPECT_TRUE(question.boxes[0].isChecked && !question.boxes[1].isChecked);
        EXPECT_EQ(question.entries, (Entries{"L'été [1]", "POINTS"}));
        EXPECT_EQ(question.selected, 1) << "the name that was handed in";
        question.boxes[1].isChecked = true;
        question.refill(question);
        EXPECT_EQ(question.entries, (Entries{"L'été [1]", "POINTS", "HAUTS"}));
        question.boxes[0].isChecked = false;
        question.refill(question);
        EXPECT_EQ(question.entries, Entries{"HAUTS"});
    };
    EXPECT_EQ(database.SelectTable(table, data.connection(), 1), 0);
    EXPECT_EQ(table, "HAUTS");
    prompt.work = [](platform::ListQuestion& question) { EXPECT_EQ(question.selected, 0); };
    prompt.answer = false;
    EXPECT_EQ(database.SelectTable(table, data.connection(), 0), -1);
    EXPECT_EQ(table, "HAUTS");

    RecordedTraces traces;
    prompt.answer = true;
    prompt.work = [](platform::ListQuestion& question) { EXPECT_EQ(question.entries, Entries()); };
    EXPECT_EQ(database.SelectTable(table, nullptr, 0), -1) << "nothing to choose";
    EXPECT_EQ(errorLines().size(), 1u);
    EXPECT_EQ(Database::m_LastError.m_Code, ado20::hrPointer);
}
