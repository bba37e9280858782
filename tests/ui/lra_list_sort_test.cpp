#include <algorithm>
#include <numeric>
#include <random>

#include <gtest/gtest.h>

#include "ui_support.h"

namespace {

class LraListSort : public testing::Test {
  protected:
    HiddenParent parent;
    TestList list{parent, 4};

    void addPairs(std::initializer_list<std::pair<const char*, std::uint64_t>> rows) {
        for (const auto& [cell, data] : rows) list.addRow({cell, cell, cell, cell}, data);
    }
};

TEST_F(LraListSort, TextsOrderAsUnsignedBytes) {
    addPairs({{"b", 1}, {"10", 2}, {"a", 3}, {"é", 4}, {"9", 5}, {"B", 6}, {"", 7}, {"ab", 8}, {"z", 9}});
    EXPECT_EQ(list.SortColum(1), 1);
    EXPECT_EQ(list.columnText(0), " 10 9 B a ab b z é");
    EXPECT_EQ(list.SortColum(-1), 1);
    EXPECT_EQ(list.columnText(0), "é z b ab a B 9 10 ");
    EXPECT_EQ(list.dataText(), "4 9 1 8 3 6 5 2 7");
}

TEST_F(LraListSort, RowsWithoutDataAreNumberedAndOnlyTheTopRowLosesItsNumber) {
    addPairs({{"c", 0}, {"b", 70}, {"a", 0}});
    list.SortColum(1);
    EXPECT_EQ(list.columnText(0), "a b c");
    EXPECT_EQ(list.dataText(), "0 2 1");
    list.SortColum(-1);
    EXPECT_EQ(list.columnText(0), "c b a");
    EXPECT_EQ(list.dataText(), "0 2 1");

    list.SetItemData(0, 5);
    list.SetItemData(1, 0);
    list.SortColum(1);
    EXPECT_EQ(list.columnText(0), "a b c");
    EXPECT_EQ(list.dataText(), "1 0 5") << "with data in row 0 nothing is numbered";
}

TEST_F(LraListSort, ClicksReverseTheSortedColumn) {
    addPairs({{"b", 1}, {"c", 2}, {"a", 3}});
    struct Case {
        UINT code;
        int column;
        std::int32_t state;
        const char* order;
    };
    for (const Case& each : {Case{HDN_ITEMCLICKW, 2, 3, "a b c"},
                             {HDN_ITEMCLICKW, 2, -3, "c b a"},
                             {HDN_ITEMCLICKA, 2, 3, "a b c"},
                             {HDN_ITEMCLICKW, 0, 1, "a b c"},
                             {HDN_ITEMCLICKW, 0, -1, "c b a"},
                             {HDN_ITEMCLICKW, 1, 2, "a b c"}}) {
        EXPECT_EQ(list.notify(each.code, each.column), 1);
        EXPECT_EQ(list.m_ColSort, each.state);
        EXPECT_EQ(list.columnText(0), each.order);
    }
}

TEST_F(LraListSort, SpecialSortStates) {
    addPairs({{"b", 1}, {"c", 2}, {"a", 3}});
    struct Case {
        int col;
        std::int32_t state;
        const char* order;
    };
    // 0 compares column -1, whose cells cannot be had: all rows are equal and stay. 65536 sorts as before.
    for (const Case& each : {Case{0, 0, "b c a"},
                             {65536, 0, "b c a"},
                             {-2, -2, "c b a"},
                             {70000, -2, "c b a"},
                             {99, 99, "c b a"},
                             {INT_MIN, INT_MIN, "c b a"},
                             {65535, 65535, "c b a"},
                             {2, 2, "a b c"}}) {
        EXPECT_EQ(list.SortColum(each.col), 1) << each.col;
        EXPECT_EQ(list.m_ColSort, each.state);
        EXPECT_EQ(list.columnText(0), each.order) << each.col;
    }
    list.m_pSortProc = nullptr;
    EXPECT_EQ(list.SortColum(-2), 0);
    EXPECT_EQ(list.m_ColSort, -2);
    EXPECT_EQ(list.columnText(0), "a b c");
}

TEST_F(LraListSort, TheComparerAnswersByItself) {
    addPairs({{"b", 10}, {"c", 20}, {"a", 20}, {"d", 30}});
    const auto compare = [&](LPARAM first, LPARAM second) {
        return CLraListCtrl::LraSortCompareProc(first, second, reinterpret_cast<LPARAM>(&list));
    };
    EXPECT_EQ(compare(10, 30), -1);
    EXPECT_EQ(compare(30, 10), 1);
    EXPECT_EQ(compare(20, 10), -1) << "of equal data the last row counts";
    EXPECT_EQ(compare(99, 30), -1) << "unknown data means row 0";
    EXPECT_EQ(compare(99, 10), 0);
    list.m_ColSort = -1;
    EXPECT_EQ(compare(10, 30), 1);
    list.m_ColSort = 0;
    EXPECT_EQ(compare(10, 30), 0);
    EXPECT_EQ(CLraListCtrl::LraSortCompareProc(10, 30, 0), 0);
}

TEST_F(LraListSort, OrderIsThatOfTheSlowComparerTiesAndDuplicatesIncluded) {
    std::mt19937 random(7);
    TestList slow(parent, 1);
    for (int row = 0; row < 150; ++row) {
        const std::string cell(1, static_cast<char>('a' + random() % 6));
        const std::uint64_t data = 1 + random() % 90;
        list.addRow({cell.c_str()}, data);
        slow.addRow({cell.c_str()}, data);
    }
    // Through a function of another address the list sorts with the comparer itself.
    slow.m_pSortProc = [](LPARAM first, LPARAM second, LPARAM context) {
        return CLraListCtrl::LraSortCompareProc(first, second, context);
    };
    for (const int col : {1, -1, 65536}) {
        list.SortColum(col);
        slow.SortColum(col);
        EXPECT_EQ(list.columnText(0), slow.columnText(0)) << col;
        EXPECT_EQ(list.dataText(), slow.dataText()) << col;
    }
}

TEST_F(LraListSort, TextsAndDataAreAskedForOncePerSort) {
    struct Counting : TestList {
        using TestList::TestList;
        int values = 0, data = 0;
        int GetValue(int row, int col, CString& out) override {
            ++values;
            out.Format("%04d", 9999 - row);
            return col == 0;
        }
        std::uint64_t GetItemData(int row) override {
            ++data;
            return CLraListCtrl::GetItemData(row);
        }
    };
    Counting counted(parent, 1);
    for (int row = 0; row < 1000; ++row) counted.addRow({"same"}, static_cast<std::uint64_t>(row) + 1);
    counted.SortColum(1);
    EXPECT_EQ(counted.values, 1000);
    EXPECT_LE(counted.data, 1010);
    EXPECT_EQ(counted.CLraListCtrl::GetItemData(0), 1000u) << "the virtual text decides";
}

TEST_F(LraListSort, TheCurrentRowStaysCurrent) {
    for (int row = 0; row < 60; ++row) list.addRow({std::to_string(100 - row).c_str()});
    list.UnselectAll(40, 0);
    ASSERT_EQ(list.text(40, 0), "60");
    list.SortColum(1);
    const int now = list.GetNextItem(-1, LVNI_FOCUSED);
    EXPECT_EQ(list.text(now, 0), "60");
    EXPECT_EQ(list.GetNextItem(-1, LVNI_SELECTED), now);
    EXPECT_EQ(list.m_FocusRow, now);
    list.SetItemState(now, 0, LVIS_FOCUSED | LVIS_SELECTED);
    list.SetItemState(3, LVIS_SELECTED, LVIS_SELECTED);
    const std::string selected = list.text(3, 0);
    list.SortColum(-1);
    EXPECT_EQ(list.text(list.GetNextItem(-1, LVNI_FOCUSED), 0), selected);
}

TEST_F(LraListSort, ARealClickOnACaptionSorts) {
    addPairs({{"b", 1}, {"c", 2}, {"a", 3}});
    const auto click = [&](int x) {
        list.m_HeaderCtrl.PostMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, 5));
        list.m_HeaderCtrl.PostMessage(WM_LBUTTONUP, 0, MAKELPARAM(x, 5));
        pumpMessages();
    };
    click(90);
    EXPECT_EQ(list.m_ColSort, 2);
    EXPECT_EQ(list.columnText(0), "a b c");
    click(90);
    EXPECT_EQ(list.m_ColSort, -2);
    EXPECT_EQ(list.columnText(0), "c b a");
    const auto& heard = parent.notifications;
    EXPECT_TRUE(std::any_of(heard.begin(), heard.end(),
                            [](const auto& each) { return each.second == LVN_COLUMNCLICK; }));
}

