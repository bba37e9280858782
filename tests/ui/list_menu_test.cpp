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

    std::string widths() {
        std::string all;
        for (int col = 0; col < 5; ++col) all += std::to_string(list.GetColumnWidth(col)) + " ";
        return all;
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
    EXPECT_EQ(widths(), "-50 -80 80 10 70 ");
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

/// The captions that the chooser shows, "+" in front of those with a check mark.
std::string choicesOf(const CWnd& chooser) {
    CListCtrl choices;
    choices.Attach(chooser.GetDlgItem(IDC_COLONNES_LISTE));
    std::string all;
    for (int row = 0; row < choices.GetItemCount(); ++row) {
        CString text;
        choices.GetItemText(row, 0, text);
        all += (choices.GetItemState(row, LVIS_STATEIMAGEMASK) == 0x2000 ? "+" : "") +
               std::string(text.view()) + "|";
    }
    choices.Detach();
    return all;
}

void mark(const CWnd& chooser, std::initializer_list<bool> marks) {
    LVITEMA item = {};
    item.stateMask = LVIS_STATEIMAGEMASK;
    WPARAM row = 0;
    for (const bool marked : marks) {
        item.state = marked ? 0x2000 : 0x1000;
        ::SendDlgItemMessageA(chooser, IDC_COLONNES_LISTE, LVM_SETITEMSTATE, row++,
                              reinterpret_cast<LPARAM>(&item));
    }
}

TEST_F(ListMenu, TheChooserShowsAndHides) {
    list.m_HeaderCtrl.SetItemText(4, "deux\nlignes");
    list.SetColumnWidth(2, -80);
    list.SetColumnWidth(3, -4);
    Worked<CDialColonnes> chooser(&list, 1);
    chooser.work = [](auto& shown) {
        EXPECT_EQ(choicesOf(shown), "+c1|c2|c3|+deux lignes|");
        mark(shown, {false, true});
    };
    EXPECT_EQ(chooser.DoModal(), IDCANCEL);
    EXPECT_EQ(widths(), "60 60 -80 -4 60 ");
    chooser.work = [](auto& shown) {
        mark(shown, {false, true, true});
        shown.press(IDOK);
    };
    EXPECT_EQ(chooser.DoModal(), IDOK);
    EXPECT_EQ(widths(), "60 -60 80 10 60 ");
    CLraListCtrl bare;
    for (const auto& [each, first] : {std::pair<CLraListCtrl*, int>{&list, 99}, {&bare, 0}}) {
        Worked<CDialColonnes> empty(each, first);
        empty.work = [](auto& shown) { shown.press(IDOK); };
        EXPECT_EQ(empty.DoModal(), IDOK) << "nothing to offer, or a list without a window";
    }
}

TEST_F(ListMenu, TheChooserMovesAndSetsWidths) {
    const struct {
        int last, answer;
        const char *order, *widths;
    } cases[] = {{IDC_COLONNES_TOUTES, IDCANCEL, "01234", "60 60 60 60 60 "},
                 // The first column offered went down two places.
                 {IDC_COLONNES_TOUTES, IDOK, "02314", "60 123 60 60 60 "},
                 {IDC_COLONNES_AUCUNE, IDOK, "03124", "60 -123 -123 -60 -60 "}};
    for (const auto& each : cases) {
        Worked<CDialColonnes> chooser(&list, 1);
        chooser.work = [&](auto& shown) {
            for (const int button :
                 {IDC_COLONNES_MONTER, IDC_COLONNES_DESCENDRE, IDC_COLONNES_DESCENDRE, IDC_COLONNES_AUCUNE})
                shown.press(button);
            for (const char* width : {"5", "99999999999", "", "123"})
                shown.SetDlgItemText(IDC_COLONNES_LARGEUR, width);
            shown.press(each.last);
            shown.press(each.answer);
        };
        chooser.DoModal();
        EXPECT_EQ(list.order(), each.order);
        EXPECT_EQ(widths(), each.widths);
    }
}

TEST_F(ListMenu, TheChooserOpensOnCaptionsAndBesideThemOnly) {
    for (const auto& [flags, opens] : {std::pair{LVHT_ONITEMLABEL, 1}, {LVHT_NOWHERE, 1}, {LVHT_ABOVE, 0}}) {
        int opened = 0;
        const DialogWorker worker(IDC_COLONNES_LISTE, [&](HWND dialog) {
            ++opened;
            ::PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
        });
        list.choose(choose, 2, static_cast<UINT>(flags));
        EXPECT_EQ(opened, opens) << flags;
    }
}

}  // namespace
