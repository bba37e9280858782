#include <cstdlib>
#include <memory>

#include <gtest/gtest.h>
#include <platform/window/device_context.h>

#include "ui_support.h"

namespace {

class LraList : public testing::Test {
  protected:
    HiddenParent parent;
    TestList list{parent, 4};
};

TEST_F(LraList, ColumnRecordsHangOnTheHeaderItems) {
    const AnsweringPrompt prompt;
    const auto* text = list.GetMyListHeader(2);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->FtypeData * 100 + text->nParam, 'T' * 100 + 20);
    EXPECT_EQ(list.m_nColumns, 4);
    EXPECT_EQ(list.GetMyListHeader(4), nullptr);
    EXPECT_EQ(list.GetMyListHeader(-1), nullptr);
    EXPECT_EQ(list.InsertColumn(-1, "x", 0, 10, 0, 0), nullptr);
    const auto* boolean = list.InsertColumn(4, "b", LVCFMT_CENTER, -1, 'B', 0);
    ASSERT_NE(boolean, nullptr);
    EXPECT_EQ(boolean->ColStyle, 3);
    EXPECT_EQ(list.formatOf(4) & (HDF_OWNERDRAW | HDF_IMAGE | HDF_CENTER), HDF_OWNERDRAW | HDF_CENTER);
    for (const LPARAM foreign : {LPARAM{999}, LPARAM{-5}}) {
        HDITEMA item = {};
        item.mask = HDI_LPARAM;
        item.lParam = foreign;
        const auto* fresh = list.GetMyListHeader(list.m_HeaderCtrl.InsertItem(5, item));
        ASSERT_NE(fresh, nullptr) << foreign;
        EXPECT_EQ(fresh->Width + fresh->ColStyle + fresh->FtypeData + fresh->nParam + fresh->ReadOnly, 0);
        EXPECT_EQ(list.GetMyListHeader(5), fresh);
    }
    EXPECT_EQ(list.InsertColumn(50, "far", 0, 10, 'T', 0), nullptr) << "the record of the index asked for";
    EXPECT_EQ(prompt.asked, "ERROR AdoCol");
}

TEST_F(LraList, RecordsGoWithTheirColumnOrTheWindow) {
    struct Editor : CWnd {
        bool* gone = nullptr;
        ~Editor() override { *gone = true; }
    };
    bool gone[3] = {};
    for (int col = 1; col < 4; ++col) {
        auto* const editor = new Editor;
        editor->gone = &gone[col - 1];
        editor->Create("EDIT", "", WS_CHILD | WS_VISIBLE, {0, 0, 10, 10}, &list, 500);
        list.GetMyListHeader(col)->pEditWnd = editor;
        list.GetMyListHeader(col)->pBuffer = std::malloc(8);
    }
    EXPECT_EQ(list.Initialize(0), 1);
    EXPECT_EQ(list.GetMyListHeader(1)->pEditWnd->GetStyle() & WS_VISIBLE, 0u);
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
    for (const Case& each :
         {Case{80, 80, 80}, {-80, -80, -80}, {0, -80, -80}, {45, 45, 45}, {0, 45, -45}, {65606, 65606, 70}}) {
        EXPECT_EQ(list.SetColumnWidth(2, each.set), each.result) << each.set;
        EXPECT_EQ(list.GetColumnWidth(2), each.shown) << each.set;
    }
    EXPECT_EQ(list.SetColumnWidth(9, 50), 0);
    EXPECT_EQ(list.GetColumsWidth(), 60 + 60 + 70 + 60);
}

TEST_F(LraList, RowPastTheLastIsAcceptedAndCellsMayBeOfAnyLength) {
    for (const int length : {0, 511, 512, 100000}) {
        const std::string whole = std::string(static_cast<std::size_t>(length), 'x') + "é";
        list.addRow({whole.c_str()}, 0xFEDCBA9876543210u);
        CString text;
        EXPECT_EQ(list.GetValue(list.m_nItems - 1, 0, text), 1);
        EXPECT_EQ(text.view(), whole) << length;
    }
    EXPECT_EQ(list.GetItemData(3), 0xFEDCBA9876543210u);
    CString text("kept");
    EXPECT_EQ(list.GetValue(5, 0, text) + list.GetValue(-1, 0, text) + list.GetValue(0, -1, text), 0);
    EXPECT_STREQ(text, "kept");
    EXPECT_EQ(list.GetValue(4, 0, text), 1);
    EXPECT_STREQ(text, "");
}

