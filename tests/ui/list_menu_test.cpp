#include <kestra/dialogs/dial_colonnes.h>
#include <kestra/dialogs/resource.h>

#include <gtest/gtest.h>

#include "ui_support.h"

namespace {

/// A list whose header menu is answered by keys as soon as it opens.
class MenuList : public TestList {
  public:
    using TestList::TestList;
    std::string entries;  // command and text of each, as the menu shows them
    int downs = 0;        // how often the down key is pressed before Enter

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_INITMENUPOPUP) {
            readMenu(reinterpret_cast<HMENU>(wParam));
            for (int i = 0; i < downs; ++i) PostMessage(WM_KEYDOWN, VK_DOWN, 1);
            PostMessage(WM_KEYDOWN, downs > 0 ? VK_RETURN : VK_ESCAPE, 1);
        }
        return TestList::WindowProc(message, wParam, lParam);
    }
    /// Opens the menu on a column and chooses an entry, counted from 1 without the separator.
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
            entries += std::to_string(::GetMenuItemID(menu, i)) + text + "|";
        }
    }
};

class ListMenu : public testing::Test {
  protected:
    HiddenParent parent;
    MenuList list{parent, 5};

    void expectWidths(const std::vector<int>& widths) {
        for (int col = 0; col < 5; ++col)
            EXPECT_EQ(list.GetColumnWidth(col), widths[static_cast<std::size_t>(col)]);
    }
};

enum Entry { none, ascending, descending, unsorted, choose, showAll };

TEST_F(ListMenu, OneFormulaForTheThreeEntries) {
    struct Case {
        Entry entry;
        int subItem;
        UINT flags;
        std::int32_t state;
    };
    constexpr std::int32_t before = 4;
    for (const Case& each : {Case{none, 2, LVHT_ONITEMLABEL, before},
                             {ascending, 0, LVHT_ONITEMLABEL, 1},
                             {ascending, 3, LVHT_ONITEMLABEL, 4},
                             {descending, 0, LVHT_ONITEMLABEL, 1},
                             {descending, 1, LVHT_ONITEMLABEL, 0},
                             {descending, 3, LVHT_ONITEMLABEL, -2},
                             {unsorted, 3, LVHT_ONITEMLABEL, 1},
                             {ascending, 2, LVHT_NOWHERE, before}}) {
        list.m_ColSort = before;
        list.choose(each.entry, each.subItem, each.flags);
        EXPECT_EQ(list.m_ColSort, each.state) << each.entry << " on " << each.subItem;
    }
    EXPECT_EQ(list.entries,
              "11Tri Croissant|9Tri Décroissant|10Pas de Tri|0|20Choisir les colonnes|21Afficher toutes les "
              "colonnes|");
}

TEST_F(ListMenu, AllColumnsAreShownFromTheFirstThatIsNotFixed) {
    list.m_LastFixedCol = 1;
    const int set[] = {-50, -80, -80, -4, 70};
    for (int col = 0; col < 5; ++col) list.SetColumnWidth(col, set[col]);
    list.m_nColumns = 0;
    list.choose(showAll, 0, 0);
    expectWidths({-50, -80, 80, 10, 70});
}

TEST_F(ListMenu, ARightClickOnACaptionFindsItsColumn) {
    for (const auto& [x, state] : {std::pair{130, 3}, {10, 1}}) {
        list.downs = ascending;
        const LPARAM place = list.placeCursor(x);
        list.m_HeaderCtrl.PostMessage(WM_RBUTTONDOWN, MK_RBUTTON, place);
        list.m_HeaderCtrl.PostMessage(WM_RBUTTONUP, 0, place);
        pumpMessages();
        EXPECT_EQ(list.m_ColSort, state) << x;
    }
}

/// The chooser, answered as soon as it is shown.
class AnsweredChooser : public CDialColonnes {
  public:
    AnsweredChooser(CLraListCtrl* list, int first, int answer, std::vector<bool> marks = {})
        : CDialColonnes(list, first), m_answer(answer), m_marks(std::move(marks)) {}
    std::string shown;  // captions, "+" in front of those with a check mark

