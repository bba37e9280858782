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
    WPARAM press(WPARAM key) { return grid.KeyboardHook(CWnd::FromHandlePermanent(::GetFocus()), key, 1); }
};

TEST_F(EditList, EditorsAreAlignedAsTheirColumnsAndHoldWhatTheirTypesAllow) {
    const struct {
        int col;
        CWnd* editor;
        LRESULT limit;
        DWORD style;
    } cases[] = {{TestGrid::left, &grid.m_LeftEditor, 12, 0},
                 {TestGrid::right, &grid.m_RightEditor, 50, ES_NUMBER | ES_READONLY},
                 {TestGrid::center, &grid.m_CenterEditor, 50, 0},
                 {TestGrid::last, &grid.m_LeftEditor, 40, 0}};
    grid.GetMyListHeader(TestGrid::right)->ReadOnly = 1;
    for (const auto& each : cases) {
        SCOPED_TRACE(each.col);
        EXPECT_EQ(grid.SetCurrentSubItem(3, each.col), 1);
        EXPECT_EQ(grid.m_pActiveEditor, each.editor);
        EXPECT_EQ(each.editor->SendMessage(EM_GETLIMITTEXT), each.limit);
        EXPECT_EQ(each.editor->GetStyle() & (ES_NUMBER | ES_READONLY), each.style);
        EXPECT_EQ(grid.edited(), TestGrid::cellText(3, each.col));
        POINT middle = grid.middle(3, each.col);
        grid.ClientToScreen(&middle);
        EXPECT_TRUE(each.editor->GetWindowRect().PtInRect(middle));
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
    press(VK_TAB);
    EXPECT_EQ(grid.text(2, TestGrid::left), "neuf");
    EXPECT_EQ(grid.current(), "2,2");
    EXPECT_NE(grid.m_EditFlags & CEditListCtrl::rowChanged, 0);
    grid.type("77");
    EXPECT_EQ(grid.UpdateEdit(CEditListCtrl::commitCell), 3);
    EXPECT_EQ(grid.UpdateEdit(CEditListCtrl::commitCell), 1) << "nothing new";
    grid.type("88");
    press(VK_ESCAPE);
    EXPECT_EQ(grid.edited() + " in " + grid.current(), "77 in 2,2");
    grid.type("99");
    press(VK_ESCAPE);
    EXPECT_EQ(grid.edited(), "99") << "a second Escape asks CancelUpdate, which has nothing to drop here";
    press(VK_DOWN);
    EXPECT_EQ(grid.text(2, TestGrid::right), "99");
    EXPECT_EQ(grid.m_EditFlags & CEditListCtrl::rowChanged, 0) << "another row";
    EXPECT_EQ(grid.current() + " " + grid.selected(), "3,2 3 ");
}

TEST_F(EditList, KeptWhatWasTypedOverColumn0IsDropped) {
    grid.m_LastFixedCol = 0;
    grid.SetCurrentSubItem(2, 0);
    ASSERT_NE(grid.m_pActiveEditor, nullptr);
    grid.type("perdu");
    grid.SetCurrentSubItem(2, TestGrid::left);
    EXPECT_EQ(grid.text(2, 0), "");
}

TEST_F(EditList, KeysAreThoseOfTheFocusTheCaretAndTheShownColumns) {
    grid.SetColumnWidth(TestGrid::last, -90);
    const struct {
        int row, col, caret;
        WPARAM key;
        bool control;
        const char* current;  // "": the key is not the grid's
    } cases[] = {{4, 1, 0, VK_UP, false, "3,1"},     {19, 1, 0, VK_DOWN, false, "19,1"},
                 {4, 1, 0, VK_LEFT, false, "3,4"},   {4, 1, 1, VK_LEFT, false, ""},
                 {4, 1, 1, VK_RIGHT, false, ""},     {4, 1, 3, VK_RIGHT, false, "4,2"},
                 {2, 1, 0, VK_PRIOR, false, "-1,1"}, {4, 1, 0, VK_END, true, "19,4"},
                 {4, 2, 0, VK_HOME, true, "0,1"},    {4, 1, 0, VK_HOME, false, ""},
                 {4, 3, 0, VK_RETURN, false, "4,4"}, {4, 4, 0, VK_TAB, false, "5,1"}};
    for (const auto& each : cases) {
        SCOPED_TRACE(testing::Message() << each.key << " in column " << each.col);
        grid.SetCurrentSubItem(each.row, each.col);
        grid.m_pActiveEditor->SendMessage(EM_SETSEL, static_cast<WPARAM>(each.caret), each.caret);
        const ControlHeld control(each.control);
        EXPECT_EQ(press(each.key), *each.current != '\0' ? each.key : 0);
        if (*each.current != '\0') {
            EXPECT_EQ(grid.current(), each.current);
        }
    }
    grid.SetCurrentSubItem(4, 1);
    press(VK_NEXT);
    EXPECT_EQ(grid.m_FocusRow, std::min(19, 4 + grid.GetCountPerPage()));
    EXPECT_EQ(press(VK_F2), WPARAM{VK_F2});
    EXPECT_EQ(grid.m_pActiveEditor->SendMessage(EM_GETSEL),
              MAKELPARAM(0, TestGrid::cellText(grid.m_FocusRow, 1).size()));
    EXPECT_EQ(grid.KeyboardHook(&parent, VK_DOWN, 1), 0u) << "the focus is elsewhere";
    EXPECT_EQ(grid.KeyboardHook(nullptr, VK_DOWN, 1), 0u);
}

TEST_F(EditList, CheckBoxesAreToggledBySpaceAndClick) {
    grid.SetCurrentSubItem(2, TestGrid::check);
    EXPECT_EQ(::GetFocus(), grid.m_hWnd) << "no editor over a check box";
    for (const char* value : {"0", "-1"}) {
        EXPECT_EQ(press(VK_SPACE), WPARAM{VK_SPACE});
        EXPECT_EQ(grid.text(2, TestGrid::check) + grid.edited(), std::string(value) + value);
    }
    EXPECT_NE(grid.m_EditFlags & CEditListCtrl::rowChanged, 0);
    POINT beside = grid.middle(3, TestGrid::check);
    beside.x += 12;
    grid.click(static_cast<UINT>(NM_CLICK), 3, TestGrid::check, beside);
    EXPECT_EQ(grid.text(3, TestGrid::check), "0");
    grid.GetMyListHeader(TestGrid::check)->ReadOnly = 1;
    grid.click(3, TestGrid::check);
    press(VK_SPACE);
    EXPECT_EQ(grid.text(3, TestGrid::check), "0") << "a column that may not be edited";
}

TEST_F(EditList, DeletionAsksAndLeavesTheRowBeforeCurrent) {
    grid.SetCurrentSubItem(6, 0);
    grid.SetItemState(-1, 0, LVIS_SELECTED);
    EXPECT_EQ(grid.Delete(), 0);
    EXPECT_EQ(prompt.asked, "");
    for (const int row : {2, 5, 7}) grid.SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
    prompt.answer = platform::answerNo;
    EXPECT_EQ(press(VK_DELETE), WPARAM{VK_DELETE});
    EXPECT_EQ(prompt.asked, "D'accord pour Effacer 3 Enregistrements");
    EXPECT_EQ(grid.GetItemCount(), 20);
    prompt.answer = platform::answerYes;
    EXPECT_EQ(grid.Delete(), 3);
    EXPECT_EQ(grid.GetItemCount(), 17);
    EXPECT_EQ(grid.current() + " " + grid.selected(), "1,0 1 ");
    grid.onSelectAll();
    EXPECT_EQ(grid.Delete(), 17);
    EXPECT_EQ(grid.current(), "-1,0");
    EXPECT_EQ(press(VK_DOWN), WPARAM{VK_DOWN}) << "keys in a grid without rows";
    grid.m_EditFlags = 0;
    EXPECT_EQ(grid.Delete() + grid.AddNew(), 0);
}

TEST_F(EditList, ANewRowIsTheLastAndCurrent) {
    grid.SetCurrentSubItem(2, TestGrid::left);
    grid.type("gardé");
    EXPECT_EQ(grid.AddNew(), 1);
    EXPECT_EQ(grid.text(2, TestGrid::left), "gardé");
    EXPECT_EQ(grid.current() + " " + grid.selected(), "20,0 20 ");
    press(VK_TAB);
    EXPECT_EQ(grid.current() + " " + grid.edited(), "20,1 ");
}

/// A grid whose operations can be made to refuse.
struct RefusingGrid : TestGrid {
    using TestGrid::TestGrid;
    std::string
        refused;  // a letter for each: m move, r row, v value, a arrival, g no value, e empty, c cancel
    int changed = 0;
    bool refuses(char step) const { return refused.find(step) != std::string::npos; }
    int onSubItemChange(int, int) override { return !refuses('m'); }
    int onSubItemChanged(int, int) override { return ++changed; }
    int UpdateMove(int row, int col) override { return !refuses('a') && TestGrid::UpdateMove(row, col); }
    int DataBaseIsEmpty() override { return refuses('e'); }
    int CancelUpdate() override { return refuses('c') ? -1 : 0; }
    int UpdateEdit(int code) override {
        return code == commitRow && refuses('r') ? 0 : TestGrid::UpdateEdit(code);
    }
    int SetValue(int row, int col, CString value) override {
        return !refuses('v') && TestGrid::SetValue(row, col, value);
    }
    int GetSubItemValue(int col, CString& out) override {
        return refuses('g') ? noValue : TestGrid::GetSubItemValue(col, out);
    }
};

TEST_F(EditList, DerivedListsMayRefuseEachStep) {
    const struct {
        const char *refused, *typed;
        int row, col, result;
        const char* left;  // current cell, text of the editor, selection
    } cases[] = {{"m", "4,1", 5, 1, 0, "4,1 4,1 "},           {"v", "refusé", 5, 1, 0, "4,1 refusé "},
                 {"r", "gardé", 5, 2, 1, "4,1 gardé 4 "},     {"a", "gardé", 6, 2, 4, "4,1 gardé 4 "},
                 {"g", "gardé", 7, 1, 1, "7,1 no editor 7 "}, {"e", "7,1", 8, 1, 1, "8,1 no editor 8 "}};
    RefusingGrid each(parent);
    each.SetCurrentSubItem(4, TestGrid::left);
    for (const auto& step : cases) {
        SCOPED_TRACE(step.refused);
        each.refused = step.refused;
        if (each.m_pActiveEditor != nullptr) each.type(step.typed);
        const int before = each.changed;
        EXPECT_EQ(each.SetCurrentSubItem(step.row, step.col), step.result);
        EXPECT_EQ(each.current() + " " + each.edited() + " " + each.selected(), step.left);
        EXPECT_EQ(each.changed - before, step.result == 1);
        if (each.refuses('v')) {
            EXPECT_EQ(each.Delete() + each.AddNew(), 0);
        }
    }
    EXPECT_EQ(prompt.asked.substr(0, 29), "Problème de Données sur 'Nom'");
    each.refused = "c";
    each.SetCurrentSubItem(8, TestGrid::right);
    for (const char* typed : {"5", "6"}) {
        each.type(typed);
        each.KeyboardHook(each.m_pActiveEditor, VK_ESCAPE, 1);
        EXPECT_EQ(each.edited(), "8,2") << "where CancelUpdate refuses the cell is restored";
    }
}

/// Reads the menu as it opens and closes it, or chooses its entry `choose`.
struct MenuGrid : TestGrid {
    using TestGrid::TestGrid;
    int entries = 0, choose = -1, printed = 0, copied = 0;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_INITMENUPOPUP) {
            entries = ::GetMenuItemCount(reinterpret_cast<HMENU>(wParam));
            for (int i = 0; i <= choose; ++i) PostMessage(WM_KEYDOWN, VK_DOWN, 1);
            PostMessage(WM_KEYDOWN, choose >= 0 ? VK_RETURN : VK_ESCAPE, 1);
        }
        return TestGrid::WindowProc(message, wParam, lParam);
    }
    int PrintToHtml(const char*, int lines, CString&, int flags) override {
        return printed = lines * 10 + flags;
    }
    int CopyToClipBoard(int flags) override { return copied = 1 + flags; }
    int rightClick(int row, int col, int entry = -1) {
        entries = 0;
        choose = entry;
        click(static_cast<UINT>(NM_RCLICK), row, col, middle(row, col));
        return entries;
    }
};

