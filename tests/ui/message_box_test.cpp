#include <gtest/gtest.h>
#include <kestra/dialogs/message_box.h>
#include <kestra/dialogs/message_box_dialog.h>
#include <kestra/dialogs/resource.h>
#include <platform/window/win_app.h>

#include <functional>
#include <memory>
#include <utility>

#include "ui_support.h"

namespace {

constexpr int unanswered = -1;

/// The real box, worked by what a test does once it is shown; what is left open is then ended.
class WorkedBox : public CMessageBoxDialog {
  public:
    using CMessageBoxDialog::CMessageBoxDialog;
    std::function<void(WorkedBox&)> work = [](WorkedBox&) {};
    bool waits = false;  // for its count-down

    int run(std::function<void(WorkedBox&)> done) {
        work = std::move(done);
        return static_cast<int>(DoModal());
    }
    bool isEnabled(int id) const { return ::IsWindowEnabled(GetDlgItem(id)); }
    bool mayClose() const {
        const UINT state = ::GetMenuState(::GetSystemMenu(m_hWnd, FALSE), SC_CLOSE, MF_BYCOMMAND);
        return (state & (MF_GRAYED | MF_DISABLED)) == 0;
    }
    void press(int id) { ::SendMessageA(GetDlgItem(id), BM_CLICK, 0, 0); }
    /// As the keyboard's messages come, to what has the focus when their turn comes.
    void keys(std::initializer_list<int> pressed) { m_keys.assign(pressed); }
    /// By the keyboard itself.
    void realKey(int key) {
        ShowWindow(SW_SHOW);
        ::SetForegroundWindow(m_hWnd);
        INPUT inputs[2] = {};
        for (INPUT& input : inputs) {
            input.type = INPUT_KEYBOARD;
            input.ki.wVk = static_cast<WORD>(key);
        }
        inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
        ::SendInput(2, inputs, sizeof inputs[0]);
    }
    std::function<void(WorkedBox&)> then;  // runs after the keys
    void tick(int times = 1) {
        for (int i = 0; i < times && m_hWnd != nullptr; ++i) SendMessage(WM_TIMER, timerId);
    }
    /// Texts of the buttons in their order, the one with the focus in brackets.
    std::string buttons() const {
        std::string all;
        for (HWND child = nullptr; (child = ::FindWindowExA(m_hWnd, child, "Button", nullptr)) != nullptr;) {
            const std::string label = textOf(*this, ::GetDlgCtrlID(child));
            all += child == ::GetFocus() ? "[" + label + "]|" : label + "|";
        }
        return all;
    }

  protected:
    BOOL OnInitDialog() override {
        const BOOL result = CMessageBoxDialog::OnInitDialog();
        PostMessage(WM_APP);
        return result;
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_TIMER && wParam == patience) CDialog::EndDialog(unanswered);
        if (message == WM_APP) {
            SetTimer(patience, 5000);
            work(*this);
            PostMessage(WM_APP + 1);
        } else if (message == WM_APP + 1) {
            nextStep();
        }
        return CMessageBoxDialog::WindowProc(message, wParam, lParam);
    }

  private:
    /// The next key, each dealt with before the one behind it; then what is left to do.
    void nextStep() {
        if (m_keys.empty() && then != nullptr) std::exchange(then, nullptr)(*this);
        if (!m_keys.empty()) {
            ::PostMessageA(::GetFocus(), WM_KEYDOWN, static_cast<WPARAM>(m_keys.front()), 1);
            m_keys.erase(m_keys.begin());
        } else if (waits) {
            return;
        } else if (++m_rounds == 4) {
            return CDialog::EndDialog(unanswered);
        }
        PostMessage(WM_APP + 1);
    }
    static constexpr UINT_PTR patience = 7;
    std::vector<int> m_keys;
    int m_rounds = 0;
};

/// A host application with a profile of its own, empty at the start and at the end.
class MessageBoxWindow : public testing::Test {
  protected:
    MessageBoxWindow() {
        host.SetRegistryKey("Kestra essais");
        CMessageBoxDialog::ResetMessageBoxes();
    }
    ~MessageBoxWindow() override { CMessageBoxDialog::ResetMessageBoxes(); }
    int remembered(const char* name) const {
        return host.GetProfileInt(CMessageBoxDialog::profileSection, name, -1);
    }

    CWinApp host{"Essai"};
};

