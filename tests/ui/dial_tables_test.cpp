#include <kestra/dialogs/dial_tables.h>

#include <functional>

#include <gtest/gtest.h>
#include <kestra/database/database.h>
#include <kestra/dialogs/resource.h>
#include <platform/ado/ado.h>

#include "../support/temporary_folder.h"
#include "ui_support.h"

namespace {

std::string entriesIn(HWND dialog) {
    return entriesOf(::GetDlgItem(dialog, IDC_TABLES_LISTE));
}

void choose(HWND dialog, WPARAM entry) {
    ::SendDlgItemMessageA(dialog, IDC_TABLES_LISTE, LB_SETCURSEL, entry, 0);
}

void press(HWND dialog, int control, UINT notification = BN_CLICKED) {
    ::SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(control, notification),
                   reinterpret_cast<LPARAM>(::GetDlgItem(dialog, control)));
}

void click(HWND dialog, int control) {
    ::SendDlgItemMessageA(dialog, control, BM_CLICK, 0, 0);
}

}  // namespace

/// The module would have put them in force; the test stands for it.
[[maybe_unused]] const auto* const promptBefore = kestra::replaceDatabaseDialogs(&windowDialogs);

TEST(DialTables, TheTableOfARealDatabaseIsChosen) {
    const TemporaryFolder folder;
    Database database;
    const std::string path = database.CreateDatabase(folder.path("essai.mdb").c_str());
    const _ConnectionPtr connection = database.OpenDB(path.c_str(), 0, ado20::adUseClient);
    ASSERT_TRUE(connection);
    for (const char* statement : {"CREATE TABLE POINTS (NUM INTEGER)", "CREATE TABLE ÉTANGS (NUM INTEGER)",
                                  "CREATE VIEW HAUTS AS SELECT NUM FROM POINTS"})
        connection->Execute(statement);
    const struct {
        std::function<void(HWND)> work;
        long result;
        const char* table;
    } cases[] = {{[](HWND dialog) {
                      char caption[40] = "";
                      ::GetWindowTextA(dialog, caption, sizeof caption);
                      EXPECT_STREQ(caption, "Choix de Table");
                      choose(dialog, 1);
                      click(dialog, IDC_TABLES_REQUETES);
                      EXPECT_EQ(entriesIn(dialog), "POINTS|[ÉTANGS]|HAUTS|") << "remembered";
                      click(dialog, IDC_TABLES_TABLES);
                      EXPECT_EQ(entriesIn(dialog), "[HAUTS]|");
                      press(dialog, IDOK);
                  },
                  0, "HAUTS"},
                 {[](HWND dialog) { press(dialog, IDC_TABLES_LISTE, LBN_DBLCLK); }, 0, "POINTS"},
                 {[](HWND dialog) { press(dialog, IDCANCEL); }, -1, "avant"},
                 {[](HWND dialog) {
                      click(dialog, IDC_TABLES_TABLES);
                      EXPECT_EQ(entriesIn(dialog), "");
                      press(dialog, IDOK);
                  },
                  -1, "avant"}};
    for (const auto& each : cases) {
        CString table("avant");
        const DialogWorker worker(IDC_TABLES_LISTE, [&](HWND dialog) {
            EXPECT_EQ(entriesIn(dialog), "[POINTS]|ÉTANGS|");
            each.work(dialog);
        });
        EXPECT_EQ(database.SelectTable(table, connection, 0), each.result);
        EXPECT_EQ(table, each.table);
    }
}

TEST(DialTables, TheSystemsFileDialogGivesThePath) {
    const TemporaryFolder folder;
    const std::string chosen = folder.write("BASE.MDB", "");
    Database database;
    const DialogWorker worker(chosen);
    database.GetConnectString("*.mdb", Database::askAlways);
    CString upper(chosen.c_str());
    upper.MakeUpper();
    EXPECT_EQ(database.m_Path, upper);
    const DialogWorker refuser("");
    database.GetConnectString("absente.mdb", Database::askWhenMissing);
    EXPECT_EQ(database.m_Path, "absente.mdb");
}
