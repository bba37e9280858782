#include <kestra/dialogs/dial_colonnes.h>
#include <kestra/dialogs/resource.h>

#include <gtest/gtest.h>

#include "ui_support.h"

namespace {

/// A list whose header menu is answered by keys as soon as it opens.
class MenuList : public TestList {
  public:
    using TestList::TestList;
    std::vector<std::pair<UINT, std::string>> entries;  // command and text, as the menu shows them
    int downs = 0;                                      // how often the down key is pressed before Enter

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_INITMENUPOPUP) {
            readMenu(reinterpret_cast<HMENU>(wParam));
            for (int i = 0; i < downs; ++i) PostMessage(WM_KEYDOWN, VK_DOWN, 1);
            PostMessage(WM_KEYDOWN, downs > 0 ? VK_RETURN : VK_ESCAPE, 1);
        }
        return TestList::WindowProc(message, wParam, lParam);
    }
    /// Opens the menu on a column and chooses its entry number `downs`, from 1.
    void choose(int entry, int subItem, UINT flags) {
        downs = entry;
        LVHITTESTINFO hit = {};
        hit.iSubItem = subItem;
        hit.flags = flags;
        POINT screen = {10, 10};
        EXPECT_EQ(OnNM_RCLICK(hit, screen), 0);
    }

  private:
    void readMenu(HMENU menu) {
        entries.clear();
        for (int i = 0; i < ::GetMenuItemCount(menu); ++i) {
            char text[100] = {};
            ::GetMenuStringA(menu, static_cast<UINT>(i), text, 100, MF_BYPOSITION);
            entries.push_back({::GetMenuItemID(menu, i), text});
        }
    }
};

class ListMenu : public testing::Test {
  protected:
    HiddenParent parent;
    MenuList list{parent, 5};
};

enum Entry { none, ascending, descending, unsorted, choose, showAll };

TEST_F(ListMenu, EntriesAndTheirTexts) {
    list.choose(none, 0, LVHT_ONITEMLABEL);
    const std::vector<std::pair<UINT, std::string>> wanted = {
        {11, "Tri Croissant"},        {9, "Tri Décroissant"},
        {10, "Pas de Tri"},           {0, ""},
        {20, "Choisir les colonnes"}, {21, "Afficher toutes les colonnes"}};
    EXPECT_EQ(list.entries, wanted);
    EXPECT_EQ(list.m_ColSort, 1);
}

TEST_F(ListMenu, OneFormulaForTheThreeEntries) {
    struct Case {
        Entry entry;
        int subItem;
        UINT flags;
        std::int32_t state;
    };
    constexpr std::int32_t before = 4;
    for (const Case& each : {Case{ascending, 0, LVHT_ONITEMLABEL, 1},
                             {ascending, 3, LVHT_ONITEMLABEL, 4},
                             {descending, 0, LVHT_ONITEMLABEL, 1},
                             {descending, 1, LVHT_ONITEMLABEL, 0},
                             {descending, 2, LVHT_ONITEMLABEL, -1},
                             {descending, 3, LVHT_ONITEMLABEL, -2},
                             {unsorted, 3, LVHT_ONITEMLABEL, 1},
                             {ascending, 2, LVHT_NOWHERE, before},
                             {unsorted, 2, LVHT_ABOVE, before}}) {
        list.m_ColSort = before;
        list.choose(each.entry, each.subItem, each.flags);
        EXPECT_EQ(list.m_ColSort, each.state) << each.entry << " on " << each.subItem;
    }
}

TEST_F(ListMenu, AllColumnsAreShownFromTheFirstThatIsNotFixed) {
    list.m_LastFixedCol = 1;
    for (const auto& [col, width] : {std::pair{0, -50}, {1, -80}, {2, -80}, {3, -4}, {4, 70}}) {
        list.SetColumnWidth(col, width);
    }
    list.m_nColumns = 0;
    list.choose(showAll, 0, 0);
    const int wanted[] = {-50, -80, 80, 10, 70};
    for (int col = 0; col < 5; ++col) EXPECT_EQ(list.GetColumnWidth(col), wanted[col]) << col;
}