TEST_F(LraListSort, ARealDragMovesAColumnButNotIntoTheFirstPlace) {
    const auto drag = [&](int from, int to) {
        const auto send = [&](UINT message, int x, WPARAM buttons) {
            POINT place = {x, 5};
            list.m_HeaderCtrl.ClientToScreen(&place);
            ::SetCursorPos(place.x, place.y);
            list.m_HeaderCtrl.SendMessage(message, buttons, MAKELPARAM(x, 5));
        };
        send(WM_LBUTTONDOWN, from, MK_LBUTTON);
        for (int step = 1; step <= 4; ++step) send(WM_MOUSEMOVE, from + (to - from) * step / 4, MK_LBUTTON);
        send(WM_LBUTTONUP, to, 0);
        pumpMessages();
        std::string order;
        for (int place = 0; place < 4; ++place)
            order += std::to_string(list.m_HeaderCtrl.OrderToIndex(place));
        return order;
    };
    EXPECT_EQ(drag(150, 225), "0132");
    EXPECT_EQ(drag(20, 225), "0132");
    EXPECT_EQ(drag(100, 10), "0132");
    EXPECT_EQ(list.GetColumsWidth(), 240);
}

TEST_F(LraListSort, RowsThatGoDuringASortAreHarmless) {
    struct Shrinking : TestList {
        using TestList::TestList;
        int GetValue(int row, int col, CString& out) override {
            if (row == 10) DeleteAllItems();
            return CLraListCtrl::GetValue(row, col, out);
        }
    };
    Shrinking shrinking(parent, 1);
    for (int row = 0; row < 50; ++row) shrinking.addRow({"x"});
    EXPECT_EQ(shrinking.SortColum(1), 1);
    EXPECT_EQ(shrinking.UpdateItemCount(), 0);
    EXPECT_EQ(shrinking.SortColum(1), 1);
}

}  // namespace
