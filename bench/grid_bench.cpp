#include <cstdio>
#include <string>
#include <vector>

#include <bench/side_by_side.h>
#include <kestra/controls/data/ado_list_ctrl.h>
#include <kestra/controls/edit_list_ctrl.h>
#include <sqlite3.h>
#include <tests/support/counted_registry.h>
#include <tests/ui/ui_support.h>

/// The editable grid: filling it, against the platform's messages; the rows painted while its current cell
/// moves; the registry calls of a layout; the rows that a table of a million costs; what a thousand grids
/// leave behind.

namespace {

constexpr int rowCount = 100000;
constexpr int columnCount = 8;

template <class Grid>
void addColumns(Grid& grid, int columns) {
    for (int col = 0; col < columns; ++col) {
        grid.InsertColumn(col, ("Colonne " + std::to_string(col)).c_str(), LVCFMT_LEFT, 70, 'T', 20);
    }
}

/// Redrawing held back while a list is filled, as whoever fills one does; also that of a hidden list.
class Filling {
  public:
    explicit Filling(HWND list) : m_list(list) {
        ::SendMessageA(list, WM_SETREDRAW, FALSE, 0);
        ::SendMessageA(list, LVM_DELETEALLITEMS, 0, 0);
        ::SendMessageA(list, LVM_SETITEMCOUNT, rowCount, 0);
    }
    ~Filling() { ::SendMessageA(m_list, WM_SETREDRAW, TRUE, 0); }
    Filling(const Filling&) = delete;
    Filling& operator=(const Filling&) = delete;

