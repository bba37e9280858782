#include <algorithm>

#include <gtest/gtest.h>
#include <platform/window/controls.h>
#include <platform/window/dialog.h>
#include <platform/window/module_state.h>
#include <platform/window/win_app.h>

#include "ui_support.h"

namespace {

struct Recorder : CWnd {
    std::vector<UINT> messages;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        messages.push_back(message);
        return CWnd::WindowProc(message, wParam, lParam);
    }
    bool saw(UINT message) const { return std::count(messages.begin(), messages.end(), message) > 0; }
};

TEST(Window, SeesItsMessagesFromCreationToTheEnd) {
    HiddenParent parent;
    Recorder child;
    ASSERT_TRUE(child.Create("EDIT", "é", WS_CHILD, {0, 0, 50, 20}, &parent, 5));
    EXPECT_TRUE(child.saw(WM_NCCREATE) && child.saw(WM_CREATE));
    EXPECT_EQ(CWnd::FromHandlePermanent(child.m_hWnd), &child);
    EXPECT_EQ(child.GetDlgCtrlID(), 5);
    EXPECT_EQ(textOf(child), "é");
    EXPECT_FALSE(child.Create("EDIT", "", WS_CHILD, {0, 0, 50, 20}, &parent, 6)) << "it has a window";
    const HWND window = child.m_hWnd;
    parent.DestroyWindow();
    EXPECT_TRUE(child.saw(WM_NCDESTROY));
    EXPECT_EQ(child.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(window), nullptr);
    EXPECT_FALSE(child.Create("no such class", "", WS_CHILD, {0, 0, 5, 5}, &parent, 6));
}

TEST(Window, SubclassingLetsGoInAnyOrder) {
    HiddenParent parent;
    const HWND edit =
        ::CreateWindowExA(0, "EDIT", "kept", WS_CHILD, 0, 0, 50, 20, parent, nullptr, nullptr, nullptr);
    const auto before = ::GetWindowLongPtrA(edit, GWLP_WNDPROC);
    {
        Recorder first, second;
        EXPECT_TRUE(first.SubclassWindow(edit));
        EXPECT_FALSE(second.SubclassWindow(edit)) << "one object per window";
        EXPECT_EQ(first.UnsubclassWindow(), edit);
        EXPECT_TRUE(second.SubclassWindow(edit));
    }
    EXPECT_EQ(::GetWindowLongPtrA(edit, GWLP_WNDPROC), before);
    static WNDPROC below;
    const WNDPROC other = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
        return message == WM_APP ? 42 : ::CallWindowProcA(below, window, message, wParam, lParam);
    };
    {
        Recorder first;
        first.SubclassWindow(edit);
        below = reinterpret_cast<WNDPROC>(
            ::SetWindowLongPtrA(edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(other)));
    }
    EXPECT_EQ(::SendMessageA(edit, WM_APP, 0, 0), 42) << "another subclass above ours is not cut off";
    EXPECT_EQ(::SendMessageA(edit, WM_GETTEXTLENGTH, 0, 0), 4);
    Recorder again;
    EXPECT_TRUE(again.SubclassWindow(edit));
    EXPECT_EQ(again.SendMessage(WM_GETTEXTLENGTH), 4);
    EXPECT_TRUE(again.saw(WM_GETTEXTLENGTH));
    ::DestroyWindow(edit);
    EXPECT_EQ(again.m_hWnd, nullptr);
}

TEST(Window, AnObjectMayDeleteItselfWhenItsWindowIsGone) {
    struct OnHeap : CWnd {
        explicit OnHeap(int& deleted) : m_deleted(deleted) {}
        ~OnHeap() override { ++m_deleted; }
        void PostNcDestroy() override { delete this; }
        int& m_deleted;
    };
    int deleted = 0;
    HiddenParent parent;
    auto* const child = new OnHeap(deleted);
    child->Create("STATIC", "", WS_CHILD, {0, 0, 5, 5}, &parent, 1);
    parent.DestroyWindow();
    EXPECT_EQ(deleted, 1);
}

TEST(Window, NotificationsReachTheChildsObjectFirst) {
    struct Child : CEdit {
        std::vector<UINT> heard;
        BOOL answer = FALSE;
        BOOL OnChildNotify(UINT message, WPARAM, LPARAM, LRESULT* result) override {
            heard.push_back(message);
            *result = 7;
            return answer;
        }
    };
    HiddenParent parent;
    Child child;
    child.Create(WS_CHILD, {0, 0, 50, 20}, &parent, 9);
    child.ReplaceSel("a");
    EXPECT_EQ(child.heard, (std::vector<UINT>{WM_COMMAND, WM_COMMAND}));  // EN_UPDATE, EN_CHANGE
    child.answer = TRUE;
    NMHDR header = {child.m_hWnd, 9, 1};
    EXPECT_EQ(parent.SendMessage(WM_NOTIFY, 9, reinterpret_cast<LPARAM>(&header)), 7);
    header.hwndFrom = nullptr;
    EXPECT_EQ(parent.SendMessage(WM_NOTIFY, 9, reinterpret_cast<LPARAM>(&header)), 0);
}