TEST_F(EditList, RightClicksOpenTheMenuWhereItHasEntries) {
    MenuGrid each(parent);
    EXPECT_EQ(each.rightClick(3, TestGrid::center), 0);
    EXPECT_EQ(each.current(), "3,3");
    EXPECT_EQ(each.rightClick(3, 0, 3), 7) << "six entries and a separator";
    EXPECT_EQ(each.printed, 600) << "everything, 60 lines a page";
    each.rightClick(4, 0, 0);
    EXPECT_EQ(each.GetItemCount(), 21);
    each.m_GridOptions = CEditListCtrl::noMenu;
    EXPECT_EQ(each.rightClick(5, 0), 0);
    each.m_GridOptions = 0;
    each.SetItemState(-1, 0, LVIS_SELECTED);
    each.SetCurrentSubItem(2, 0);
    for (const int row : {2, 5}) each.SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
    each.rightClick(5, 0);
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
    grid.GetMyListHeader(TestGrid::center)->pEditWnd = combo;
    grid.GetMyListHeader(TestGrid::center)->ColStyle = 2;
    grid.SetCurrentSubItem(1, TestGrid::center);
    EXPECT_EQ(combo->GetCurSel(), 1);
    combo->SetCurSel(2);
    press(VK_TAB);
    EXPECT_EQ(grid.text(1, TestGrid::center), "autre");
    grid.SetCurrentSubItem(1, TestGrid::center);
    EXPECT_EQ(grid.m_pActiveEditor, combo);
    grid.DeleteColumn(TestGrid::center);
    EXPECT_EQ(grid.m_pActiveEditor, nullptr);
}

