#include <memory>

#include <gtest/gtest.h>
#include <platform/window/device_context.h>
#include <platform/window/menu.h>

#include "edit_list_support.h"

namespace {

class EditList : public testing::Test {
  protected:
    GridParent parent;
    TestGrid grid{parent};
    AnsweringPrompt prompt;

    EditList() { grid.SetFocus(); }
    WPARAM press(WPARAM key, CWnd* focus = nullptr) {
        if (focus == nullptr) focus = grid.m_pActiveEditor != nullptr ? grid.m_pActiveEditor : &grid;
        return grid.KeyboardHook(focus, key, 1);
    }
};

TEST_F(EditList, EditorsAreAlignedAsTheirColumnsAndHoldWhatTheirTypesAllow) {
    struct Case {
        int col;
        CWnd* editor;
        LRESULT limit;
        DWORD number;
        int readOnly;
    };
    for (const Case& each : {Case{TestGrid::left, &grid.m_LeftEditor, 12, 0, 0},
                             {TestGrid::right, &grid.m_RightEditor, 50, ES_NUMBER, 1},
                             {TestGrid::center, &grid.m_CenterEditor, 50, 0, 0},
                             {TestGrid::last, &grid.m_LeftEditor, 40, 0, 1}}) {
        grid.GetMyListHeader(each.col)->ReadOnly = each.readOnly;
        EXPECT_EQ(grid.SetCurrentSubItem(3, each.col), 1);
        EXPECT_EQ(grid.m_pActiveEditor, each.editor) << each.col;
        EXPECT_EQ(each.editor->SendMessage(EM_GETLIMITTEXT), each.limit) << each.col;
        EXPECT_EQ(each.editor->GetStyle() & ES_NUMBER, each.number) << each.col;
        EXPECT_EQ((each.editor->GetStyle() & ES_READONLY) != 0, each.readOnly != 0) << each.col;
        EXPECT_EQ(grid.edited(), TestGrid::cellText(3, each.col));
        EXPECT_EQ(grid.m_EditFlags, CEditListCtrl::editable | CEditListCtrl::cellInEditor);
        const CRect place = each.editor->GetWindowRect();
        POINT middle = grid.middle(3, each.col);
        grid.ClientToScreen(&middle);
        EXPECT_TRUE(place.PtInRect(middle)) << each.col;
        EXPECT_EQ(::GetFocus(), each.editor->m_hWnd);
    }
    EXPECT_EQ(parent.moves, 4);
    grid.SetCurrentSubItem(3, 0);
    EXPECT_EQ(grid.m_pActiveEditor, nullptr) << "the row header has no editor";
    EXPECT_EQ(::GetFocus(), grid.m_hWnd);
    grid.m_EditFlags = 0;
    grid.SetCurrentSubItem(3, TestGrid::left);
    EXPECT_EQ(grid.m_pActiveEditor, nullptr) << "a grid that only shows";
}

TEST_F(EditList, ACellIsStoredWhenItIsLeftAndRestoredByEscape) {
    grid.SetCurrentSubItem(2, TestGrid::left);
    grid.type("neuf");
    EXPECT_EQ(press(VK_TAB), WPARAM{VK_TAB});
    EXPECT_EQ(grid.text(2, TestGrid::left), "neuf");
    EXPECT_EQ(grid.current(), "2,2");
    EXPECT_NE(grid.m_EditFlags & CEditListCtrl::rowChanged, 0);
    grid.type("77");
    EXPECT_EQ(grid.UpdateEdit(CEditListCtrl::commitCell), 3);
    EXPECT_EQ(grid.UpdateEdit(CEditListCtrl::commitCell), 1) << "nothing new";
    EXPECT_EQ(grid.text(2, TestGrid::right), "77");
    grid.type("88");
    EXPECT_EQ(press(VK_ESCAPE), WPARAM{VK_ESCAPE});
    EXPECT_EQ(grid.edited(), "77");
    EXPECT_EQ(grid.current(), "2,2");
    grid.type("99");
    EXPECT_EQ(press(VK_ESCAPE), WPARAM{VK_ESCAPE});
    EXPECT_EQ(grid.edited(), "99") << "a second Escape asks CancelUpdate, which has nothing to drop here";
    press(VK_DOWN);
    EXPECT_EQ(grid.text(2, TestGrid::right), "99");
    EXPECT_EQ(grid.current(), "3,2");
    EXPECT_EQ(grid.m_EditFlags & CEditListCtrl::rowChanged, 0) << "another row";
    EXPECT_EQ(grid.selected(), "3 ");
}

TEST_F(EditList, WhatWasTypedOverColumn0IsDroppedByAMove) {
    grid.m_LastFixedCol = 0;
    grid.SetCurrentSubItem(2, 0);
    ASSERT_NE(grid.m_pActiveEditor, nullptr);
    grid.type("perdu");
    grid.SetCurrentSubItem(2, TestGrid::left);
    EXPECT_EQ(grid.text(2, 0), "");
}

TEST_F(EditList, KeysMoveTheCell) {
    struct Case {
        WPARAM key;
        const char *from, *to;
    };
    const auto enter = [&](const std::string& cell) {
        grid.SetCurrentSubItem(std::stoi(cell), std::stoi(cell.substr(cell.find(',') + 1)));
    };
    const int page = grid.GetCountPerPage();
    for (const Case& each : {Case{VK_UP, "4,1", "3,1"},
                             {VK_UP, "0,1", "0,1"},
                             {VK_DOWN, "19,1", "19,1"},
                             {VK_PRIOR, "2,1", "-1,1"},
                             {VK_RIGHT, "4,1", "4,2"},
                             {VK_LEFT, "4,2", "4,1"},
                             {VK_LEFT, "4,1", "3,5"},
                             {VK_RETURN, "4,5", "5,1"},
                             {VK_TAB, "19,5", "19,5"}}) {
        enter(each.from);
        EXPECT_EQ(press(each.key), each.key);
        EXPECT_EQ(grid.current(), each.to) << each.key << " from " << each.from;
    }
    enter("4,1");
    press(VK_NEXT);
    EXPECT_EQ(grid.m_FocusRow, std::min(19, 4 + page));
    enter("4,1");
    grid.m_pActiveEditor->SendMessage(EM_SETSEL, 1, 1);
    EXPECT_EQ(press(VK_RIGHT) + press(VK_LEFT), 0u) << "inside the text the caret moves";
    EXPECT_EQ(press(VK_F2), WPARAM{VK_F2});
    EXPECT_EQ(grid.m_pActiveEditor->SendMessage(EM_GETSEL), MAKELPARAM(0, 3));
    EXPECT_EQ(press(VK_DOWN, &parent), 0u) << "the focus is elsewhere";
    EXPECT_EQ(grid.KeyboardHook(nullptr, VK_DOWN, 1), 0u);

    grid.SetColumnWidth(TestGrid::last, -90);
    BYTE keys[256] = {};
    keys[VK_CONTROL] = 0x80;
    ::SetKeyboardState(keys);
    press(VK_END);
    EXPECT_EQ(grid.current(), "19,4") << "the last column that is shown";
    press(VK_HOME);
    EXPECT_EQ(grid.current(), "0,1");
    keys[VK_CONTROL] = 0;
    ::SetKeyboardState(keys);
    EXPECT_EQ(press(VK_HOME) + press(VK_END), 0u);
}

TEST_F(EditList, CheckBoxesAreToggledBySpaceAndClick) {
    grid.SetCurrentSubItem(2, TestGrid::check);
    EXPECT_EQ(::GetFocus(), grid.m_hWnd) << "no editor over a check box";
    for (const char* value : {"0", "-1", "0"}) {
        EXPECT_EQ(press(VK_SPACE, &grid), WPARAM{VK_SPACE});
        EXPECT_EQ(grid.text(2, TestGrid::check), value);
        EXPECT_EQ(grid.edited(), value);
    }
    EXPECT_NE(grid.m_EditFlags & CEditListCtrl::rowChanged, 0);
    grid.SetItemText(2, TestGrid::check, "");
    press(VK_SPACE, &grid);
    EXPECT_EQ(grid.text(2, TestGrid::check), "0");
    grid.click(3, TestGrid::check);
    EXPECT_EQ(grid.text(3, TestGrid::check), "-1");
    POINT beside = grid.middle(3, TestGrid::check);
    beside.x += 12;
    grid.click(static_cast<UINT>(NM_CLICK), 3, TestGrid::check, beside);
    EXPECT_EQ(grid.text(3, TestGrid::check), "-1");
    grid.GetMyListHeader(TestGrid::check)->ReadOnly = 1;
    grid.click(3, TestGrid::check);
    press(VK_SPACE, &grid);
    EXPECT_EQ(grid.text(3, TestGrid::check), "-1") << "a column that may not be edited";
}

TEST_F(EditList, DeletionAsksAndLeavesTheRowBeforeCurrent) {
    grid.SetCurrentSubItem(6, 0);
    const auto select = [&](std::initializer_list<int> rows) {
        grid.SetItemState(-1, 0, LVIS_SELECTED);
        for (const int row : rows) grid.SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
    };
    select({});
    EXPECT_EQ(grid.Delete(), 0);
    EXPECT_EQ(prompt.asked, "");
    select({2, 5, 7});
    prompt.answer = platform::answerNo;
    EXPECT_EQ(press(VK_DELETE, &grid), WPARAM{VK_DELETE});
    EXPECT_EQ(prompt.asked, "D'accord pour Effacer 3 Enregistrements");
    EXPECT_EQ(grid.GetItemCount(), 20);
    prompt.answer = platform::answerYes;
    EXPECT_EQ(grid.Delete(), 3);
    EXPECT_EQ(grid.GetItemCount(), 17);
    EXPECT_EQ(grid.current(), "1,0");
    EXPECT_EQ(grid.selected(), "1 ");
    grid.onSelectAll();
    EXPECT_EQ(grid.Delete(), 17);
    EXPECT_EQ(grid.current(), "-1,0");
    EXPECT_EQ(press(VK_DOWN, &grid), WPARAM{VK_DOWN}) << "keys in a grid without rows";
    grid.m_EditFlags = 0;
    EXPECT_EQ(grid.Delete() + grid.AddNew(), 0);
}

TEST_F(EditList, ANewRowIsTheLastAndCurrent) {
    grid.SetCurrentSubItem(2, TestGrid::left);
    grid.type("gardé");
    EXPECT_EQ(grid.AddNew(), 1);
    EXPECT_EQ(grid.text(2, TestGrid::left), "gardé");
    EXPECT_EQ(grid.current(), "20,0");
    EXPECT_EQ(grid.selected(), "20 ");
    press(VK_TAB);
    EXPECT_EQ(grid.current(), "20,1");
    EXPECT_EQ(grid.edited(), "");
}

/// A grid whose operations can be made to refuse.
class RefusingGrid : public TestGrid {
  public:
    using TestGrid::TestGrid;
    bool moves = true, rows = true, values = true, arrives = true;
    bool empty = false, without = false;
    int changed = 0, cancel = 0;
    int onSubItemChange(int, int) override { return moves; }
    int onSubItemChanged(int, int) override { return ++changed; }
    int UpdateMove(int row, int col) override { return arrives && TestGrid::UpdateMove(row, col); }
    int DataBaseIsEmpty() override { return empty; }
    int CancelUpdate() override { return cancel; }
    int UpdateEdit(int code) override {
        if (code == commitRow && !rows) return 0;
        return TestGrid::UpdateEdit(code);
    }
    int SetValue(int row, int col, CString value) override {
        return values && TestGrid::SetValue(row, col, value);
    }
    int GetSubItemValue(int col, CString& out) override {
        return without ? noValue : TestGrid::GetSubItemValue(col, out);
    }
};

TEST_F(EditList, DerivedListsMayRefuseEachStep) {
    RefusingGrid each(parent);
    each.SetCurrentSubItem(4, TestGrid::left);
    each.moves = false;
    EXPECT_EQ(each.SetCurrentSubItem(5, TestGrid::left), 0);
    EXPECT_EQ(each.current(), "4,1");
    EXPECT_EQ(each.selected(), "");
    each.moves = true;

    each.values = false;
    each.type("refusé");
    EXPECT_EQ(each.SetCurrentSubItem(5, TestGrid::left), 0);
    EXPECT_EQ(prompt.asked, "Problème de Données sur 'Nom'");
    EXPECT_EQ(each.current() + each.edited(), "4,1refusé") << "what was typed is still there";
    EXPECT_EQ(each.Delete() + each.AddNew(), 0);
    each.values = true;

    each.rows = false;
    EXPECT_EQ(each.SetCurrentSubItem(5, TestGrid::right), 1);
    EXPECT_EQ(each.current(), "4,1") << "the user stays on the row that was not saved";
    EXPECT_EQ(each.edited(), "refusé");
    EXPECT_EQ(each.selected(), "4 ");
    each.rows = true;

    each.arrives = false;
    EXPECT_EQ(each.SetCurrentSubItem(6, TestGrid::right), 4);
    each.arrives = true;
    each.SetCurrentSubItem(6, TestGrid::right);
    const int before = each.changed;
    each.without = true;
    each.SetCurrentSubItem(7, TestGrid::left);
    EXPECT_EQ(each.m_pActiveEditor, nullptr) << "a cell without a value";
    each.without = false;
    each.empty = true;
    each.SetCurrentSubItem(8, TestGrid::left);
    EXPECT_EQ(each.m_pActiveEditor, nullptr) << "nothing to edit";
    EXPECT_EQ(each.changed, before + 2);
    each.empty = false;
    each.SetCurrentSubItem(8, TestGrid::right);
    each.cancel = -1;
    each.type("5");
    each.KeyboardHook(each.m_pActiveEditor, VK_ESCAPE, 1);
    each.type("6");
    each.KeyboardHook(each.m_pActiveEditor, VK_ESCAPE, 1);
    EXPECT_EQ(each.edited(), "8,2") << "where CancelUpdate refuses the cell is restored";
}

/// Reads the menu as it opens and closes it, or chooses its entry `choose`.
class MenuGrid : public TestGrid {
  public:
    using TestGrid::TestGrid;
    std::string entries;
    int choose = -1;
    int printed = 0, copied = 0;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_INITMENUPOPUP) {
            const HMENU menu = reinterpret_cast<HMENU>(wParam);
            entries = std::to_string(::GetMenuItemCount(menu));
            for (int i = 0; i <= choose; ++i) PostMessage(WM_KEYDOWN, VK_DOWN, 1);
            PostMessage(WM_KEYDOWN, choose >= 0 ? VK_RETURN : VK_ESCAPE, 1);
        }
        return TestGrid::WindowProc(message, wParam, lParam);
    }
    int PrintToHtml(const char*, int lines, CString&, int flags) override {
        return printed = lines * 10 + flags;
    }
    int CopyToClipBoard(int flags) override { return copied = 1 + flags; }
};

