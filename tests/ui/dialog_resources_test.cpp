#include <gtest/gtest.h>
#include <kestra/dialogs/dial_edit_box.h>
#include <kestra/dialogs/my_file_dialog.h>
#include <kestra/dialogs/resource.h>
#include <kestra/project/chantier.h>

#include <map>

#include "ui_support.h"

namespace {

std::string labelOf(HWND window) {
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
    if (classOf(control) == "Button") return labelOf(control);
    const HWND before = ::GetWindow(control, GW_HWNDPREV);
    return before != nullptr && classOf(before) == "Static" ? labelOf(before) : "";
}

void expectSound(HWND dialog) {
    std::map<int, std::string> keys;
    RECT before = {};
    for (HWND child = ::GetWindow(dialog, GW_CHILD); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        const std::string text = labelOf(child);
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

TEST(DialEditBox, AsksForALine) {
    const std::string big(100 * 1024, 'y');
    for (const int button : {IDOK, IDCANCEL}) {
        Worked<CDialEditBox> box;
        box.m_titre = "Renommer";
        box.m_texte = "&Nom :";
        box.m_valeur = "avant";
        box.work = [&](auto& shown) {
            EXPECT_EQ(textOf(shown), "Renommer");
            EXPECT_EQ(textOf(shown, IDC_EDIT_BOX_TEXTE), "&Nom :");
            EXPECT_EQ(textOf(shown, IDC_EDIT_BOX_VALEUR), "avant");
            shown.SetDlgItemText(IDC_EDIT_BOX_VALEUR, big.c_str());
            shown.press(button);
        };
        EXPECT_EQ(box.DoModal(), button);
        EXPECT_EQ(box.m_valeur.view(), button == IDOK ? big : "avant");
    }
}

TEST(DialEditBox, LimitsAndRefuses) {
    Worked<CDialEditBox> box;
    box.m_longueur = 5;
    static int asked;
    asked = 0;
    box.m_accepte = [](const CString& value, void*) { return ++asked > 1 && !value.IsEmpty(); };
    box.work = [](auto& shown) {
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
        const char* paths;
    } cases[] = {{0, ""sv, ""},
                 {0, "C:\\a\\b.cht"sv, "C:\\a\\b.cht|"},
                 {OFN_ALLOWMULTISELECT, "C:\\a\\b.cht"sv, "C:\\a\\b.cht|"},
                 {OFN_ALLOWMULTISELECT, "C:\\a\0b c.cht\0d.cht"sv, "C:\\a\\b c.cht|C:\\a\\d.cht|"},
                 {OFN_ALLOWMULTISELECT, "C:\\\0b.cht\0c"sv, "C:\\b.cht|C:\\c|"}};
    for (const auto& each : cases) {
        const ChosenFiles dialog(each.flags, each.chosen);
        CStringArray paths;
        const int count = dialog.GetPathNames(paths);
        EXPECT_EQ(count, paths.GetSize());
        std::string all;
        for (int i = 0; i < paths.GetSize(); ++i) all += std::string(paths[i]) + "|";
        EXPECT_EQ(all, each.paths);
        EXPECT_EQ(dialog.GetPathName().view(), all.substr(0, all.find('|')));
    }
}

TEST(MyFileDialog, StartsWhereTheUserLastWas) {
    const CString before = chtdef.m_cheminCht;
    chtdef.m_cheminCht = "C:\\affaires\\un.cht";
    EXPECT_STREQ(CMyFileDialog(true, "pts").StartFolder(), "C:\\affaires\\");
    {
        std::string title;
        const DialogWorker worker(DialogWorker::fileName, [&](HWND dialog) {
            title = labelOf(dialog);
            ::SetDlgItemTextA(dialog, DialogWorker::fileName, "C:\\windows\\neuf");
            ::PostMessageA(dialog, WM_COMMAND, IDOK, 0);
        });
        CMyFileDialog dialog(false, "pts", "<mauvais>?", OFN_EXPLORER);
        dialog.m_titre = "Enregistrer les points";
        EXPECT_EQ(dialog.DoModal(), IDOK);
        EXPECT_STREQ(dialog.GetPathName(), "C:\\windows\\neuf.pts");
        EXPECT_STREQ(dialog.GetFileName() + " " + dialog.GetFileTitle() + " " + dialog.GetFileExt(),
                     "neuf.pts neuf pts");
        EXPECT_EQ(title, "Enregistrer les points");
    }
    EXPECT_STREQ(CMyFileDialog(true, "PTS").StartFolder(), "C:\\windows\\");
    EXPECT_STREQ(CMyFileDialog(true, "cht").StartFolder(), "C:\\affaires\\") << "each extension by itself";
    const DialogWorker cancel("");
    EXPECT_EQ(CMyFileDialog(true, "pts").DoModal(), IDCANCEL);
    EXPECT_STREQ(CMyFileDialog(true, "pts").StartFolder(), "C:\\windows\\");
    chtdef.m_cheminCht = before;
}

}  // namespace