TEST(ModuleState, ScopesAndTheChainOfExtensionModules) {
    const HMODULE program = ::GetModuleHandleA(nullptr);
    AFX_MODULE_STATE other{::GetModuleHandleA("comctl32.dll"), ::GetModuleHandleA("comctl32.dll"), nullptr};
    {
        const AfxManageState scope(&other);
        EXPECT_EQ(AfxGetModuleState(), &other);
        const AfxManageState inner(nullptr);
        EXPECT_EQ(AfxGetResourceHandle(), program);
    }
    const char* const id = MAKEINTRESOURCEA(1);
    const char* const version = MAKEINTRESOURCEA(16);  // the test program has none of its own
    AFX_EXTENSION_MODULE shell, controls;
    AfxInitExtensionModule(shell, ::GetModuleHandleA("shell32.dll"));
    AfxInitExtensionModule(controls, ::GetModuleHandleA("comctl32.dll"));
    {
        const CDynLinkLibrary first(shell), second(controls);
        EXPECT_EQ(AfxFindResourceHandle(id, version), shell.hModule);
        const AfxManageState scope(&other);
        EXPECT_EQ(AfxFindResourceHandle(id, version), controls.hModule) << "the module in force goes first";
    }
    EXPECT_EQ(AfxFindResourceHandle(id, version), program);

    CString text("kept");
    EXPECT_FALSE(AfxLoadString(9003, text));
    EXPECT_STREQ(text, "kept");
    AFX_EXTENSION_MODULE own;
    AfxInitExtensionModule(own, program);
    const CDynLinkLibrary entry(own);
    const AfxManageState scope(&other);
    EXPECT_TRUE(AfxLoadString(9002, text)) << "found behind the module in force";
    EXPECT_STREQ(text, "Accentué : é");
    AfxTermExtensionModule(own);
    EXPECT_FALSE(AfxLoadString(9002, text));
}

TEST(WinApp, RunsUntilItsMainWindowIsGone) {
    struct App : CWinApp {
        int idle = 0;
        HiddenParent window;
        App() : CWinApp("essai") { m_pMainWnd = &window; }
        BOOL OnIdle(LONG count) override {
            if (++idle == 3) window.PostMessage(WM_CLOSE);
            return count < 5;
        }
    };
    CWinApp* const before = AfxGetApp();
    {
        App app;
        EXPECT_EQ(AfxGetApp(), &app);
        EXPECT_EQ(AfxWinMain(nullptr, nullptr, const_cast<char*>(""), SW_HIDE), 0);
        EXPECT_GE(app.idle, 3);
        EXPECT_EQ(app.m_pMainWnd, nullptr);
        CWinApp library("library");
        EXPECT_EQ(AfxGetApp(), &library);
    }
    EXPECT_EQ(AfxGetApp(), before);
}

struct ExchangingDialog : CDialog {
    ExchangingDialog() : CDialog(9001) {}
    CString name = "é";
    int number = 12, checked = 1;
    CEdit edit;
    void DoDataExchange(CDataExchange* exchange) override {
        DDX_Control(exchange, 101, edit);
        DDX_Text(exchange, 101, name);
        DDX_Text(exchange, 102, number);
        DDX_Check(exchange, 103, checked);
    }
};

TEST(Dialog, ExchangesItsDataAndRefusesWhatIsNoNumber) {
    const AnsweringPrompt prompt;
    Worked<ExchangingDialog> dialog;
    dialog.work = [&](auto& shown) {
        EXPECT_EQ(textOf(shown.edit), "é");
        shown.edit.SetWindowText("Désignation");
        shown.SetDlgItemText(102, "12 m");
        shown.press(IDOK);
        EXPECT_EQ(prompt.asked, "Entrez un nombre entier.");
        shown.SetDlgItemText(102, "-5 ");
        ::CheckDlgButton(shown, 103, BST_UNCHECKED);
        shown.press(IDOK);
    };
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_STREQ(dialog.name, "Désignation");
    EXPECT_EQ(dialog.number, -5);
    EXPECT_EQ(dialog.checked, 0);
    EXPECT_EQ(dialog.m_hWnd, nullptr);

    dialog.work = [](auto&) {};
    EXPECT_EQ(dialog.DoModal(), IDCANCEL) << "it may be shown again";
    EXPECT_EQ(CDialog(4242).DoModal(), -1) << "there is no such resource";
    EXPECT_TRUE(dialog.Create());
    dialog.ShowWindow(SW_SHOW);
    dialog.EndDialog(0);
    EXPECT_FALSE(dialog.IsWindowVisible());
}

}  // namespace
