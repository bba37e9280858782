#include <algorithm>
#include <vector>

#include <kestra/controls/edit_list_ctrl.h>
#include <kestra/controls/grid_rules.h>
#include <kestra/controls/grid_watch.h>

// How the current cell of a grid moves.

namespace {

using controls::GridCell;

constexpr UINT current = LVIS_SELECTED | LVIS_FOCUSED;
/// Column remembered while a row that could not be committed is entered anew.
constexpr int refusedColumn = -2;

std::vector<controls::GridColumn> displayOf(CLraListCtrl& list) {
    std::vector<controls::GridColumn> display;
    const CLraHeaderCtrl& header = *list.GetHeaderCtrl();
    const int count = header.GetItemCount();
    for (int place = 0; place < count; ++place) {
        const int col = header.OrderToIndex(place);
        display.push_back({col, header.GetItemRect(col).Width() > 1});
    }
    return display;
}

}  // namespace

int CEditListCtrl::SetCurrentSubItem(int row, int col, POINT* click) {
    const Watch watch(*this);
    if (watch.gone()) return 0;
    const GridCell former{m_FocusRow, m_FocusSubItem};
    if (GridCell{row, col} != former) {
        UpdateItemCount();
        GetMyListHeader(0);
        const GridCell to{std::max(std::min(row, m_nItems - 1), -1),
                          std::max(std::min(col, m_nColumns - 1), 0)};
        const std::optional<int> ended = move(to, former, click);
        if (watch.gone()) return 0;
        if (ended) return *ended;
    }
    if (click != nullptr) toggleByClick(*click);
    if (watch.gone()) return 0;
    announce(former);
    return watch.gone() ? 0 : 1;
}

/// Nothing when the cell is current, else the result that ends the call.
std::optional<int> CEditListCtrl::move(const GridCell& to, const GridCell& from, const POINT* click) {
    const Watch watch(*this);
    const bool agreed = onSubItemChange(to.row, to.column) != 0;
    if (watch.gone()) return 0;
    if (!agreed) {
        if (m_FocusRow >= 0) SetItemState(m_FocusRow, 0, current);
        return 0;
    }
    const bool empty = DataBaseIsEmpty() != 0;
    if (watch.gone() || (!empty && !leaveCell()) || watch.gone()) return 0;
    if (to.row != m_FocusRow) {
        if (const std::optional<int> ended = leaveRow(to, from.column)) return ended;
        if (watch.gone()) return 0;
    }
    selectRow(to.row, from.row, click);
    if (watch.gone()) return 0;
    if (!empty && allowsEditor(to)) {
        if (to.column != m_FocusSubItem || activeEditor() == nullptr) useEditor(to.row, to.column);
        fillEditor(to.column);
        if (watch.gone()) return 0;
    } else {
        hideEditor();
        forgetEditor();
        m_pCurCol = nullptr;
    }
    m_FocusRow = to.row;
    m_FocusSubItem = to.column;
    Invalidate();
    placeEditor();
    return watch.gone() ? std::optional<int>(0) : std::nullopt;
}

/// Commits the cell under the editor and hides the editor; false when the cell was refused.
bool CEditListCtrl::leaveCell() {
    const Watch watch(*this);
    if (activeEditor() == nullptr) return true;
    // Kept: what was typed over column 0 is dropped, that column belongs to the row header.
    if (m_FocusSubItem > 0) {
        const bool stored = UpdateEdit(commitCell) != 0;
        if (watch.gone() || !stored) return false;
    }
    hideEditor();
    return !watch.gone();
}

std::optional<int> CEditListCtrl::leaveRow(const GridCell& to, int formerColumn) {
    const Watch watch(*this);
    if (m_EditFlags != 0 && m_FocusRow >= 0) {
        const bool stored = UpdateEdit(commitRow) != 0;
        if (watch.gone()) return 0;
        if (!stored) {
            if (to.row >= 0) SetItemState(to.row, 0, current);
            SetItemState(m_FocusRow, LVIS_FOCUSED, LVIS_FOCUSED);
            m_FocusSubItem = refusedColumn;
            return SetCurrentSubItem(m_FocusRow, formerColumn);
        }
    }
    m_EditFlags &= editable;
    if ((m_PendingFlags & rowAdded) != 0) {
        m_PendingFlags &= ~rowAdded;
        if (to.row < UpdateItemCount()) Invalidate();
    }
    const bool moved = UpdateMove(to.row, formerColumn) != 0;
    if (watch.gone()) return 0;
    return moved ? std::nullopt : std::optional<int>(m_FocusRow);
}

void CEditListCtrl::selectRow(int row, int former, const POINT* click) {
    const Watch watch(*this);
    if (click == nullptr && former >= 0 && former != row) SetItemState(former, 0, current);
    if (watch.gone() || row < 0) return;
    SetItemState(row, current, current);
    if (!watch.gone()) EnsureVisible(row, FALSE);
}

bool CEditListCtrl::allowsEditor(const GridCell& cell) {
    return m_EditFlags != 0 && cell.row >= 0 && cell.column >= m_LastFixedCol && cell.column < m_nColumns;
}

void CEditListCtrl::announce(const GridCell& former) {
    const Watch watch(*this);
    const WPARAM notification = MAKEWPARAM(GetDlgCtrlID(), cellMoved);
    ::SendMessageA(GetParent(), WM_COMMAND, notification, reinterpret_cast<LPARAM>(m_hWnd));
    if (!watch.gone()) onSubItemChanged(former.row, former.column);
}

int CEditListCtrl::SetCurrentSubItemPos(int row, int col, POINT* click) {
    const int column = controls::columnAtPosition(displayOf(*this), col);
    if (column < 0) return 0;
    return SetCurrentSubItem(std::max(0, std::min(row, UpdateItemCount() - 1)), column, click);
}

int CEditListCtrl::SetCurrentSubItemOffset(int step) {
    if (m_hWnd == nullptr) return 0;
    const GridCell to = controls::cellBeside(displayOf(*this), m_LastFixedCol, {m_FocusRow, m_FocusSubItem},
                                             step, UpdateItemCount());
    return SetCurrentSubItem(to.row, to.column);
}
