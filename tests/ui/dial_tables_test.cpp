#include <kestra/dialogs/dial_tables.h>

#include <functional>

#include <gtest/gtest.h>
#include <kestra/database/database.h>
#include <kestra/dialogs/resource.h>
#include <platform/ado/ado.h>

#include "../support/temporary_folder.h"
#include "ui_support.h"

namespace {

/// Works the first dialog of this process that has a control of that number, as soon as it is there.
class DialogWorker {
  public:
    DialogWorker(int control, std::function<void(HWND)> work) {
        s_control = control;
        s_work = std::move(work);
        s_timer = ::SetTimer(nullptr, 0, 50, &onTimer);
    }
    ~DialogWorker() { ::KillTimer(nullptr, s_timer); }
    DialogWorker(const DialogWorker&) = delete;
    DialogWorker& operator=(const DialogWorker&) = delete;

  private:
    static void CALLBACK onTimer(HWND, UINT, UINT_PTR timer, DWORD) {
        for (HWND window = nullptr;
             (window = ::FindWindowExA(nullptr, window, "#32770", nullptr)) != nullptr;) {
            if (::GetDlgItem(window, s_control) == nullptr) continue;
            ::KillTimer(nullptr, timer);
            s_work(window);
            return;
        }
    }
    static inline int s_control;
    static inline std::function<void(HWND)> s_work;
    static inline UINT_PTR s_timer;
};

using Entries = std::vector<std::string>;

Entries entriesOf(HWND dialog) {
    CListBox list;
    list.Attach(::GetDlgItem(dialog, IDC_TABLES_LISTE));
    Entries entries;
    CString entry;
    for (int i = 0; i < list.GetCount(); ++i) {
        list.GetText(i, entry);
        entries.emplace_back(entry.view());
    }
    list.Detach();
    return entries;
}

LRESULT listMessage(HWND dialog, UINT message, WPARAM value) {
    return ::SendDlgItemMessageA(dialog, IDC_TABLES_LISTE, message, value, 0);
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
    } cases[] = {
        {[](HWND dialog) {
             char caption[40] = "";
             ::GetWindowTextA(dialog, caption, sizeof caption);
             EXPECT_STREQ(caption, "Choix de Table");
             EXPECT_TRUE(::IsDlgButtonChecked(dialog, IDC_TABLES_TABLES));
             EXPECT_FALSE(::IsDlgButtonChecked(dialog, IDC_TABLES_REQUETES));
             EXPECT_EQ(entriesOf(dialog).size(), 2u);
             EXPECT_EQ(listMessage(dialog, LB_GETCURSEL, 0), 0);
             listMessage(dialog, LB_SETCURSEL, 1);
             click(dialog, IDC_TABLES_REQUETES);
             EXPECT_EQ(entriesOf(dialog).size(), 3u);
             EXPECT_EQ(listMessage(dialog, LB_GETCURSEL, 0), 1) << "remembered";
             click(dialog, IDC_TABLES_TABLES);
             EXPECT_EQ(entriesOf(dialog), Entries{"HAUTS"});
             press(dialog, IDOK);
         },
         0, "HAUTS"},
        {[](HWND dialog) {
             listMessage(dialog, LB_SETCURSEL, 0);
             press(dialog, IDC_TABLES_LISTE, LBN_DBLCLK);
         },
         0, nullptr},
        {[](HWND dialog) { press(dialog, IDCANCEL); }, -1, "avant"},
        {[](HWND dialog) {
             click(dialog, IDC_TABLES_TABLES);
             EXPECT_EQ(entriesOf(dialog), Entries());
             press(dialog, IDOK);
         },
         -1, "avant"},
    };
    for (const auto& c : cases) {
        CString table("avant");
        Entries offered;
        const DialogWorker worker(IDC_TABLES_LISTE, [&](HWND dialog) {
            offered = entriesOf(dialog);
            c.work(dialog);
        });
        EXPECT_EQ(database.SelectTable(table, connection, 0), c.result);
        ASSERT_FALSE(offered.empty());
        EXPECT_EQ(table, c.table != nullptr ? c.table : offered[0].c_str());
    }
}

TEST(DialTables, TheSystemsFileDialogGivesThePath) {
    constexpr int fileName = 0x47C;
    const TemporaryFolder folder;
    const std::string chosen = folder.write("BASE.MDB", "");
    Database database;
    const DialogWorker worker(fileName, [&](HWND dialog) {
        ::SetDlgItemTextA(dialog, fileName, chosen.c_str());
        ::PostMessageA(dialog, WM_COMMAND, IDOK, 0);
    });
    database.GetConnectString("*.mdb", Database::askAlways);
    CString upper(chosen.c_str());
    upper.MakeUpper();
    EXPECT_EQ(database.m_Path, upper);
    const DialogWorker refuser(fileName,
                               [&](HWND dialog) { ::PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0); });
    database.GetConnectString("absente.mdb", Database::askWhenMissing);
    EXPECT_EQ(database.m_Path, "absente.mdb");
}
