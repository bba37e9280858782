#include <kestra/controls/cell_drawing.h>
#include <kestra/controls/lra_list_ctrl.h>
#include <platform/window/device_context.h>

// How a list whose rows are owner-drawn (`Initialize(0)`) shows them.

namespace {

constexpr int checkBoxStyle = 3;
constexpr int hasText = 1;

}  // namespace

void CLraListCtrl::DrawItem(DRAWITEMSTRUCT* draw) {
    if (draw == nullptr) return;
    CDC dc(draw->hDC);
    const bool selected = (draw->itemState & ODS_SELECTED) != 0;
    dc.FillSolidRect(draw->rcItem, ::GetSysColor(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    const COLORREF color = dc.SetTextColor(::GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    const int background = dc.SetBkMode(TRANSPARENT);
    UpdateItemCount();
    GetMyListHeader(0);
    for (int col = 0; col < m_nColumns; ++col) {
        CRect cell = m_HeaderCtrl.GetItemRect(col);
        cell.OffsetRect(draw->rcItem.left, 0);
        cell.top = draw->rcItem.top;
        cell.bottom = draw->rcItem.bottom;
        if (!cell.IsRectEmpty()) drawCell(dc, static_cast<int>(draw->itemID), col, cell);
    }
    dc.SetTextColor(color);
    dc.SetBkMode(background);
    if ((draw->itemState & ODS_FOCUS) != 0) ::DrawFocusRect(draw->hDC, &draw->rcItem);
}

void CLraListCtrl::drawCell(HDC dc, int row, int col, const RECT& cell) {
    CString text;
    if ((GetValue(row, col, text) & hasText) == 0) return;
    const LraListColum* const record = GetMyListHeader(col);
    if (record != nullptr && record->ColStyle == checkBoxStyle) {
        controls::drawCheckBox(dc, cell, text);
        return;
    }
    HDITEMA format = {};
    format.mask = HDI_FORMAT;
    m_HeaderCtrl.GetItem(col, format);
    controls::drawCellText(dc, cell, format.fmt, text.view());
}