TEST_F(LraList, DividerDoubleClickFitsTheCellsNotTheCaption) {
    list.addRow({"i", "a rather long text in a cell"});
    list.addRow({"i", "short"});
    list.m_nItems = 0;
    CClientDC dc(list);
    const platform::Selected font(dc, list.GetFont());
    EXPECT_EQ(list.notify(HDN_DIVIDERDBLCLICKW, 1), 0);
    EXPECT_EQ(list.GetColumnWidth(1), dc.GetTextExtent("a rather long text in a cell").cx + 15);
    list.SetColumnWidth(3, -33);
    list.notify(HDN_DIVIDERDBLCLICKW, 3);
    EXPECT_EQ(list.GetColumnWidth(3), -33) << "without any text the width stays, hidden as it was";
}

TEST_F(LraList, ControlASelectsAllWhereAllowed) {
    for (int row = 0; row < 3; ++row) list.addRow({"a"});
    const struct {
        bool control;
        std::int32_t options;
        LRESULT selected;
    } cases[] = {{true, 1, 3}, {true, 2, 0}, {false, 3, 0}};
    for (const auto& each : cases) {
        list.m_Options = each.options;
        list.UnselectAll(-1, 0);
        const ControlHeld control(each.control);
        list.SendMessage(WM_KEYDOWN, 'A', 1);
        EXPECT_EQ(list.SendMessage(LVM_GETSELECTEDCOUNT), each.selected) << each.options;
    }
}

TEST_F(LraList, UnselectAllKeepsRowsByIndexAndData) {
    for (int row = 0; row < 50; ++row) list.addRow({"r"}, static_cast<std::uint64_t>(row % 25));
    list.onSelectAll();
    EXPECT_EQ(list.UnselectAll(3, 7), 32);
    EXPECT_EQ(list.m_FocusRow, 32);
    EXPECT_EQ(list.m_FocusSubItem, -1);
    EXPECT_EQ(list.SendMessage(LVM_GETSELECTEDCOUNT), 3) << "3, 7 and 32";
    EXPECT_EQ(list.GetNextItem(-1, LVNI_FOCUSED), 32);
    EXPECT_GT(list.SendMessage(LVM_GETTOPINDEX), 0) << "scrolled into view";
    EXPECT_EQ(list.UnselectAll(-1, 0), -1);
}

TEST_F(LraList, ARememberedRow0CountsAsNoneInGetFocusedPosOnly) {
    for (int row = 0; row < 60; ++row) list.addRow({"r"});
    CRect fourth, last;
    list.GetItemRect(4, fourth, LVIR_BOUNDS);
    list.GetItemRect(59, last, LVIR_BOUNDS);
    EXPECT_EQ(list.SetFocusedPos({1, 2, 3, 4}, -1), CRect(1, 2, 3, 4));
    list.m_FocusRow = 0;
    EXPECT_TRUE(list.GetFocusedPos(-1).IsRectNull());
    EXPECT_GE(list.SetFocusedPos(fourth, -1).top, 0);
    list.m_FocusRow = 4;
    list.EnsureVisible(0, FALSE);
    EXPECT_EQ(list.GetFocusedPos(-1), fourth);
    EXPECT_EQ(list.GetFocusedPos(1000), last);
    list.EnsureVisible(30, FALSE);
    const CRect before = list.GetFocusedPos(30);
    list.Scroll({0, fourth.Height() * 5});
    EXPECT_NE(list.GetFocusedPos(30).top, before.top);
    EXPECT_EQ(list.SetFocusedPos(before, 30), before);
}

TEST_F(LraList, RowHeight) {
    EXPECT_EQ(list.SetItemHeight(100) + list.SetItemHeight(0), 0);
    EXPECT_EQ(list.SetItemHeight(40), 40);
    list.addRow({"a"});
    for (const int height : {40, 60}) {
        list.SetItemHeight(height);
        CRect row;
        list.GetItemRect(0, row, LVIR_BOUNDS);
        EXPECT_GE(row.Height(), height);
        EXPECT_EQ(list.ItemHeight(), row.Height() - 1);
    }
}