TEST_F(ListMenu, ARightClickOnACaptionFindsItsColumn) {
    list.addRow({"a"});
    for (const auto& [x, state] : {std::pair{130, 3}, {70, 2}, {10, 1}}) {
        POINT place = {x, 5};
        list.m_HeaderCtrl.ClientToScreen(&place);
        ::SetCursorPos(place.x, place.y);
        list.downs = ascending;
        list.m_HeaderCtrl.PostMessage(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(x, 5));
        list.m_HeaderCtrl.PostMessage(WM_RBUTTONUP, 0, MAKELPARAM(x, 5));
        pumpMessages();
        EXPECT_EQ(list.m_ColSort, state) << x;
    }
}

/// The chooser, answered as soon as it is shown.
class AnsweredChooser : public CDialColonnes {
  public:
    using CDialColonnes::CDialColonnes;
    std::vector<std::string> shown;           // captions, "+" in front of those with a check mark
    std::vector<std::pair<int, bool>> marks;  // rows to set before the answer
    int answer = IDOK;

  protected:
    BOOL OnInitDialog() override {
        const BOOL result = CDialColonnes::OnInitDialog();
        CListCtrl choices;
        choices.Attach(GetDlgItem(IDC_COLONNES_LISTE));
        for (int row = 0; row < choices.GetItemCount(); ++row) {
            CString text;
            choices.GetItemText(row, 0, text);
            const bool checked = choices.GetItemState(row, LVIS_STATEIMAGEMASK) == 0x2000;
            shown.push_back((checked ? "+" : "") + std::string(text.view()));
        }
        for (const auto& [row, on] : marks) {
            choices.SetItemState(row, on ? 0x2000 : 0x1000, LVIS_STATEIMAGEMASK);
        }
        choices.Detach();
        PostMessage(WM_COMMAND, static_cast<WPARAM>(answer));
        return result;
    }
};

TEST_F(ListMenu, TheChooserShowsAndHides) {
    list.m_HeaderCtrl.SetItemText(4, "deux\nlignes");
    list.SetColumnWidth(2, -80);
    list.SetColumnWidth(3, -4);
    const std::vector<std::string> wanted = {"+c1", "c2", "c3", "+deux lignes"};
    AnsweredChooser cancelled(&list, 1);
    cancelled.marks = {{0, false}, {1, true}};
    cancelled.answer = IDCANCEL;
    EXPECT_EQ(cancelled.DoModal(), IDCANCEL);
    EXPECT_EQ(cancelled.shown, wanted);
    EXPECT_EQ(list.GetColumnWidth(1), 60);
    EXPECT_EQ(list.GetColumnWidth(2), -80);

    AnsweredChooser chosen(&list, 1);
    chosen.marks = {{0, false}, {1, true}, {2, true}};
    EXPECT_EQ(chosen.DoModal(), IDOK);
    const int widths[] = {60, -60, 80, 10, 60};
    for (int col = 0; col < 5; ++col) EXPECT_EQ(list.GetColumnWidth(col), widths[col]) << col;

    EXPECT_EQ(AnsweredChooser(&list, 99).DoModal(), IDOK) << "nothing to offer";
    CLraListCtrl none;
    EXPECT_EQ(AnsweredChooser(&none, 0).DoModal(), IDOK) << "a list without a window";
}

TEST_F(ListMenu, TheChooserOpensOnCaptionsAndBesideThemOnly) {
    static std::string caption;
    const auto opened = [&](UINT flags) {
        caption.clear();
        const UINT_PTR timer = ::SetTimer(nullptr, 0, 100, [](HWND, UINT, UINT_PTR, DWORD) {
            const HWND dialog = ::FindWindowA("#32770", nullptr);
            char text[100] = {};
            if (dialog == nullptr) return;
            ::GetWindowTextA(dialog, text, 100);
            caption = text;
            ::PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
        });
        list.choose(choose, 2, flags);
        ::KillTimer(nullptr, timer);
        return caption;
    };
    EXPECT_EQ(opened(LVHT_ONITEMLABEL), "Choisir les colonnes");
    EXPECT_EQ(opened(LVHT_NOWHERE), "Choisir les colonnes");
    EXPECT_EQ(opened(LVHT_ABOVE), "");
}

}  // namespace