  private:
    HWND m_list;
};

void fillGrid(CEditListCtrl& grid) {
    const Filling filling(grid);
    for (int row = 0; row < rowCount; ++row) {
        grid.InsertItem(row, "Borne");
        for (int col = 1; col < columnCount; ++col) grid.SetItemText(row, col, "12345,678");
    }
    grid.UpdateItemCount();
}

void fillPlain(HWND list) {
    const Filling filling(list);
    for (int row = 0; row < rowCount; ++row) {
        LVITEMA item = {};
        item.mask = LVIF_TEXT;
        item.iItem = row;
        item.pszText = const_cast<char*>("Borne");
        ::SendMessageA(list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
        item.pszText = const_cast<char*>("12345,678");
        for (item.iSubItem = 1; item.iSubItem < columnCount; ++item.iSubItem) {
            ::SendMessageA(list, LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
        }
    }
}

void benchFilling(CWnd& parent) {
    CEditListCtrl grid;
    grid.CListCtrl::Create(WS_CHILD | LVS_REPORT, {0, 0, 600, 300}, &parent, 1);
    addColumns(grid, columnCount);
    const HWND plain = ::CreateWindowExA(0, WC_LISTVIEWA, "", WS_CHILD | LVS_REPORT, 0, 0, 600, 300, parent,
                                         nullptr, nullptr, nullptr);
    for (int col = 0; col < columnCount; ++col) {
        LVCOLUMNA column = {};
        column.mask = LVCF_WIDTH | LVCF_SUBITEM;
        column.cx = 70;
        column.iSubItem = col;
        ::SendMessageA(plain, LVM_INSERTCOLUMNA, static_cast<WPARAM>(col), reinterpret_cast<LPARAM>(&column));
    }
    // The two fill a list in turn for many seconds: once to warm up, three times to measure.
    bench::sideBySide(
        "editable grid, filling 100,000 x 8", 1.3, [&] { fillGrid(grid); }, "LVM_INSERTITEM, LVM_SETITEMTEXT",
        [&] { fillPlain(plain); }, 3);
    ::DestroyWindow(plain);
}

/// Counts the rows that it is asked to draw, and those among them that are not in sight.
struct CountingGrid : CEditListCtrl {
    int drawn = 0, unseen = 0;
    void DrawItem(DRAWITEMSTRUCT* draw) override {
        const RECT client = GetClientRect();
        RECT seen = {};
        ++drawn;
        unseen += ::IntersectRect(&seen, &client, &draw->rcItem) ? 0 : 1;
        CEditListCtrl::DrawItem(draw);
    }
};

void benchMoving(CWnd& parent) {
    CountingGrid grid;
    grid.CListCtrl::Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, {0, 0, 600, 300}, &parent, 1);
    addColumns(grid, columnCount);
    grid.m_LastFixedCol = 1;
    grid.m_EditFlags = CEditListCtrl::editable;
    grid.Initialize(0);
    for (int row = 0; row < 2000; ++row) grid.InsertItem(row, "Borne");
    grid.SetFocus();
    grid.SetCurrentSubItem(0, 1);
    grid.UpdateWindow();
    grid.drawn = grid.unseen = 0;
    const double time = bench::milliseconds([&] {
        for (int i = 0; i < 1000; ++i) {
            grid.KeyboardHook(grid.m_pActiveEditor, VK_DOWN, 1);
            grid.UpdateWindow();
        }
    });
    std::printf("%-56s row %d reached, %d rows drawn, %d of them out of sight (at most 0), %.0f ms\n",
                "editable grid, 1,000 Down keys, painted at each", grid.m_FocusRow, grid.drawn, grid.unseen,
                time);
}

void benchLayout(CWnd& parent) {
    CEditListCtrl grid;
    grid.CListCtrl::Create(WS_CHILD | LVS_REPORT, {0, 0, 600, 300}, &parent, 1);
    addColumns(grid, 200);
    CountedRegistry registry;
    const int saved = grid.SaveHeadToReg("Software\\Kestra Essais\\Mesure", nullptr);
    const int saveCalls = registry.calls;
    const int loaded = grid.LoadHeadFromReg(nullptr, 7, nullptr);
    const int loadCalls = registry.calls - saveCalls;
    grid.m_RegName.Empty();
    registry.deleteTree(HKEY_CURRENT_USER, "Software\\Kestra Essais");
    std::printf("%-56s saved %d in %d calls: 8 a column and %d; loaded %d in %d calls: 5 a column and %d\n",
                "layout of 200 columns, registry calls (at most 8 each)", saved, saveCalls,
                saveCalls - 8 * saved, loaded, loadCalls, loadCalls - 5 * loaded);
}

/// Rows that the database engine itself has handed out, keys included.
std::int64_t engineRows = 0;

int countRow(unsigned, void*, void*, void*) {
    ++engineRows;
    return 0;
}

int countRowsOf(sqlite3* database, const char**, const struct sqlite3_api_routines*) {
    return sqlite3_trace_v2(database, SQLITE_TRACE_ROW, countRow, nullptr);
}

void benchMillionRows(CWnd& parent) {
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(countRowsOf));
    const _ConnectionPtr connection = ado20::createConnection(ado20::Engine::embedded);
    connection->Open("Provider=SQLite;Data Source=:memory:");
    connection->Execute("CREATE TABLE POINTS (NUM INTEGER NOT NULL PRIMARY KEY, NOM VARCHAR(20), Z DOUBLE)");
    connection->Execute(
        "WITH RECURSIVE N(I) AS (SELECT 1 UNION ALL SELECT I+1 FROM N WHERE I<1000000) "
        "INSERT INTO POINTS SELECT I, 'Borne ' || I, I/8.0 FROM N");
    CAdoListCtrl list;
    list.Create(WS_CHILD | WS_VISIBLE, {0, 0, 600, 350}, &parent, 9);
    const double open = bench::milliseconds([&] { list.Open("POINTS", connection); });
    list.SetFocus();
    const auto counted = [&list](const char* what, auto&& work) {
        const std::int64_t listBefore = list.RowsRead(), engineBefore = engineRows;
        const double time = bench::milliseconds([&] {
            work();
            list.UpdateWindow();
        });
        std::printf("%-56s %lld rows read by the list, %lld by the engine (below 300), %.1f ms%s\n", what,
                    static_cast<long long>(list.RowsRead() - listBefore),
                    static_cast<long long>(engineRows - engineBefore), time,
                    engineRows - engineBefore < 300 ? "" : "  MISSED");
    };
    std::printf("%-56s %d rows, keys read in %.0f ms\n", "data-bound grid, table of 1,000,000 opened",
                list.GetItemCount(), open);
    counted("data-bound grid, first paint", [] {});
    counted("data-bound grid, jump to the last row", [&] { list.SetCurrentSubItemPos(2000000, 10000); });
    counted("data-bound grid, back to the first row", [&] { list.SetCurrentSubItemPos(0, 1); });
    connection->Close();
}

void benchRounds() {
    const auto round = [] {
        HiddenParent owner;
        CEditListCtrl grid;
        grid.CListCtrl::Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, {0, 0, 600, 300}, &owner, 1);
        addColumns(grid, columnCount);
        grid.m_EditFlags = CEditListCtrl::editable;
        grid.Initialize(0);
        grid.SetItemHeight(20);
        grid.InsertItem(0, "Borne");
        grid.SetCurrentSubItem(0, 1);
    };
    for (int i = 0; i < 3; ++i) round();
    const HandleLevels before;
    for (int i = 0; i < 1000; ++i) round();
    const HandleLevels after;
    std::printf("%-56s before: %s; after: %s%s\n", "editable grid, opened and closed 1,000 times, handles",
                before.text().c_str(), after.text().c_str(), after.heldSince(before) ? "" : "  MISSED");
}

}  // namespace

int main() {
    CWnd parent;
    parent.Create(nullptr, "bench", WS_OVERLAPPEDWINDOW | WS_VISIBLE, {0, 0, 640, 400}, nullptr, 0);
    benchFilling(parent);
    benchMoving(parent);
    benchLayout(parent);
    benchMillionRows(parent);
    benchRounds();
    return 0;
}