TEST_F(MessageBoxWindow, ShowsTheTextsOfItsResources) {
    const struct {
        UINT style;
        const char* buttons;
        int escape;
    } cases[] = {{0, "[&Ok]|", 1},
                 {0x101 | 0x4000, "&Ok|[&Annuler]|&Aide|", 2},
                 {2, "[&Abort]|&Retry|&Ignore|", unanswered},
                 {3 | 0x04000000, "[&Oui]|Oui pour Tous|&Non|&Annuler|", 2},
                 {4 | 0x0C000000, "[&Oui]|Oui pour Tous|&Non|Non pour Tous|", unanswered},
                 {6 | 0x01000000, "Ne plus afficher ce Message|[&Annuler]|&Retry|&Continue|", 2},
                 {7 | 0x02000000, "Ne plus me poser la Question|[&Continue]|&Abort|", unanswered},
                 {8, "[&Skip]|Skip &all|&Annuler|", 2},
                 {9, "[&Ignore]|Ignore &all|&Annuler|", 2}};
    int way = 0;
    for (const auto& each : cases) {
        WorkedBox box(nullptr, "Question ?", "Titre", each.style | 0x20000000);
        const int result = box.run([&](WorkedBox& shown) {
            EXPECT_EQ(shown.buttons(), each.buttons);
            EXPECT_EQ(shown.mayClose(), each.escape != unanswered);
            EXPECT_EQ(textOf(shown, IDC_BOX_MESSAGE), "Question ?");
            if (++way % 3 == 0) shown.PostMessage(WM_CLOSE);
            if (way % 3 != 0) shown.keys({way % 3 == 1 ? VK_ESCAPE : VK_CANCEL});
        });
        EXPECT_EQ(result, each.escape) << each.style;
    }
    WorkedBox untitled(nullptr, nullptr);
    EXPECT_EQ(untitled.run([&](WorkedBox& shown) {
        EXPECT_EQ(textOf(shown), "Essai");
        shown.press(1);
    }),
              1);
}

TEST_F(MessageBoxWindow, RealKeys) {
    const struct {
        UINT style;
        std::initializer_list<int> keys;
        int result;
    } cases[] = {{0x103, {VK_RETURN}, 7},
                 {3, {VK_RIGHT, VK_RIGHT, VK_RETURN}, 2},
                 {4 | 0x01000000, {VK_TAB, VK_TAB, VK_RETURN}, 6},
                 {4, {VK_ESCAPE, VK_TAB, VK_SPACE}, 7},
                 {3, {'N'}, 7}};
    for (const auto& each : cases) {
        WorkedBox box(nullptr, "Question ?", "Titre", each.style | 0x20000000);
        box.waits = true;
        EXPECT_EQ(box.run([&](WorkedBox& shown) {
            for (const int key : each.keys) shown.realKey(key);
        }),
                  each.result)
            << each.style << " " << *each.keys.begin();
    }
}

TEST_F(MessageBoxWindow, CountsDownToItsDefault) {
    WorkedBox box(nullptr, "Attendre", nullptr, 1);
    box.SetTimeout(2, 0);
    std::string labels;
    EXPECT_EQ(box.run([&](WorkedBox& shown) {
        labels = textOf(shown, 1);
        shown.SendMessage(WM_TIMER, CMessageBoxDialog::timerId + 1);
        for (int i = 0; i < 2; ++i) shown.tick(), labels += "|" + textOf(shown, 1);
    }),
              1);
    EXPECT_EQ(labels, "&Ok|&Ok = 1|&Ok");
    WorkedBox none(nullptr, "Attendre", nullptr, 1);
    none.SetTimeout(0, 1);
    EXPECT_EQ(none.run([](WorkedBox& shown) { shown.tick(), shown.press(1); }), 1);
    WorkedBox real(nullptr, "Attendre", nullptr, 1);
    real.SetTimeout(1, 0);
    real.waits = true;
    EXPECT_EQ(real.run([](WorkedBox&) {}), 1) << "by the real timer";
}