  protected:
    BOOL OnInitDialog() override {
        const BOOL result = CDialColonnes::OnInitDialog();
        CListCtrl choices;
        choices.Attach(GetDlgItem(IDC_COLONNES_LISTE));
        for (int row = 0; row < choices.GetItemCount(); ++row) {
            CString text;
            choices.GetItemText(row, 0, text);
            const bool checked = choices.GetItemState(row, LVIS_STATEIMAGEMASK) == 0x2000;
            shown += (checked ? "+" : "") + std::string(text.view()) + "|";
        }
        for (int row = 0; row < static_cast<int>(m_marks.size()); ++row) {
            const UINT mark = m_marks[static_cast<std::size_t>(row)] ? 0x2000 : 0x1000;
            choices.SetItemState(row, mark, LVIS_STATEIMAGEMASK);
        }
        PostMessage(WM_COMMAND, static_cast<WPARAM>(m_answer));
        return result;
    }

  private:
    int m_answer;
    std::vector<bool> m_marks;
};

TEST_F(ListMenu, TheChooserShowsAndHides) {
    list.m_HeaderCtrl.SetItemText(4, "deux\nlignes");
    list.SetColumnWidth(2, -80);
    list.SetColumnWidth(3, -4);
    AnsweredChooser cancelled(&list, 1, IDCANCEL, {false, true});
    EXPECT_EQ(cancelled.DoModal(), IDCANCEL);
    EXPECT_EQ(cancelled.shown, "+c1|c2|c3|+deux lignes|");
    expectWidths({60, 60, -80, -4, 60});
    EXPECT_EQ(AnsweredChooser(&list, 1, IDOK, {false, true, true}).DoModal(), IDOK);
    expectWidths({60, -60, 80, 10, 60});
    EXPECT_EQ(AnsweredChooser(&list, 99, IDOK).DoModal(), IDOK) << "nothing to offer";
    CLraListCtrl bare;
    EXPECT_EQ(AnsweredChooser(&bare, 0, IDOK).DoModal(), IDOK) << "a list without a window";
}

TEST_F(ListMenu, TheChooserMovesAndSetsWidths) {
    struct Worked : AnsweredChooser {
        Worked(CLraListCtrl* list, int answer) : AnsweredChooser(list, 1, answer) {}
        BOOL OnInitDialog() override {
            const BOOL result = AnsweredChooser::OnInitDialog();
            for (const int button :
                 {IDC_COLONNES_MONTER, IDC_COLONNES_DESCENDRE, IDC_COLONNES_DESCENDRE, IDC_COLONNES_AUCUNE})
                SendMessage(WM_COMMAND, static_cast<WPARAM>(button));
            for (const char* width : {"5", "99999999999", "", "123"})
                SetDlgItemText(IDC_COLONNES_LARGEUR, width);
            if (toutes) SendMessage(WM_COMMAND, IDC_COLONNES_TOUTES);
            return result;
        }
        bool toutes = true;
    };
    const auto order = [&] {
        std::string all;
        for (int place = 0; place < 5; ++place) all += std::to_string(list.m_HeaderCtrl.OrderToIndex(place));
        return all;
    };
    Worked(&list, IDCANCEL).DoModal();
    EXPECT_EQ(order(), "01234");
    expectWidths({60, 60, 60, 60, 60});
    Worked(&list, IDOK).DoModal();
    EXPECT_EQ(order(), "02314") << "the first column offered went down two places";
    expectWidths({60, 123, 60, 60, 60});
    Worked none(&list, IDOK);
    none.toutes = false;
    none.DoModal();
    EXPECT_EQ(order(), "03124");
    expectWidths({60, -123, -123, -60, -60});
}

TEST_F(ListMenu, TheChooserOpensOnCaptionsAndBesideThemOnly) {
    static std::string caption;
    for (const auto& [flags, wanted] : {std::pair{LVHT_ONITEMLABEL, "Choisir les colonnes"},
                                        {LVHT_NOWHERE, "Choisir les colonnes"},
                                        {LVHT_ABOVE, ""}}) {
        caption.clear();
        const UINT_PTR timer = ::SetTimer(nullptr, 0, 100, [](HWND, UINT, UINT_PTR, DWORD) {
            char text[100] = {};
            const HWND dialog = ::FindWindowA("#32770", nullptr);
            if (dialog == nullptr) return;
            ::GetWindowTextA(dialog, text, 100);
            caption = text;
            ::PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
        });
        list.choose(choose, 2, static_cast<UINT>(flags));
        ::KillTimer(nullptr, timer);
        EXPECT_EQ(caption, wanted) << flags;
    }
}

}  // namespace
