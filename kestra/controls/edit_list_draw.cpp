#include <kestra/controls/cell_drawing.h>
#include <kestra/controls/edit_list_ctrl.h>
#include <kestra/controls/grid_keys.h>
#include <kestra/controls/grid_rules.h>
#include <platform/window/device_context.h>

// How a grid shows its rows.

namespace {

constexpr COLORREF currentCheckColor = RGB(200, 200, 200);

}  // namespace

void CEditListCtrl::beforePainting() {
    if (m_HeaderCtrl.m_hWnd != nullptr && m_HeaderCtrl.m_SortCol != m_ColSort) {
        m_HeaderCtrl.m_SortCol = m_ColSort;
        m_HeaderCtrl.Invalidate();
    }
    if (m_pRecordButton != nullptr) m_pRecordButton->SetRecord(m_FocusRow + 1, GetItemCount());
    placeEditor();
}

void CEditListCtrl::DrawItem(DRAWITEMSTRUCT* draw) {
    if (draw == nullptr) return;
    CDC dc(draw->hDC);
    const int row = static_cast<int>(draw->itemID);
    const bool selected = (draw->itemState & ODS_SELECTED) != 0;
    dc.FillSolidRect(draw->rcItem, ::GetSysColor(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    const int background = dc.SetBkMode(TRANSPARENT);
    const LONG rightEnd = GetClientRect().right;
    UpdateItemCount();
    GetMyListHeader(0);
    for (int place = 0; place < m_nColumns; ++place) {
        const int col = m_HeaderCtrl.OrderToIndex(place);
        CRect cell = m_HeaderCtrl.GetItemRect(col);
        cell = {cell.left + draw->rcItem.left, draw->rcItem.top, cell.right + draw->rcItem.left,
                draw->rcItem.bottom};
        if (cell.left >= rightEnd) break;
        if (cell.IsRectEmpty()) continue;
        CString text;
        const int bits = col == 0 && m_LastFixedCol > 0 ? 0 : GetValue(row, col, text);
        const bool lastCell = (bits & controls::cellToRowEnd) != 0;
        if (lastCell) cell.right = draw->rcItem.right;
        if (cell.right > 0) drawGridCell(dc, row, col, cell, bits, text, selected);
        if (lastCell) break;
    }
    dc.SetBkMode(background);
    if ((draw->itemState & ODS_FOCUS) != 0) ::DrawFocusRect(draw->hDC, &draw->rcItem);
}

void CEditListCtrl::drawGridCell(HDC target, int row, int col, const RECT& cell, int bits,
                                 const CString& text, bool selected) {
    if (col == 0 && m_LastFixedCol > 0) {
        drawRowHeader(target, row, cell, selected);
        return;
    }
    CDC dc(target);
    const COLORREF plain = ::GetSysColor(COLOR_WINDOW);
    const COLORREF color = controls::cellColor(bits, plain);
    if (!selected && color != plain) dc.FillSolidRect(cell, color);
    const bool hasText = (bits & controls::cellHasText) != 0;
    const LraListColum* const record = GetMyListHeader(col);
    if (record != nullptr && record->ColStyle == controls::checkBoxColumn) {
        if (selected && m_EditFlags != 0 && record == m_pCurCol) dc.FillSolidRect(cell, currentCheckColor);
        if (hasText && !text.IsEmpty()) controls::drawCheckBox(dc, cell, text);
        return;
    }
    if (!hasText) return;
    HDITEMA format = {};
    format.mask = HDI_FORMAT;
    m_HeaderCtrl.GetItem(col, format);
    dc.SetTextColor(::GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    controls::drawCellText(dc, cell, format.fmt, text.view());
}

void CEditListCtrl::drawRowHeader(HDC target, int row, const RECT& cell, bool selected) {
    CDC dc(target);
    if ((GetExtendedStyle() & LVS_EX_CHECKBOXES) != 0) {
        const bool checked = (GetItemState(row, LVIS_STATEIMAGEMASK) >> 12) == 2;
        controls::drawCheckBox(dc, cell, checked ? "1" : "0");
        return;
    }
    dc.DrawFrameControl(cell, DFC_BUTTON, DFCS_BUTTONPUSH | (selected ? DFCS_PUSHED : 0U));
}
