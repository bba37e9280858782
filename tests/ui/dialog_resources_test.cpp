#include <gtest/gtest.h>
#include <kestra/dialogs/dial_edit_box.h>
#include <kestra/dialogs/my_file_dialog.h>
#include <kestra/dialogs/resource.h>
#include <kestra/project/chantier.h>
#include <platform/prompt.h>

#include <functional>
#include <map>

#include "ui_support.h"

namespace {

std::string textOf(HWND window) {
    char text[200] = {};
    ::GetWindowTextA(window, text, sizeof text);
    return text;
}

std::string classOf(HWND window) {
    char name[40] = {};
    ::GetClassNameA(window, name, sizeof name);
    return name;
}

/// Access key of a text, upper case; 0 for none.
int accessKey(const std::string& text) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != '&') continue;
        if (text[++i] != '&') return std::toupper(static_cast<unsigned char>(text[i]));
    }
    return 0;
}

/// What a screen reader says: a button's own text, else that of the static control before it.
std::string spokenName(HWND control) {
    if (classOf(control) == "Button") return textOf(control);
    const HWND before = ::GetWindow(control, GW_HWNDPREV);
    return before != nullptr && classOf(before) == "Static" ? textOf(before) : "";
}

void expectSound(HWND dialog) {
    std::map<int, std::string> keys;
    RECT before = {};
    for (HWND child = ::GetWindow(dialog, GW_CHILD); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        const std::string text = textOf(child);
        const bool named = classOf(child) == "Button" || classOf(child) == "Static";
        if (const int key = named ? accessKey(text) : 0) {
            EXPECT_EQ(keys[key], "") << text;
            keys[key] = text;
        }
        if ((::GetWindowLongA(child, GWL_STYLE) & WS_TABSTOP) == 0) continue;
        EXPECT_NE(spokenName(child), "") << ::GetDlgCtrlID(child);
        RECT place;
        ::GetWindowRect(child, &place);
        // In the order of reading: to the right in a row, or down a column, or to the top of a next column.
        EXPECT_TRUE(place.top >= before.top || place.left >= before.right || place.top >= before.bottom)
            << ::GetDlgCtrlID(child);
        before = place;
    }
    EXPECT_TRUE(::GetDlgItem(dialog, IDCANCEL) != nullptr) << "Escape closes it";
}