TEST_F(EditList, RightClicksOpenTheMenuWhereItHasEntries) {
    MenuGrid each(parent);
    const auto rightClick = [&](int row, int col) {
        each.entries.clear();
        each.click(static_cast<UINT>(NM_RCLICK), row, col, each.middle(row, col));
        return each.entries;
    };
    EXPECT_EQ(rightClick(3, TestGrid::center), "");
    EXPECT_EQ(each.current(), "3,3");
    EXPECT_EQ(rightClick(3, 0), "7") << "six entries and a separator";
    each.choose = 3;
    rightClick(4, 0);
    EXPECT_EQ(each.printed, 600) << "everything, 60 lines a page";
    each.choose = 0;
    rightClick(4, 0);
    EXPECT_EQ(each.GetItemCount(), 21);
    each.m_GridOptions = CEditListCtrl::noMenu;
    EXPECT_EQ(rightClick(5, 0), "");
    each.m_GridOptions = 0;
    each.m_EditFlags = 0;
    each.choose = -1;
    EXPECT_EQ(rightClick(5, 2), "4");

    each.m_EditFlags = 1;
    each.SetItemState(-1, 0, LVIS_SELECTED);
    each.SetCurrentSubItem(2, 0);
    for (const int row : {2, 5}) each.SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
    rightClick(5, 0);
    EXPECT_EQ(each.selected(), "2 5 ") << "a click into the selection keeps it";

    CMenu own;
    EXPECT_EQ(each.OnRClickMenu(own, 0, nullptr, nullptr, 0x10000013), 0x10000013);
    EXPECT_EQ(each.copied, 1);
    EXPECT_EQ(each.OnRClickMenu(own, 0, nullptr, "Titre", 0x10000010), 0x10000010);
    EXPECT_EQ(each.printed, 601);
}

