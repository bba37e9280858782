#include <kestra/controls/cell_drawing.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdlib>

#include <platform/window/device_context.h>

namespace controls {

namespace {

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

void drawCheckBox(HDC target, const RECT& cell, const char* value) {
    CDC dc(target);
    const UINT checked = std::atoi(value) != 0 ? DFCS_CHECKED : 0;
    dc.DrawFrameControl(checkBoxRect(cell), DFC_BUTTON, DFCS_BUTTONCHECK | DFCS_ADJUSTRECT | checked);
}

void drawCellText(HDC target, const RECT& place, int headerFormat, std::string_view text) {
    CRect cell(place);
    cell.DeflateRect(textMargin, 0);
    if (cell.IsRectEmpty()) return;
    // No character is narrower than a pixel; measuring a text of a megabyte takes its time.
    text = text.substr(0, static_cast<std::size_t>(cell.Width()) + 1);
    CDC dc(target);
    dc.DrawText(text, cell,
                alignmentOf(headerFormat) | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}

}  // namespace controls
