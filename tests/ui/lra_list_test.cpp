#include <algorithm>

#include <gtest/gtest.h>
#include <platform/window/device_context.h>

#include "ui_support.h"

namespace {

class LraList : public testing::Test {
  protected:
    HiddenParent parent;
    TestList list{parent, 4};

    void addRows(std::initializer_list<const char*> cells) {
        for (const char* cell : cells) list.addRow({cell, cell, cell, cell});
    }
    /// Puts the cursor into the header at an offset from its left edge.
    void placeCursor(int x) {
        POINT place = {x, 5};
        list.m_HeaderCtrl.ClientToScreen(&place);
        ::SetCursorPos(place.x, place.y);
    }
};

TEST_F(LraList, StartsWithTheDocumentedFields) {
    EXPECT_EQ(list.m_pSortProc, &CLraListCtrl::LraSortCompareProc);
    EXPECT_EQ(list.m_ColSort, 1);
    EXPECT_EQ(list.m_Options, 1);
    EXPECT_EQ(list.m_FocusRow, -1);
    EXPECT_EQ(list.m_FocusSubItem, -1);
    EXPECT_EQ(list.m_ItemHeight, 0);
    ASSERT_NE(list.GetHeaderCtrl()->m_hWnd, nullptr);
    EXPECT_EQ(::GetDlgCtrlID(list.GetHeaderCtrl()->m_hWnd), 0);
    EXPECT_STREQ(list.GetRuntimeClass()->m_lpszClassName, "CLraListCtrl");
    EXPECT_TRUE(list.IsKindOf(CWnd::runtimeClass));
}

TEST_F(LraList, ColumnRecords) {
    const auto* plain = list.GetMyListHeader(2);
    ASSERT_NE(plain, nullptr);
    EXPECT_EQ(plain->FtypeData, 'T');
    EXPECT_EQ(plain->nParam, 20);
    EXPECT_EQ(plain->ColStyle, 0);
    EXPECT_EQ(list.m_nColumns, 4);
    EXPECT_EQ(list.GetMyListHeader(4), nullptr);
    EXPECT_EQ(list.GetMyListHeader(-1), nullptr);
    const auto* boolean = list.InsertColumn(4, "b", LVCFMT_CENTER, -1, 'B', 0);
    ASSERT_NE(boolean, nullptr);
    EXPECT_EQ(boolean->ColStyle, 3);
    EXPECT_EQ(list.InsertColumn(-1, "x", 0, 10, 0, 0), nullptr);

    HDITEMA format = {};
    format.mask = HDI_FORMAT;
    list.m_HeaderCtrl.GetItem(4, format);
    EXPECT_EQ(format.fmt & (HDF_OWNERDRAW | HDF_IMAGE | HDF_CENTER), HDF_OWNERDRAW | HDF_CENTER);
}

TEST_F(LraList, AHeaderItemWithoutARecordGetsAZeroedOne) {
    for (const LPARAM foreign : {LPARAM{0}, LPARAM{999}, LPARAM{-5}}) {
        HDITEMA item = {};
        item.mask = HDI_LPARAM | HDI_WIDTH;
        item.lParam = foreign;
        item.cxy = 30;
        const int added = list.m_HeaderCtrl.InsertItem(4, item);
        const auto* record = list.GetMyListHeader(added);
        ASSERT_NE(record, nullptr) << foreign;
        EXPECT_EQ(record->Width + record->ColStyle + record->FtypeData + record->nParam + record->ReadOnly,
                  0);
        EXPECT_EQ(list.GetMyListHeader(added), record);
    }
}

TEST_F(LraList, DeletingAColumnReleasesEditorAndBuffer) {
    struct Editor : CWnd {
        explicit Editor(bool& gone) : m_gone(gone) {}
        ~Editor() override { m_gone = true; }
        bool& m_gone;
    };
    bool gone[3] = {};
    for (int col = 1; col < 4; ++col) {
        auto* const editor = new Editor(gone[col - 1]);
        editor->Create("EDIT", "", WS_CHILD | WS_VISIBLE, {0, 0, 10, 10}, &list, 500);
        list.GetMyListHeader(col)->pEditWnd = editor;
        list.GetMyListHeader(col)->pBuffer = std::malloc(8);
    }
    EXPECT_EQ(list.Initialize(0), 1);
    EXPECT_FALSE(list.GetMyListHeader(1)->pEditWnd->IsWindowVisible());
    EXPECT_TRUE(list.DeleteColumn(1));
    EXPECT_TRUE(gone[0]);
    list.m_HeaderCtrl.DeleteItem(1);  // behind the list's back
    EXPECT_TRUE(gone[1]);
    list.DestroyWindow();
    EXPECT_TRUE(gone[2]);
}

TEST_F(LraList, HiddenColumnsRememberTheirWidth) {
    struct Case {
        int set, result, shown;
    };
    // The low 16 bits reach the platform; 0 hides and keeps what was remembered before.
    for (const Case& each : {Case{80, 80, 80},
                             {-80, -80, -80},
                             {0, -80, -80},
                             {45, 45, 45},
                             {0, 45, -45},
                             {65536 + 70, 65536 + 70, 70}}) {
        EXPECT_EQ(list.SetColumnWidth(2, each.set), each.result) << each.set;
        EXPECT_EQ(list.GetColumnWidth(2), each.shown) << each.set;
    }
    EXPECT_EQ(list.SetColumnWidth(9, 50), 0);
    EXPECT_EQ(list.GetColumsWidth(), 60 + 60 + 70 + 60);
}

TEST_F(LraList, GetValueAcceptsTheRowPastTheLast) {
    addRows({"a", "b"});
    struct Case {
        int row, col, result;
        const char* text;
    };
    for (const Case& each : {Case{0, 0, 1, "a"},
                             {1, 3, 1, "b"},
                             {2, 0, 1, ""},
                             {3, 0, 0, "kept"},
                             {-1, 0, 0, "kept"},
                             {0, -1, 0, "kept"}}) {
        CString text("kept");
        EXPECT_EQ(list.GetValue(each.row, each.col, text), each.result) << each.row << "," << each.col;
        EXPECT_STREQ(text, each.text);
    }
}

TEST_F(LraList, CellsOfAnyLengthAndWideItemData) {
    for (const int length : {0, 509, 510, 511, 512, 2047, 100000}) {
        const std::string whole = std::string(static_cast<std::size_t>(length), 'x') + "é";
        list.addRow({whole.c_str()}, 0xFEDCBA9876543210u);
        CString text;
        EXPECT_EQ(list.GetValue(list.GetItemCount() - 1, 0, text), 1);
        EXPECT_EQ(text.view(), whole) << length;
    }
    EXPECT_EQ(list.GetItemData(0), 0xFEDCBA9876543210u);
    list.click(0);
    EXPECT_EQ(list.GetItemData(3), 0xFEDCBA9876543210u);
}

TEST_F(LraList, DividerDoubleClickFitsTheCellsNotTheCaption) {
    addRows({"i", "a rather long text in a cell", "m"});
    list.m_nItems = 0;
    list.SetItemText(0, 3, "");
    list.SetItemText(1, 3, "");
    list.SetItemText(2, 3, "");
    CClientDC dc(list);
    const platform::Selected font(dc, list.GetFont());
    EXPECT_EQ(list.notify(HDN_DIVIDERDBLCLICKW, 1), 0);
    EXPECT_EQ(list.GetColumnWidth(1), dc.GetTextExtent("a rather long text in a cell").cx + 15);
    list.SetColumnWidth(3, -33);
    list.notify(HDN_DIVIDERDBLCLICKW, 3);
    EXPECT_EQ(list.GetColumnWidth(3), -33);  // without any text the width stays, hidden as it was
}

TEST_F(LraList, ControlASelectsAllWhereAllowed) {
    addRows({"a", "b", "c"});
    BYTE keys[256] = {};
    ::GetKeyboardState(keys);
    const auto selectedAfterA = [&](BYTE control, std::int32_t options) {
        list.m_Options = options;
        list.UnselectAll(-1, 0);
        keys[VK_CONTROL] = control;
        ::SetKeyboardState(keys);
        list.SendMessage(WM_KEYDOWN, 'A', 1);
        return list.SendMessage(LVM_GETSELECTEDCOUNT);
    };
    EXPECT_EQ(selectedAfterA(0x80, 1), 3);
    EXPECT_EQ(selectedAfterA(0x80, 2), 0);
    EXPECT_EQ(selectedAfterA(0, 1) == 3, false);
    keys[VK_CONTROL] = 0;
    ::SetKeyboardState(keys);
    list.m_nItems = 2;
    EXPECT_EQ(list.onSelectAll(), 2);  // the count as it was cached
}

TEST_F(LraList, UnselectAllKeepsRowsByIndexAndData) {
    for (int row = 0; row < 50; ++row) list.addRow({"r"}, static_cast<std::uint64_t>(row % 25));
    list.onSelectAll();
    EXPECT_EQ(list.UnselectAll(3, 7), 32);
    EXPECT_EQ(list.m_FocusRow, 32);
    EXPECT_EQ(list.m_FocusSubItem, -1);
    EXPECT_EQ(list.SendMessage(LVM_GETSELECTEDCOUNT), 3);  // 3, 7 and 32
    EXPECT_EQ(list.GetNextItem(-1, LVNI_FOCUSED), 32);
    EXPECT_LE(list.SendMessage(LVM_GETTOPINDEX), 32);
    EXPECT_GT(list.SendMessage(LVM_GETTOPINDEX), 0);
    EXPECT_EQ(list.UnselectAll(-1, 0), -1);
    EXPECT_EQ(list.SendMessage(LVM_GETSELECTEDCOUNT), 0);
    EXPECT_EQ(list.m_FocusRow, 32);
}

TEST_F(LraList, FocusedPositionComesBackAfterScrolling) {
    EXPECT_TRUE(list.GetFocusedPos(-1).IsRectNull());
    for (int row = 0; row < 60; ++row) list.addRow({"r"});
    list.m_FocusRow = 0;
    EXPECT_TRUE(list.GetFocusedPos(-1).IsRectNull()) << "a remembered row 0 counts as none";
    list.m_FocusRow = 4;
    CRect fourth, last;
    list.GetItemRect(4, fourth, LVIR_BOUNDS);
    list.GetItemRect(59, last, LVIR_BOUNDS);
    EXPECT_EQ(list.GetFocusedPos(-1), fourth);
    EXPECT_EQ(list.GetFocusedPos(1000), last);

    list.EnsureVisible(30, FALSE);
    const CRect before = list.GetFocusedPos(30);
    list.Scroll({0, fourth.Height() * 5});
    EXPECT_NE(list.GetFocusedPos(30).top, before.top);
    EXPECT_EQ(list.SetFocusedPos(before, 30), before);
    list.m_FocusRow = -1;
    EXPECT_EQ(list.SetFocusedPos({1, 2, 3, 4}, -1), CRect(1, 2, 3, 4));
    list.m_FocusRow = 0;
    EXPECT_GE(list.SetFocusedPos(fourth, -1).top, 0) << "here a remembered row 0 counts";
}

TEST_F(LraList, RowHeight) {
    EXPECT_EQ(list.SetItemHeight(100), 0);
    EXPECT_EQ(list.SetItemHeight(0), 0);
    EXPECT_EQ(list.SetItemHeight(40), 40);
    list.addRow({"a"});
    CRect row;
    list.GetItemRect(0, row, LVIR_BOUNDS);
    EXPECT_GE(row.Height(), 40);
    EXPECT_EQ(list.SetItemHeight(40), row.Height() - 1);
    EXPECT_EQ(list.ItemHeight(), row.Height() - 1);
    list.SetItemHeight(60);
    list.GetItemRect(0, row, LVIR_BOUNDS);
    EXPECT_GE(row.Height(), 60);
}

TEST_F(LraList, InitializeMakesAnOwnerDrawnReport) {
    list.ModifyStyle(0, LVS_SORTASCENDING);
    EXPECT_EQ(list.Initialize(0), 1);
    EXPECT_EQ(list.GetStyle() & (LVS_TYPEMASK | LVS_OWNERDRAWFIXED | LVS_SORTASCENDING | LVS_SORTDESCENDING),
              DWORD{LVS_REPORT | LVS_OWNERDRAWFIXED});
    EXPECT_EQ(list.m_Initialized, 1);
    list.m_ColSort = -3;
    EXPECT_EQ(list.Initialize(0), 1);
    EXPECT_EQ(list.m_ColSort, -3);
    EXPECT_EQ(list.Initialize(1), 1);
    EXPECT_EQ(list.m_ColSort, 1);
    EXPECT_EQ(list.m_Initialized, 0);
}

TEST_F(LraList, OwnerDrawnRowsShowTextsAndCheckBoxes) {
    list.InsertColumn(4, "b", LVCFMT_CENTER, 40, 'B', 0);
    list.addRow({"Ligne", "", "", "", "1"});
    list.Initialize(0);
    const CRect row(0, 0, 280, 20);
    CMemoryDC picture({row.right, row.bottom});
    DRAWITEMSTRUCT draw = {};
    draw.CtlType = ODT_LISTVIEW;
    draw.hwndItem = list;
    draw.hDC = picture;
    draw.rcItem = row;
    parent.SendMessage(WM_DRAWITEM, 77, reinterpret_cast<LPARAM>(&draw));
    const auto painted = [&](LONG left, LONG right) {
        int pixels = 0;
        for (LONG x = left; x < right; ++x) {
            for (LONG y = 0; y < row.bottom; ++y)
                pixels += picture.GetPixel(x, y) != ::GetSysColor(COLOR_WINDOW);
        }
        return pixels;
    };
    EXPECT_GT(painted(0, 60), 10);
    EXPECT_EQ(painted(60, 240), 0);
    EXPECT_GT(painted(240, 280), 10);
}

TEST_F(LraList, ColumnZeroStaysFirst) {
    struct Case {
        UINT code;
        int item, cursor;
        LRESULT refused;
    };
    for (const Case& each : {Case{HDN_BEGINDRAG, 0, 100, 1},
                             {HDN_BEGINDRAG, 2, 100, 0},
                             {HDN_ENDDRAG, 2, 30, 1},
                             {HDN_ENDDRAG, 2, 59, 1},
                             {HDN_ENDDRAG, 2, 60, 0},
                             {HDN_ENDDRAG, 0, 150, 0}}) {
        placeCursor(each.cursor);
        EXPECT_EQ(list.notify(each.code, each.item), each.refused) << each.item << " at " << each.cursor;
    }
}

TEST_F(LraList, WithoutAWindowNothingHappens) {
    CLraListCtrl none;
    CString text("kept");
    LVHITTESTINFO hit = {};
    POINT screen = {};
    EXPECT_EQ(none.InsertColumn(0, "a", 0, 10, 0, 0), nullptr);
    EXPECT_EQ(none.GetMyListHeader(0), nullptr);
    EXPECT_EQ(none.UpdateItemCount() + none.onSelectAll() + none.SortColum(2) + none.SetItemData(0, 1), 0);
    EXPECT_EQ(none.InsertItem(0, "a") + none.InsertItem(0, "a", 1) + none.DeleteItem(0), 0);
    EXPECT_EQ(none.GetValue(0, 0, text) + none.SetItemHeight(20) + none.DeleteColumn(0), 0);
    EXPECT_EQ(none.GetColumsWidth() + none.GetColumnWidth(0) + none.SetColumnWidth(0, 10), 0);
    EXPECT_EQ(none.PrintToHtml("x", 0, text, 2) + none.CopyToClipBoard(0), 0);
    EXPECT_EQ(none.OnNM_RCLICK(hit, screen), 0);
    EXPECT_EQ(none.m_HeaderCtrl.CalculHeight() + none.m_HeaderCtrl.SetOwnerDraw(1), 0);
    EXPECT_EQ(none.UnselectAll(0, 1), -1);
    EXPECT_EQ(none.m_ColSort, 1);
    EXPECT_STREQ(text, "kept");
}

TEST_F(LraList, TheLayoutIsSavedAtTheEndOnlyUnderAName) {
    struct Saving : TestList {
        using TestList::TestList;
        int saved = 0;
        int SaveHeadToReg(const char* name, HKEY* key) override {
            saved += name == nullptr && key == nullptr && m_HeaderCtrl.GetItemCount() == 2 ? 1 : 100;
            return 1;
        }
    };
    Saving named(parent, 2), unnamed(parent, 2);
    named.m_RegName = "Clients";
    named.m_ColSort = 5;
    named.DestroyWindow();
    unnamed.DestroyWindow();
    EXPECT_EQ(named.saved, 1);
    EXPECT_EQ(unnamed.saved, 0);
    EXPECT_EQ(named.m_ColSort, 1);
}

TEST_F(LraList, AnyOrderOfDestruction) {
    auto owner = std::make_unique<HiddenParent>();
    auto first = std::make_unique<TestList>(*owner, 2);
    TestList second(*owner, 2);
    CLraListCtrl taken;
    const HWND bare = ::CreateWindowExA(0, WC_LISTVIEWA, "", WS_CHILD | LVS_REPORT, 0, 0, 100, 100,
                                        owner->m_hWnd, nullptr, nullptr, nullptr);
    ASSERT_TRUE(taken.SubclassWindow(bare));
    ASSERT_NE(taken.InsertColumn(0, "a", 0, 50, 0, 0), nullptr);
    first.reset();  // object before its parent
    owner.reset();  // parent before the objects
    EXPECT_EQ(second.m_hWnd, nullptr);
    EXPECT_EQ(second.m_HeaderCtrl.m_hWnd, nullptr);
    EXPECT_EQ(taken.m_hWnd, nullptr);

    HiddenParent again;
    {
        TestList third(again, 1);
        third.m_HeaderCtrl.DestroyWindow();  // the header before its list
        EXPECT_EQ(third.GetMyListHeader(0), nullptr);
    }
    const HWND kept = ::CreateWindowExA(0, WC_LISTVIEWA, "", WS_CHILD | LVS_REPORT, 0, 0, 100, 100,
                                        again.m_hWnd, nullptr, nullptr, nullptr);
    {
        CLraListCtrl passing;
        passing.SubclassWindow(kept);
        passing.InsertColumn(0, "a", 0, 50, 0, 0);
        passing.SetItemHeight(30);
    }
    EXPECT_TRUE(::IsWindow(kept)) << "a window that was only subclassed outlives its object";
    EXPECT_EQ(::SendMessageA(kept, LVM_GETITEMCOUNT, 0, 0), 0);
}

TEST_F(LraList, TwoHundredRoundsLeaveNoHandles) {
    const auto round = [] {
        HiddenParent owner;
        TestList each(owner, 5);
        each.addRow({"b"});
        each.addRow({"a"});
        each.Initialize(0);
        each.SetItemHeight(30);
        each.SetItemHeight(40);
        each.click(0);
        each.notify(HDN_DIVIDERDBLCLICKW, 0);
        each.m_HeaderCtrl.CalculHeight();
    };
    round();
    const HANDLE process = ::GetCurrentProcess();
    const DWORD gdi = ::GetGuiResources(process, GR_GDIOBJECTS);
    const DWORD user = ::GetGuiResources(process, GR_USEROBJECTS);
    for (int i = 0; i < 200; ++i) round();
    EXPECT_LE(::GetGuiResources(process, GR_GDIOBJECTS), gdi + 2);
    EXPECT_LE(::GetGuiResources(process, GR_USEROBJECTS), user + 2);
}

}  // namespace