TEST_F(LraList, InitializeMakesAnOwnerDrawnReportWithCheckBoxes) {
    list.InsertColumn(4, "b", LVCFMT_CENTER, 40, 'B', 0);
    list.addRow({"Ligne", "", "", "", "1"});
    list.ModifyStyle(0, LVS_SORTASCENDING);
    EXPECT_EQ(list.Initialize(0), 1);
    EXPECT_EQ(list.GetStyle() & 0x433, DWORD{LVS_REPORT | LVS_OWNERDRAWFIXED});
    CMemoryDC picture({280, 20});
    DRAWITEMSTRUCT draw = {};
    draw.hwndItem = list;
    draw.hDC = picture;
    draw.rcItem = {0, 0, 280, 20};
    parent.SendMessage(WM_DRAWITEM, 77, reinterpret_cast<LPARAM>(&draw));
    const auto painted = [&](LONG left, LONG right) {
        int pixels = 0;
        for (LONG x = left; x < right; ++x) {
            for (LONG y = 0; y < 20; ++y) pixels += picture.GetPixel(x, y) != ::GetSysColor(COLOR_WINDOW);
        }
        return pixels;
    };
    EXPECT_GT(painted(0, 60), 10);
    EXPECT_EQ(painted(60, 240), 0);
    EXPECT_GT(painted(240, 280), 10);
    list.m_ColSort = -3;
    list.Initialize(0);
    EXPECT_EQ(list.m_ColSort, -3);
    list.Initialize(1);
    EXPECT_EQ(list.m_ColSort * 10 + list.m_Initialized, 10);
}

TEST_F(LraList, WithoutAWindowNothingHappens) {
    CLraListCtrl none;
    CString text("kept");
    LVHITTESTINFO hit = {};
    POINT screen = {};
    EXPECT_EQ(none.InsertColumn(0, "a", 0, 10, 0, 0), nullptr);
    EXPECT_EQ(none.GetMyListHeader(0), nullptr);
    for (const long long result :
         {0LL + none.UpdateItemCount(), 0LL + none.onSelectAll(), 0LL + none.SortColum(2),
          0LL + none.SetItemData(0, 1), 0LL + none.InsertItem(0, "a"), 0LL + none.DeleteItem(0),
          0LL + none.GetValue(0, 0, text), 0LL + none.SetItemHeight(20), 0LL + none.DeleteColumn(0),
          0LL + none.GetColumsWidth(), 0LL + none.GetColumnWidth(0), 0LL + none.SetColumnWidth(0, 10),
          0LL + none.PrintToHtml("x", 0, text, 2), 0LL + none.CopyToClipBoard(0),
          0LL + none.OnNM_RCLICK(hit, screen), 0LL + none.m_HeaderCtrl.CalculHeight()})
        EXPECT_EQ(result, 0);
    EXPECT_STREQ(text, "kept");
}

TEST_F(LraList, AnyOrderOfDestruction) {
    auto owner = std::make_unique<HiddenParent>();
    auto first = std::make_unique<TestList>(*owner, 2);
    TestList second(*owner, 2);
    first.reset();  // the object before its parent
    owner.reset();  // the parent before the object
    EXPECT_EQ(second.m_hWnd, nullptr);
    EXPECT_EQ(second.m_HeaderCtrl.m_hWnd, nullptr);
    list.m_HeaderCtrl.DestroyWindow();  // the header before its list
    EXPECT_EQ(list.GetMyListHeader(0), nullptr);
    const HWND kept = ::CreateWindowExA(0, WC_LISTVIEWA, "", WS_CHILD | LVS_REPORT, 0, 0, 100, 100, parent,
                                        nullptr, nullptr, nullptr);
    {
        CLraListCtrl passing;
        EXPECT_TRUE(passing.SubclassWindow(kept));
        EXPECT_NE(passing.InsertColumn(0, "a", 0, 50, 0, 0), nullptr);
        passing.SetItemHeight(30);
    }
    EXPECT_EQ(::SendMessageA(kept, LVM_GETCOLUMNWIDTH, 0, 0), 50)
        << "a subclassed window outlives its object";
}

}  // namespace
