#include <memory>

#include <gtest/gtest.h>

#include "edit_list_support.h"

// The grid under real keys and a real mouse (SendInput), and under everything that may happen to it
// meanwhile.

namespace {

/// Dispatches what waits, as a program's loop does; input takes a moment to arrive.
void pumpInput() {
    for (int round = 0; round < 5; ++round) {
        MSG message;
        while (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            ::TranslateMessage(&message);
            ::DispatchMessageA(&message);
        }
        ::Sleep(2);
    }
}

void send(INPUT input) {
    ::SendInput(1, &input, sizeof input);
    pumpInput();
}

void sendKey(WORD key, DWORD flags) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = flags;
    send(input);
}

/// Presses a key, with another one held down.
void pressKey(WORD key, WORD held = 0) {
    if (held != 0) sendKey(held, 0);
    sendKey(key, 0);
    sendKey(key, KEYEVENTF_KEYUP);
    if (held != 0) sendKey(held, KEYEVENTF_KEYUP);
}

void clickAt(const CWnd& window, POINT place) {
    window.ClientToScreen(&place);
    for (const DWORD flags : {MOUSEEVENTF_MOVE, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP}) {
        INPUT input = {};
        input.type = INPUT_MOUSE;
        input.mi.dx = place.x * 65536 / ::GetSystemMetrics(SM_CXSCREEN) + 1;
        input.mi.dy = place.y * 65536 / ::GetSystemMetrics(SM_CYSCREEN) + 1;
        input.mi.dwFlags = flags | MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE;
        send(input);
    }
}

class EditListInput : public testing::Test {
  protected:
    GridParent parent;
    TestGrid grid{parent};
    AnsweringPrompt prompt;
    EditListInput() {
        grid.SetFocus();
        pumpInput();
    }
};

TEST_F(EditListInput, RealKeysMoveTypeToggleAndDelete) {
    const struct {
        WORD key, held;
        const char* current;
    } cases[] = {{VK_DOWN, 0, "4,1"},         {'7', 0, "4,1"},       {VK_TAB, 0, "4,2"},
                 {VK_RETURN, 0, "4,3"},       {VK_RETURN, 0, "4,4"}, {VK_TAB, VK_SHIFT, "4,3"},
                 {VK_TAB, 0, "4,4"},          {VK_SPACE, 0, "4,4"},  {VK_RIGHT, 0, "4,5"},
                 {VK_HOME, 0, "4,5"},         {VK_RIGHT, 0, "4,5"},  // the caret moved inside the text
                 {VK_HOME, VK_CONTROL, "0,1"}};
    grid.SetCurrentSubItem(3, TestGrid::left);
    for (const auto& each : cases) {
        pressKey(each.key, each.held);
        EXPECT_EQ(grid.current(), each.current) << each.key;
    }
    EXPECT_EQ(grid.text(4, TestGrid::left) + grid.text(4, TestGrid::check), "70") << "typed over, toggled";
    grid.SetCurrentSubItem(2, 0);
    pressKey(VK_DELETE);
    EXPECT_EQ(grid.GetItemCount(), 19);
}

TEST_F(EditListInput, TheReleaseOfASwallowedKeyIsSwallowedToo) {
    struct Listening : TestGrid {
        using TestGrid::TestGrid;
        int downs = 0, ups = 0;
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            downs += message == WM_KEYDOWN;
            ups += message == WM_KEYUP;
            return TestGrid::WindowProc(message, wParam, lParam);
        }
    };
    Listening each(parent);
    each.SetFocus();
    each.SetCurrentSubItem(2, TestGrid::check);
    pressKey(VK_DOWN);
    EXPECT_EQ(each.downs + each.ups, 0);
    pressKey(VK_F5);
    EXPECT_EQ(each.downs + each.ups, 2);
}

TEST_F(EditListInput, ARealMouseEntersCellsAndTogglesChecks) {
    clickAt(grid, grid.middle(5, TestGrid::right));
    EXPECT_EQ(grid.current() + " " + grid.edited(), "5,2 5,2");
    EXPECT_EQ(::GetFocus(), grid.m_RightEditor.m_hWnd);
    clickAt(grid, grid.middle(7, TestGrid::check));
    EXPECT_EQ(grid.text(7, TestGrid::check) + " " + grid.selected(), "-1 7 ");
    sendKey(VK_CONTROL, 0);
    clickAt(grid, grid.middle(9, TestGrid::left));
    sendKey(VK_CONTROL, KEYEVENTF_KEYUP);
    EXPECT_EQ(grid.current() + " " + grid.selected(), "7,4 7 9 ");
}

TEST_F(EditListInput, TwoGridsShareTheHookInAnyOrder) {
    EXPECT_EQ(CEditListCtrl::m_nWindowsHook, 1);
    const HHOOK hook = CEditListCtrl::m_WindowsHook;
    ASSERT_NE(hook, nullptr);
    auto second = std::make_unique<TestGrid>(parent);
    auto third = std::make_unique<TestGrid>(parent);
    second.reset();
    EXPECT_EQ(CEditListCtrl::m_nWindowsHook, 2);
    EXPECT_EQ(CEditListCtrl::m_WindowsHook, hook);
    third->SetFocus();
    third->SetCurrentSubItem(1, TestGrid::left);
    pressKey(VK_DOWN);
    EXPECT_EQ(third->current() + " " + grid.current(), "2,1 -1,-1");
}

