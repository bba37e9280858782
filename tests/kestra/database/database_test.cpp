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

bool isThere(const std::string& path) {
    return platform::theFiles().kind(path.c_str()) == platform::FileKind::file;
}

}  // namespace

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