TEST_F(MessageBoxWindow, HoldsItsControlsUntilTheTimeIsOver) {
    WorkedBox box(nullptr, "Lire", nullptr, 1 | 0x01000000 | 0x4000);
    box.SetTimeout(2, 1);
    const auto all = [](WorkedBox& shown) {
        return shown.isEnabled(1) + shown.isEnabled(2) + shown.isEnabled(9) + shown.isEnabled(19);
    };
    box.then = [&](WorkedBox& shown) {
        shown.tick();
        EXPECT_EQ(textOf(shown, 1), "&Ok = 1");
        EXPECT_EQ(all(shown), 0);
        shown.tick();
        EXPECT_EQ(textOf(shown, 1), "&Ok");
        EXPECT_EQ(all(shown), 4);
        EXPECT_TRUE(shown.mayClose());
        EXPECT_EQ(::GetFocus(), shown.GetDlgItem(1));
        shown.tick(3);
        shown.keys({VK_ESCAPE});
    };
    EXPECT_EQ(box.run([&](WorkedBox& shown) {
        EXPECT_EQ(all(shown), 0);
        EXPECT_FALSE(shown.mayClose());
        shown.keys({VK_RETURN, VK_ESCAPE, VK_CANCEL, VK_TAB, VK_SPACE, 'O'});
        shown.PostMessage(WM_CLOSE);
        shown.SendMessage(WM_COMMAND, 2);
    }),
              2);
}

TEST_F(MessageBoxWindow, RemembersTheAnswerUntilItIsReset) {
    constexpr UINT style = 1 | 0x01000000;
    const auto ask = [&](const char* message, UINT helpId, bool tick, int button,
                         UINT bits = 1 | 0x01000000) {
        WorkedBox box(nullptr, message, nullptr, bits, helpId);
        return box.run([&](WorkedBox& shown) {
            if (tick) shown.press(19);
            shown.press(button);
        });
    };
    EXPECT_EQ(ask("xAB", 0, false, 1), 1);
    EXPECT_EQ(ask("xAB", 0, true, 2), 2);
    EXPECT_EQ(ask("xAB", 0, false, 1), 2) << "without showing anything";
    EXPECT_EQ(MyAfxMessageBox("yAB", style, 0), 2)
        << "messages that differ in their first character share it";
    EXPECT_EQ(ask("xAB", 0, false, 1, 1), 1) << "without the bit nothing is looked up";
    EXPECT_EQ(ask("xAB", 57, true, 1) + ask("other", 57, false, 2), 2);
    EXPECT_EQ(remembered("57"), 1);
    CMessageBoxDialog::ResetMessageBoxes();
    EXPECT_EQ(ask("xAB", 0, false, 1), 1) << "shown again";
    EXPECT_EQ(remembered("57"), -1);

    WorkedBox timed(nullptr, "seul", nullptr, style, 58);
    timed.SetTimeout(1, 0);
    EXPECT_EQ(timed.run([](WorkedBox& shown) { shown.press(19), shown.tick(); }), 1);
    EXPECT_EQ(remembered("58"), 1);
    host.WriteProfileInt("MessageBoxes", "59", 777);
    EXPECT_EQ(ask("m", 59, false, 1), 777) << "as it was stored";
    ::RegSetKeyValueA(HKEY_CURRENT_USER, "Software\\Kestra essais\\Essai\\MessageBoxes", "60", REG_SZ, "2",
                      2);
    EXPECT_EQ(ask("m", 60, true, 1), 1) << "a damaged answer counts as none";
    EXPECT_EQ(remembered("60"), 1) << "and is put right by the next";
}

TEST_F(MessageBoxWindow, KeptTheNameOfTheAnswerIsMadeOnce) {
    WorkedBox box(nullptr, "xAB", nullptr, 1 | 0x02000000);
    EXPECT_EQ(box.run([](WorkedBox& shown) { shown.press(1); }), 1);
    box.SetMessage("tout autre");
    EXPECT_EQ(box.run([](WorkedBox& shown) { shown.press(19), shown.press(2); }), 2);
    EXPECT_EQ(remembered("197"), 2);
}

TEST_F(MessageBoxWindow, AsksItsOwnerForHelp) {
    struct Owner : HiddenParent {
        std::vector<DWORD> asked;
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            if (message == WM_HELP)
                asked.push_back(static_cast<DWORD>(reinterpret_cast<const HELPINFO*>(lParam)->dwContextId));
            return HiddenParent::WindowProc(message, wParam, lParam);
        }
    } owner;
    WorkedBox box(&owner, "Aide ?", nullptr, 0x4000, 4000000000U);
    box.waits = true;
    EXPECT_EQ(box.run([](WorkedBox& shown) {
        shown.press(9);
        shown.realKey(VK_F1);
        shown.realKey(VK_RETURN);
    }),
              1);
    EXPECT_EQ(owner.asked, (std::vector<DWORD>{4000000000U, 4000000000U}));
}