TEST_F(EditListInput, TheParentMayDestroyTheGridInANotification) {
    const std::function<void(TestGrid&)> moves[] = {
        [](TestGrid& each) { each.SetCurrentSubItem(2, TestGrid::left); },
        [](TestGrid& each) { each.click(3, TestGrid::right); }, [](TestGrid&) { pressKey(VK_DOWN); },
        [](TestGrid& each) { each.AddNew(); }};
    for (const bool object : {false, true}) {
        for (const auto& move : moves) {
            auto victim = std::make_unique<TestGrid>(parent);
            victim->SetFocus();
            parent.onMove = [&] { object ? victim.reset() : static_cast<void>(victim->DestroyWindow()); };
            move(*victim);
            parent.onMove = [] {};
            EXPECT_TRUE(victim == nullptr || victim->m_hWnd == nullptr);
        }
    }
}

TEST_F(EditListInput, RowsAndColumnsMayVanishWhileEdited) {
    grid.SetCurrentSubItem(19, TestGrid::left);
    grid.type("orphelin");
    grid.SendMessage(LVM_DELETEITEM, 19);
    EXPECT_EQ(grid.SetCurrentSubItem(3, TestGrid::left), 1);
    EXPECT_EQ(grid.current(), "3,1");
    grid.type("colonne");
    grid.SendMessage(LVM_DELETECOLUMN, TestGrid::left);  // behind the grid's back
    pressKey(VK_DOWN);
    EXPECT_EQ(grid.SetCurrentSubItem(4, 2), 1);
    grid.type("9");
    grid.SendMessage(LVM_DELETEALLITEMS);
    pressKey(VK_UP);
    EXPECT_EQ(grid.SetCurrentSubItem(2, 2), 1);
    EXPECT_EQ(grid.current(), "-1,2");
    while (grid.m_HeaderCtrl.GetItemCount() > 0) grid.DeleteColumn(0);
    grid.SetCurrentSubItem(0, 0);
    pressKey(VK_TAB);
    EXPECT_EQ(grid.SetCurrentSubItemPos(0, 1), 0) << "no columns";
    EXPECT_EQ(grid.AddNew(), 1);
    EXPECT_EQ(grid.Delete(), 1);
}

TEST_F(EditListInput, EditorsMayRefuseTheFocusOrGo) {
    struct Refusing : CEdit {
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            const LRESULT result = CEdit::WindowProc(message, wParam, lParam);
            if (message == WM_SETFOCUS) ::SetFocus(GetParent());
            return result;
        }
    };
    auto* const editor = new Refusing;
    editor->Create(WS_CHILD, {0, 0, 10, 10}, &grid, 901);
    grid.GetMyListHeader(TestGrid::center)->pEditWnd = editor;
    grid.SetCurrentSubItem(2, TestGrid::center);
    EXPECT_EQ(::GetFocus(), grid.m_hWnd);
    EXPECT_EQ(grid.edited(), "2,3");
    grid.SetFocus();
    editor->DestroyWindow();
    EXPECT_EQ(grid.SetCurrentSubItem(3, TestGrid::center), 1);
    EXPECT_EQ(grid.m_pActiveEditor, &grid.m_CenterEditor);
    grid.SetCurrentSubItem(3, TestGrid::left);
    grid.m_LeftEditor.DestroyWindow();
    pressKey(VK_DOWN);
    EXPECT_EQ(grid.SetCurrentSubItem(4, TestGrid::right), 1);
}

TEST_F(EditListInput, AMegabyteInACell) {
    const std::string huge(1 << 20, 'W');
    grid.SetItemText(2, TestGrid::left, huge.c_str());
    grid.SetCurrentSubItem(2, TestGrid::left);
    grid.UpdateWindow();
    grid.SetCurrentSubItem(2, TestGrid::right);
    EXPECT_EQ(grid.text(2, TestGrid::left), huge);
}

TEST_F(EditListInput, AHundredRoundsLeaveNoHandles) {
    const HandleLevels before;
    expectNothingLeft(100, [](int) {
        HiddenParent owner;
        TestGrid each(owner, 3);
        CRecordButton navigator;
        navigator.Create(WS_CHILD | WS_VISIBLE, {0, 310, 300, 335}, &owner, 78);
        each.LinkRecordButton(&navigator);
        each.SetCurrentSubItem(1, TestGrid::left);
        each.AddNew();
        for (const int height : {30, 40}) each.SetItemHeight(height);
        each.SortColum(1);
    });
    std::vector<HPEN> lost;
    for (int i = 0; i < 50; ++i) lost.push_back(::CreatePen(PS_SOLID, 1, RGB(3, 2, 1)));
    EXPECT_GT(HandleLevels().gdi, before.gdi + 8) << "the measure sees what is lost";
    for (const HPEN pen : lost) ::DeleteObject(pen);
}

}  // namespace