TEST_F(EditList, TheNavigatorShowsAndMovesTheRow) {
    CRecordButton navigator;
    navigator.Create(WS_CHILD | WS_VISIBLE, {0, 310, 300, 335}, &parent, 78);
    EXPECT_EQ(grid.LinkRecordButton(&navigator), 1);
    grid.SetCurrentSubItem(4, TestGrid::left);
    grid.UpdateWindow();
    EXPECT_EQ(navigator.Record() * 100 + navigator.Count(), 520);
    navigator.SendMessage(WM_COMMAND, CRecordButton::last);
    EXPECT_EQ(grid.current(), "19,1");
    navigator.SetFocus();
    navigator.SendMessage(WM_COMMAND, CRecordButton::added);
    EXPECT_EQ(grid.GetItemCount(), 21);
    EXPECT_EQ(::GetFocus(), grid.m_hWnd) << "a new record is there to be typed";
    TestGrid(parent).LinkRecordButton(&navigator);
    EXPECT_EQ(navigator.Target(), nullptr) << "the grid has gone";
}

TEST_F(EditList, RowsAreDrawnWithHeaderChecksAndColours) {
    struct Coloured : TestGrid {
        using TestGrid::TestGrid;
        int bits = 1;
        int GetValue(int row, int col, CString& out) override {
            const int value = TestGrid::GetValue(row, col, out);
            return col == left ? bits : value;
        }
    } each(parent);
    CMemoryDC picture({450, 20});
    const auto draw = [&](int bits, UINT state) {
        each.bits = bits;
        DRAWITEMSTRUCT item = {};
        item.hDC = picture;
        item.rcItem = {0, 0, 450, 20};
        item.itemState = state;
        each.DrawItem(&item);
    };
    constexpr LONG header = 15, left = 35, check = 282, last = 440;
    constexpr COLORREF red = RGB(0xF0, 0x64, 0x64), yellow = RGB(0xF0, 0xF0, 0x64);
    const COLORREF plain = ::GetSysColor(COLOR_WINDOW);
    draw(1, 0);
    EXPECT_EQ(picture.GetPixel(left, 1), plain);
    EXPECT_NE(picture.GetPixel(header, 10), plain);
    draw(4, 0);
    EXPECT_EQ(picture.GetPixel(left, 10), red) << "without bit 1 no text";
    EXPECT_EQ(picture.GetPixel(last, 1), plain);
    draw(1 + 8 + 16, 0);
    EXPECT_EQ(picture.GetPixel(last, 1), yellow) << "to the end of the row";
    each.SetCurrentSubItem(0, TestGrid::check);
    draw(1, ODS_SELECTED);
    EXPECT_EQ(picture.GetPixel(check, 1), RGB(200, 200, 200)) << "the current check box";
    EXPECT_EQ(picture.GetPixel(left, 1), ::GetSysColor(COLOR_HIGHLIGHT));
}

}  // namespace