TEST_F(MessageBoxWindow, HoldsTextsOfAnySize) {
    std::string lines;
    for (int i = 1; i <= 40; ++i) lines += "Ligne " + std::to_string(i) + " & co\r\n";
    for (const std::string& message : {lines, std::string(100 * 1024, 'x'), std::string(50000, '\n')}) {
        WorkedBox box(nullptr, message.c_str(), "Titre", 1 | 0x01000000 | 0x40);
        EXPECT_EQ(box.run([&](WorkedBox& shown) {
            const CRect client = shown.GetClientRect();
            for (HWND child = ::GetWindow(shown, GW_CHILD); child != nullptr;
                 child = ::GetWindow(child, GW_HWNDNEXT)) {
                CRect place;
                ::GetWindowRect(child, &place);
                ::MapWindowPoints(nullptr, shown, reinterpret_cast<POINT*>(&place), 2);
                EXPECT_TRUE(client.PtInRect({place.left, place.top}) &&
                            client.PtInRect({place.right, place.bottom}));
            }
            const HWND text = shown.GetDlgItem(IDC_BOX_MESSAGE);
            EXPECT_EQ((::GetWindowLongA(text, GWL_STYLE) & WS_VSCROLL) != 0, message.size() > 10000);
            std::string shownText = textOf(shown, IDC_BOX_MESSAGE), whole = message;
            for (std::string* each : {&shownText, &whole})
                std::erase_if(*each, [](char c) { return c == '\r' || c == '\n'; });
            EXPECT_EQ(shownText, whole);
            shown.keys({VK_ESCAPE});
        }),
                  2);
    }
}

TEST_F(MessageBoxWindow, CopiesItselfToTheClipboard) {
    WorkedBox box(nullptr, "Une\nDeux", "Titre", 0x103);
    {
        const ControlHeld control;
        box.run([](WorkedBox& shown) { shown.keys({'C'}); });
    }
    ASSERT_TRUE(::OpenClipboard(nullptr));
    const HANDLE data = ::GetClipboardData(CF_TEXT);
    const std::string copied = data != nullptr ? static_cast<const char*>(::GlobalLock(data)) : "";
    ::CloseClipboard();
    const std::string rule = "---------------------------\r\n";
    EXPECT_EQ(copied,
              rule + "Titre\r\n" + rule + "Une\r\nDeux\r\n" + rule + "Oui   Non   Annuler   \r\n" + rule);
}

TEST_F(MessageBoxWindow, EndsWithItsOwnerAndWithAKeyDown) {
    auto owner = std::make_unique<HiddenParent>();
    WorkedBox orphan(owner.get(), "m", nullptr, 1 | 0x01000000, 61);
    EXPECT_EQ(orphan.run([&](WorkedBox& shown) {
        shown.press(19);
        owner.reset();
    }),
              -1);
    EXPECT_EQ(remembered("61"), -1) << "that was no answer";

    WorkedBox held(nullptr, "m", nullptr, 3);
    held.SetTimeout(1, 0);
    EXPECT_EQ(held.run([](WorkedBox& shown) {
        ::SendMessageA(shown.GetDlgItem(2), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        ::SendMessageA(::GetFocus(), WM_KEYDOWN, VK_SPACE, 1);
        shown.tick();
        shown.keys({VK_ESCAPE});
    }),
              6);
    EXPECT_EQ(::GetCapture(), nullptr);
    EXPECT_EQ(WorkedBox(nullptr, "a box may be shown by a box").run([](WorkedBox& shown) {
        WorkedBox inner(nullptr, "inner", nullptr, 4);
        EXPECT_EQ(inner.run([&](WorkedBox& box) {
            EXPECT_FALSE(::IsWindowEnabled(shown)) << "the one below waits";
            box.keys({VK_ESCAPE});
            box.press(7);
        }),
                  7);
        EXPECT_EQ(shown.DoModal(), -1);
        shown.EndDialog(1);
    }),
              1);
}

TEST_F(MessageBoxWindow, FourHundredRoundsLeaveNothingBehind) {
    expectNothingLeft(400, [](int i) {
        WorkedBox box(nullptr, "Encore une\nfois", "Titre",
                      0x2C000043U | (i % 2 != 0 ? 0x02004000U : 0x40000U));
        box.SetTimeout(3, i % 2);
        box.run([](WorkedBox& shown) { shown.tick(3); });
    });
}

}  // namespace
