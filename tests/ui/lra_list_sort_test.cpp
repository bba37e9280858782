#include <climits>
#include <random>

#include <gtest/gtest.h>

#include "ui_support.h"

namespace {

class LraListSort : public testing::Test {
  protected:
    HiddenParent parent;
    TestList list{parent, 4};

    void addRows(std::initializer_list<std::pair<const char*, std::uint64_t>> rows) {
        for (const auto& [cell, data] : rows) list.addRow({cell, cell, cell, cell}, data);
    }
};

TEST_F(LraListSort, TextsOrderAsUnsignedBytes) {
    addRows(
        {{"b", 1}, {"10", 2}, {"a", 3}, {"é", 4}, {"9", 5}, {"B", 6}, {"", 7}, {"ab", 8}, {"abcdefghi", 9}});
    EXPECT_EQ(list.SortColum(1), 1);
    EXPECT_EQ(list.cells(), " 10 9 B a ab abcdefghi b é");
    EXPECT_EQ(list.SortColum(-1), 1);
    EXPECT_EQ(list.data(), "4 1 9 8 3 6 5 2 7");
}

TEST_F(LraListSort, RowsWithoutDataAreNumberedAndOnlyTheTopRowLosesItsNumber) {
    addRows({{"c", 0}, {"b", 70}, {"a", 0}});
    list.SortColum(1);
    EXPECT_EQ(list.cells(), "a b c");
    EXPECT_EQ(list.data(), "0 2 1");
    list.SortColum(-1);
    EXPECT_EQ(list.cells(), "c b a");
    EXPECT_EQ(list.data(), "0 2 1");
    list.SetItemData(0, 5);
    list.SetItemData(1, 0);
    list.SortColum(1);
    EXPECT_EQ(list.data(), "1 0 5") << "with data in row 0 nothing is numbered";
}

TEST_F(LraListSort, SpecialSortStates) {
    addRows({{"b", 1}, {"c", 2}, {"a", 3}});
    struct Case {
        int col;
        std::int32_t state;
        const char* order;
    };
    // 0 compares column -1, whose cells cannot be had: all rows are equal and stay. 65536 sorts as before.
    for (const Case& each : {Case{0, 0, "b c a"},
                             {-2, -2, "c b a"},
                             {65536, -2, "c b a"},
                             {99, 99, "c b a"},
                             {INT_MIN, INT_MIN, "c b a"},
                             {2, 2, "a b c"}}) {
        EXPECT_EQ(list.SortColum(each.col), 1) << each.col;
        EXPECT_EQ(list.m_ColSort, each.state);
        EXPECT_EQ(list.cells(), each.order) << each.col;
    }
    list.m_pSortProc = nullptr;
    EXPECT_EQ(list.SortColum(-2), 0);
    EXPECT_EQ(list.cells(), "a b c");
}

TEST_F(LraListSort, TheComparerAnswersByItself) {
    addRows({{"b", 10}, {"c", 20}, {"a", 20}, {"d", 30}});
    struct Case {
        std::int32_t state;
        LPARAM first, second;
        int result;
    };
    // Of equal data the last row counts; data of no row means row 0.
    for (const Case& each : {Case{1, 10, 30, -1},
                             {1, 30, 10, 1},
                             {1, 20, 10, -1},
                             {1, 99, 30, -1},
                             {1, 99, 10, 0},
                             {-1, 10, 30, 1},
                             {0, 10, 30, 0}}) {
        list.m_ColSort = each.state;
        EXPECT_EQ(CLraListCtrl::LraSortCompareProc(each.first, each.second, reinterpret_cast<LPARAM>(&list)),
                  each.result);
    }
    EXPECT_EQ(CLraListCtrl::LraSortCompareProc(10, 30, 0), 0);
}

/// A list that counts what a sort asks it for.
struct CountingList : TestList {
    using TestList::TestList;
    int values = 0, datas = 0;
    int GetValue(int row, int col, CString& out) override {
        ++values;
        return CLraListCtrl::GetValue(row, col, out);
    }
    std::uint64_t GetItemData(int row) override {
        ++datas;
        return CLraListCtrl::GetItemData(row);
    }
};

TEST_F(LraListSort, EachRowIsAskedOnceAndTheOrderIsThatOfTheSlowComparer) {
    std::mt19937 random(7);
    CountingList fast(parent, 1);
    for (int row = 0; row < 150; ++row) {
        const std::string cell(1, static_cast<char>('a' + random() % 6));
        // Small numbers and addresses a page apart, many of them twice.
        const std::uint64_t data =
            row % 3 == 0 ? 1 + random() % 30 : 0x7FFF00000000u + 4096 * (random() % 60);
        fast.addRow({cell.c_str()}, data);
        list.addRow({cell.c_str()}, data);
    }
    // Through a function of another address the list sorts with the comparer itself.
    list.m_pSortProc = [](LPARAM first, LPARAM second, LPARAM context) {
        return CLraListCtrl::LraSortCompareProc(first, second, context);
    };
    for (const int col : {1, -1, 65536}) {
        fast.values = fast.datas = 0;
        fast.SortColum(col);
        EXPECT_EQ(fast.values, 150);
        EXPECT_LE(fast.datas, 152);
        list.SortColum(col);
        EXPECT_EQ(fast.cells(), list.cells()) << col;
        EXPECT_EQ(fast.data(), list.data()) << col;
    }
}

TEST_F(LraListSort, TheCurrentRowStaysCurrent) {
    for (int row = 0; row < 60; ++row) list.addRow({std::to_string(100 - row).c_str()});
    list.UnselectAll(40, 0);
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

TEST_F(LraListSort, ARealClickOnACaptionSortsAndTheNextReverses) {
    addRows({{"b", 1}, {"c", 2}, {"a", 3}});
    for (const auto& [state, order] : {std::pair{2, "a b c"}, {-2, "c b a"}}) {
        list.m_HeaderCtrl.PostMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(90, 5));
        list.m_HeaderCtrl.PostMessage(WM_LBUTTONUP, 0, MAKELPARAM(90, 5));
        pumpMessages();
        EXPECT_EQ(list.m_ColSort, state);
        EXPECT_EQ(list.cells(), order);
    }
    EXPECT_EQ(list.notify(HDN_ITEMCLICKA, 2), 1);
    EXPECT_EQ(list.m_ColSort, 3) << "another column, ascending";
}

TEST_F(LraListSort, ARealDragMovesAColumnButColumn0StaysFirst) {
    for (const auto& [from, to] : {std::pair{150, 225}, {20, 225}, {100, 10}}) {
        list.m_HeaderCtrl.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, list.placeCursor(from));
        list.m_HeaderCtrl.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, list.placeCursor((from + to) / 2));
        list.m_HeaderCtrl.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, list.placeCursor(to));
        list.m_HeaderCtrl.SendMessage(WM_LBUTTONUP, 0, list.placeCursor(to));
        EXPECT_EQ(list.order(), "0132") << from << " to " << to;
    }
    for (const auto& [cursor, refused] : {std::pair{30, 1}, {59, 1}, {60, 0}}) {
        list.placeCursor(cursor);
        EXPECT_EQ(list.notify(HDN_ENDDRAG, 0), refused) << cursor;
    }
}

TEST_F(LraListSort, RowsThatGoDuringASortOrAnExportAreHarmless) {
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
    for (int row = 0; row < 15; ++row) shrinking.addRow({"x"});
    CString text;
    EXPECT_EQ(shrinking.PrintToHtml(nullptr, 0, text, 2), 11);
}

}  // namespace