TEST_F(EditList, AColumnMayHaveAnEditorOfItsOwn) {
    auto* const combo = new CComboBox;
    combo->Create(WS_CHILD | CBS_DROPDOWNLIST | WS_VSCROLL, {0, 0, 80, 200}, &grid, 900);
    for (const char* entry : {"0,3", "1,3", "autre"}) combo->AddString(entry);
    auto* const column = grid.GetMyListHeader(TestGrid::center);
    column->pEditWnd = combo;
    column->ColStyle = 2;
    grid.SetCurrentSubItem(1, TestGrid::center);
    EXPECT_EQ(grid.m_pActiveEditor, combo);
    EXPECT_EQ(combo->GetCurSel(), 1);
    combo->SetCurSel(2);
    EXPECT_EQ(press(VK_TAB, combo), WPARAM{VK_TAB});
    EXPECT_EQ(grid.text(1, TestGrid::center), "autre");
    grid.SetCurrentSubItem(1, TestGrid::center);
    grid.DeleteColumn(TestGrid::center);
    EXPECT_EQ(grid.m_pActiveEditor, nullptr);
    EXPECT_EQ(grid.m_pCurCol, nullptr);
}

TEST_F(EditList, TheNavigatorShowsAndMovesTheRow) {
    CRecordButton navigator;
    navigator.Create(WS_CHILD | WS_VISIBLE, {0, 310, 300, 335}, &parent, 78);
    EXPECT_EQ(grid.LinkRecordButton(&navigator), 1);
    EXPECT_EQ(navigator.Count(), 20);
    grid.SetCurrentSubItem(4, TestGrid::left);
    grid.UpdateWindow();
    EXPECT_EQ(navigator.Record(), 5);
    navigator.SendMessage(WM_COMMAND, CRecordButton::last);
    EXPECT_EQ(grid.current(), "19,1");
    navigator.SetFocus();
    navigator.SendMessage(WM_COMMAND, CRecordButton::added);
    EXPECT_EQ(grid.GetItemCount(), 21);
    EXPECT_EQ(::GetFocus(), grid.m_hWnd) << "a new record is there to be typed";
    {
        TestGrid other(parent);
        other.LinkRecordButton(&navigator);
    }
    EXPECT_EQ(navigator.Target(), nullptr);
}

