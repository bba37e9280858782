#include <algorithm>
#include <cstdlib>

#include <kestra/controls/lra_list_ctrl.h>
#include <platform/window/device_context.h>

// How a list whose rows are owner-drawn (`Initialize(0)`) shows them.

namespace {

constexpr int checkBoxStyle = 3;
constexpr int hasText = 1;
constexpr LONG textMargin = 4;
constexpr LONG checkBoxSize = 14;

/// Square of a check box in the middle of a cell, smaller where the cell is.
CRect checkBoxRect(CRect cell) {
    cell.DeflateRect(std::max<LONG>(0, (cell.Width() - checkBoxSize) / 2),
                     std::max<LONG>(0, (cell.Height() - checkBoxSize) / 2));
    return cell;
}

UINT alignmentOf(int headerFormat) {
    switch (headerFormat & HDF_JUSTIFYMASK) {
        case HDF_RIGHT:
            return DT_RIGHT;
        case HDF_CENTER:
            return DT_CENTER;
        default:
            return DT_LEFT;
    }
}

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

void CLraListCtrl::drawCell(HDC target, int row, int col, const RECT& rect) {
    CString text;
    if ((GetValue(row, col, text) & hasText) == 0) return;
    CDC dc(target);
    CRect cell(rect);
    const LraListColum* const record = GetMyListHeader(col);
    if (record != nullptr && record->ColStyle == checkBoxStyle) {
        const UINT checked = std::atoi(text) != 0 ? DFCS_CHECKED : 0;
        dc.DrawFrameControl(checkBoxRect(cell), DFC_BUTTON, DFCS_BUTTONCHECK | DFCS_ADJUSTRECT | checked);
        return;
    }
    HDITEMA format = {};
    format.mask = HDI_FORMAT;
    m_HeaderCtrl.GetItem(col, format);
    cell.DeflateRect(textMargin, 0);
    dc.DrawText(text.view(), cell,
                alignmentOf(format.fmt) | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}
