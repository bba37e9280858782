#include <cstdlib>
#include <string>
#include <utility>

#include <kestra/controls/list_sort_table.h>
#include <kestra/controls/lra_list_ctrl.h>

namespace {

/// From here on `SortColum` sorts as it did before.
constexpr int sortAgain = 65536;

/// All texts of a column in one buffer, with each row's data.
class ColumnTexts {
  public:
    ColumnTexts(CLraListCtrl& list, int column, int count) {
        m_pieces.reserve(static_cast<std::size_t>(count));
        CString text;
        for (int row = 0; row < count; ++row) {
            text.Empty();
            list.GetValue(row, column, text);
            m_pieces.push_back({list.GetItemData(row), m_texts.size(), text.view().size()});
            m_texts += text.view();
        }
    }
    std::vector<ListSortTable::Row> rows() const {
        std::vector<ListSortTable::Row> all;
        all.reserve(m_pieces.size());
        for (const Piece& piece : m_pieces) {
            all.push_back({piece.data, std::string_view(m_texts).substr(piece.start, piece.length)});
        }
        return all;
    }

  private:
    struct Piece {
        std::uint64_t data;
        std::size_t start, length;
    };
    std::string m_texts;
    std::vector<Piece> m_pieces;
};

/// Puts a value in force while it lives.
template <class Value>
class InForce {
  public:
    InForce(Value& place, Value value) : m_place(place), m_before(std::exchange(place, value)) {}
    ~InForce() { m_place = m_before; }
    InForce(const InForce&) = delete;
    InForce& operator=(const InForce&) = delete;

  private:
    Value& m_place;
    Value m_before;
};

/// Column that a signed sort state stands for; -1 for none.
int columnOf(std::int32_t state) {
    return static_cast<int>(std::llabs(state) - 1);
}

int sign(int value) {
    return (value > 0) - (value < 0);
}

/// The rows that two item data stand for: the last ones that carry them, row 0 where there is none.
std::pair<int, int> findRows(CLraListCtrl& list, std::uint64_t data1, std::uint64_t data2) {
    std::pair<int, int> found{0, 0};
    for (int row = 0; row < list.m_nItems; ++row) {
        const std::uint64_t data = list.GetItemData(row);
        if (data == data1) found.first = row;
        if (data == data2) found.second = row;
    }
    return found;
}

int compareCells(CLraListCtrl& list, std::pair<int, int> rows, int column) {
    CString first, second;
    list.GetValue(rows.first, column, first);
    list.GetValue(rows.second, column, second);
    return sign(first.view().compare(second.view()));
}

}  // namespace

int CALLBACK CLraListCtrl::LraSortCompareProc(LPARAM data1, LPARAM data2, LPARAM context) {
    if (context == 0) return 0;
    CLraListCtrl& list = *reinterpret_cast<CLraListCtrl*>(context);
    const int direction = list.m_ColSort < 0 ? -1 : 1;
    const auto first = static_cast<std::uint64_t>(data1);
    const auto second = static_cast<std::uint64_t>(data2);
    if (list.m_sortTable != nullptr) return direction * sign(list.m_sortTable->compare(first, second));
    return direction * compareCells(list, findRows(list, first, second), columnOf(list.m_ColSort));
}

bool CLraListCtrl::numberRows() {
    if (m_nItems == 0 || GetItemData(0) != 0) return false;
    for (int row = 0; row < m_nItems; ++row) SetItemData(row, static_cast<std::uint64_t>(row) + 1);
    return true;
}

int CLraListCtrl::SortColum(int col) {
    if (m_hWnd == nullptr) return 0;
    UpdateItemCount();
    if (col < sortAgain) m_ColSort = col;
    const bool numbered = numberRows();
    const bool sorts = m_pSortProc != nullptr;
    if (sorts) SortItemsPosit(m_pSortProc, reinterpret_cast<LPARAM>(this));
    // Kept: only the row now on top loses its number again; it is how the next sort knows to number anew.
    if (numbered) SetItemData(0, 0);
    return sorts ? 1 : 0;
}

int CLraListCtrl::SortItems(SortProc compare, LPARAM context) {
    if (compare != LraSortCompareProc || context != reinterpret_cast<LPARAM>(this) || m_hWnd == nullptr) {
        return CListCtrl::SortItems(compare, context);
    }
    const ColumnTexts texts(*this, columnOf(m_ColSort), m_nItems);
    const ListSortTable table(texts.rows());
    const InForce<const ListSortTable*> sorting(m_sortTable, &table);
    return CListCtrl::SortItems(compare, context);
}

int CLraListCtrl::SortItemsPosit(SortProc compare, LPARAM context) {
    int current = GetNextItem(-1, LVNI_FOCUSED);
    if (current < 0) current = GetNextItem(-1, LVNI_SELECTED);
    const std::uint64_t data = current >= 0 ? GetItemData(current) : 0;
    const int result = SortItems(compare, context);
    if (data != 0) UnselectAll(-1, data);
    return result;
}