TEST_F(EditList, RowsAreDrawnWithHeaderChecksAndColours) {
    struct Coloured : TestGrid {
        using TestGrid::TestGrid;
        int bits = 1;
        int GetValue(int row, int col, CString& out) override {
            const int value = TestGrid::GetValue(row, col, out);
            return col == left ? bits : value;
        }
    };
    Coloured each(parent);
    CMemoryDC picture({450, 20});
    const auto draw = [&](UINT state) {
        DRAWITEMSTRUCT item = {};
        item.hDC = picture;
        item.rcItem = {0, 0, 450, 20};
        item.itemState = state;
        each.DrawItem(&item);
    };
    const auto at = [&](LONG x, LONG y) { return picture.GetPixel(x, y); };
    draw(0);
    EXPECT_EQ(at(35, 1), ::GetSysColor(COLOR_WINDOW));
    EXPECT_NE(at(15, 10), ::GetSysColor(COLOR_WINDOW)) << "row header";
    each.bits = 4;
    draw(0);
    EXPECT_EQ(at(35, 1), RGB(0xF0, 0x64, 0x64));
    EXPECT_EQ(at(35, 10), RGB(0xF0, 0x64, 0x64)) << "without bit 1 no text";
    EXPECT_EQ(at(440, 1), ::GetSysColor(COLOR_WINDOW));
    each.bits = 1 + 8 + 16;
    draw(0);
    EXPECT_EQ(at(440, 1), RGB(0xF0, 0xF0, 0x64)) << "to the end of the row";
    each.bits = 1;
    each.SetCurrentSubItem(0, TestGrid::check);
    draw(ODS_SELECTED);
    EXPECT_EQ(at(282, 1), RGB(200, 200, 200)) << "the current check box";
    EXPECT_EQ(at(35, 1), ::GetSysColor(COLOR_HIGHLIGHT));
}

}  // namespace