TEST(DialogResources, HaveATabOrderNamesAndAccessKeysThatDoNotClash) {
    static int checked;
    checked = 0;
    const auto check = [](HMODULE module, const char*, char* name, LONG_PTR) -> BOOL {
        if (!IS_INTRESOURCE(name)) return TRUE;
        const auto id = reinterpret_cast<UINT_PTR>(name);
        if (id == IDD_MESSAGE_BOX || id >= 9000) return TRUE;  // made at run time; of the tests
        SCOPED_TRACE(id);
        const HWND dialog = ::CreateDialogParamA(
            module, name, nullptr, [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
        EXPECT_NE(dialog, nullptr);
        expectSound(dialog);
        ::DestroyWindow(dialog);
        ++checked;
        return TRUE;
    };
    ::EnumResourceNamesA(nullptr, MAKEINTRESOURCEA(5) /* RT_DIALOG */, check, 0);
    EXPECT_GE(checked, 3);
}

/// The text box, worked as soon as it is shown.
class WorkedEditBox : public CDialEditBox {
  public:
    std::function<void(WorkedEditBox&)> work;
    void enter(const char* text) { SetDlgItemText(IDC_EDIT_BOX_VALEUR, text); }
    void press(int id) { SendMessage(WM_COMMAND, static_cast<WPARAM>(id)); }

  protected:
    BOOL OnInitDialog() override {
        const BOOL result = CDialEditBox::OnInitDialog();
        PostMessage(WM_APP);
        return result;
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_APP) work(*this), PostMessage(WM_COMMAND, IDCANCEL);
        return CDialEditBox::WindowProc(message, wParam, lParam);
    }
};

TEST(DialEditBox, AsksForALine) {
    const std::string big(100 * 1024, 'y');
    for (const bool ok : {true, false}) {
        WorkedEditBox box;
        box.m_titre = "Renommer";
        box.m_texte = "&Nom :";
        box.m_valeur = "avant";
        box.work = [&](WorkedEditBox& shown) {
            EXPECT_EQ(textOf(shown), "Renommer");
            EXPECT_EQ(textOf(shown.GetDlgItem(IDC_EDIT_BOX_TEXTE)), "&Nom :");
            EXPECT_EQ(textOf(shown.GetDlgItem(IDC_EDIT_BOX_VALEUR)), "avant");
            shown.enter(big.c_str());
            shown.press(ok ? IDOK : IDCANCEL);
        };
        EXPECT_EQ(box.DoModal(), ok ? IDOK : IDCANCEL);
        EXPECT_EQ(box.m_valeur.view(), ok ? big : "avant");
    }
}

TEST(DialEditBox, LimitsAndRefuses) {
    WorkedEditBox box;
    box.m_longueur = 5;
    static int asked;
    asked = 0;
    box.m_accepte = [](const CString& value, void*) { return ++asked > 1 && !value.IsEmpty(); };
    box.work = [](WorkedEditBox& shown) {
        for (const char key : {'a', 'b', 'c', 'd', 'e', 'f'})
            ::SendMessageA(shown.GetDlgItem(IDC_EDIT_BOX_VALEUR), WM_CHAR, static_cast<WPARAM>(key), 1);
        shown.press(IDOK);
        EXPECT_NE(shown.m_hWnd, nullptr) << "refused";
        shown.press(IDOK);
    };
    EXPECT_EQ(box.DoModal(), IDOK);
    EXPECT_STREQ(box.m_valeur, "abcde");
}

/// A chooser whose answer of the system is given.
struct ChosenFiles : CMyFileDialog {
    ChosenFiles(DWORD flags, std::string_view chosen, const char* extension = "cht")
        : CMyFileDialog(true, extension, nullptr, flags) {
        m_path.assign(chosen);
        m_path.resize(chosen.size() + 10);
    }
};

TEST(MyFileDialog, GivesEachFileItsWholePath) {
    using namespace std::string_view_literals;
    const struct {
        DWORD flags;
        std::string_view chosen;
        std::vector<const char*> paths;
    } cases[] = {{0, ""sv, {}},
                 {0, "C:\\a\\b.cht"sv, {"C:\\a\\b.cht"}},
                 {OFN_ALLOWMULTISELECT, "C:\\a\\b.cht"sv, {"C:\\a\\b.cht"}},
                 {OFN_ALLOWMULTISELECT, "C:\\a\0b c.cht\0d.cht"sv, {"C:\\a\\b c.cht", "C:\\a\\d.cht"}},
                 {OFN_ALLOWMULTISELECT, "C:\\\0b.cht\0c"sv, {"C:\\b.cht", "C:\\c"}}};
    for (const auto& each : cases) {
        const ChosenFiles dialog(each.flags, each.chosen);
        CStringArray paths;
        ASSERT_EQ(dialog.GetPathNames(paths), static_cast<int>(each.paths.size()));
        for (int i = 0; i < paths.GetSize(); ++i)
            EXPECT_STREQ(paths[i], each.paths[static_cast<std::size_t>(i)]);
        EXPECT_STREQ(dialog.GetPathName(), each.paths.empty() ? "" : each.paths[0]);
    }
}

/// Answers the system's dialog as soon as it is there, with a file name (empty: cancel).
struct AnswersFileDialog {
    explicit AnswersFileDialog(std::string name) {
        file = std::move(name);
        timer = ::SetTimer(nullptr, 0, 200, [](HWND, UINT, UINT_PTR, DWORD) {
            for (HWND window = ::FindWindowExA(nullptr, nullptr, "#32770", nullptr); window != nullptr;
                 window = ::FindWindowExA(nullptr, window, "#32770", nullptr)) {
                HWND edit = ::GetDlgItem(window, 0x47C);
                if (edit == nullptr) edit = ::GetDlgItem(window, 0x480);
                if (edit == nullptr) continue;
                title = textOf(window);
                ::SetWindowTextA(edit, file.c_str());
                ::PostMessageA(window, WM_COMMAND, file.empty() ? IDCANCEL : IDOK, 0);
            }
        });
    }
    ~AnswersFileDialog() { ::KillTimer(nullptr, timer); }
    static inline std::string file, title;
    UINT_PTR timer;
};

TEST(MyFileDialog, StartsWhereTheUserLastWas) {
    const CString before = chtdef.m_cheminCht;
    chtdef.m_cheminCht = "C:\\affaires\\un.cht";
    EXPECT_STREQ(CMyFileDialog(true, "pts").StartFolder(), "C:\\affaires\\");
    {
        const AnswersFileDialog answer("C:\\windows\\neuf.pts");
        CMyFileDialog dialog(false, "pts", "<mauvais>?", OFN_EXPLORER);
        dialog.m_titre = "Enregistrer les points";
        EXPECT_EQ(dialog.DoModal(), IDOK);
        EXPECT_STREQ(dialog.GetPathName(), "C:\\windows\\neuf.pts");
        EXPECT_EQ(AnswersFileDialog::title, "Enregistrer les points");
    }
    EXPECT_STREQ(CMyFileDialog(true, "PTS").StartFolder(), "C:\\windows\\");
    EXPECT_STREQ(CMyFileDialog(true, "cht").StartFolder(), "C:\\affaires\\") << "each extension by itself";
    const AnswersFileDialog cancel("");
    EXPECT_EQ(CMyFileDialog(true, "pts").DoModal(), IDCANCEL);
    EXPECT_STREQ(CMyFileDialog(true, "pts").StartFolder(), "C:\\windows\\");
    chtdef.m_cheminCht = before;
}

}  // namespace
