#include <kestra/controls/lra_header_ctrl.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include <kestra/controls/column_record.h>
#include <platform/window/device_context.h>

namespace {

constexpr int measuredCaption = 250;
constexpr int drawnCaption = 254;
constexpr DWORD headerStyles = HDS_BUTTONS | HDS_HOTTRACK | HDS_DRAGDROP | HDS_FULLDRAG;
/// Narrowest caption with room for the arrow.
constexpr LONG arrowRoom = 12;

template <std::size_t size>
using Caption = std::array<char, size + 1>;

}  // namespace

const CRuntimeClass CLraHeaderCtrl::runtimeClass{"CLraHeaderCtrl", &CWnd::runtimeClass};

CLraHeaderCtrl::~CLraHeaderCtrl() {
    releaseRecords();
}

int CLraHeaderCtrl::linesOfCaption(int item) {
    Caption<measuredCaption> caption = {};
    GetItemText(item, caption.data(), static_cast<int>(caption.size()));
    const char* const end = caption.data() + std::strlen(caption.data());
    return 1 + static_cast<int>(std::count(static_cast<const char*>(caption.data()), end, '\n'));
}

int CLraHeaderCtrl::CalculHeight() {
    if (m_hWnd == nullptr) return 0;
    m_nLines = 1;
    for (int item = GetItemCount() - 1; item >= 0; --item) {
        m_nLines = std::max(m_nLines, linesOfCaption(item));
    }
    CClientDC screen(nullptr);
    const platform::Selected font(screen, GetFont());
    const TEXTMETRICA metrics = screen.GetTextMetrics();
    m_Height =
        ::GetSystemMetrics(SM_CYBORDER) + m_nLines * (metrics.tmHeight + metrics.tmExternalLeading + 1);
    return m_Height;
}

int CLraHeaderCtrl::GetLayout(WPARAM, LPARAM layout) {
    if (m_hWnd == nullptr || layout == 0) return 0;
    if (m_Height == 0) {
        CalculHeight();
        ModifyStyle(0, headerStyles);
    }
    const HDLAYOUT& request = *reinterpret_cast<HDLAYOUT*>(layout);
    RECT& room = *request.prc;
    WINDOWPOS& place = *request.pwpos;
    // Some platforms' lists move whatever window the answer names.
    place.hwnd = m_hWnd;
    place.hwndInsertAfter = nullptr;
    place.x = room.left;
    place.y = room.top;
    place.cx = room.right - room.left;
    // Kept: the top is added to the height; a header that is not laid out from the top of its list is higher.
    place.cy = room.top + m_Height;
    place.flags = SWP_NOZORDER | SWP_NOACTIVATE;
    room.top += m_Height;
    return 1;
}

int CLraHeaderCtrl::SetOwnerDraw(int on) {
    const int count = GetItemCount();
    for (int item = 0; item < count; ++item) {
        HDITEMA format = {};
        format.mask = HDI_FORMAT;
        if (!GetItem(item, format)) continue;
        format.fmt = (format.fmt & ~HDF_OWNERDRAW) | (on != 0 ? HDF_OWNERDRAW : 0);
        SetItem(item, format);
    }
    return count;
}

void CLraHeaderCtrl::DrawItem(DRAWITEMSTRUCT* draw) {
    if (draw == nullptr) return;
    CDC dc(draw->hDC);
    CRect rect(draw->rcItem);
    rect.left += 2;
    const int item = static_cast<int>(draw->itemID);
    Caption<drawnCaption> caption = {};
    GetItemText(item, caption.data(), static_cast<int>(caption.size()));

    dc.DrawFrameControl(rect, DFC_BUTTON, DFCS_BUTTONPUSH);
    const int background = dc.SetBkMode(TRANSPARENT);
    dc.DrawText(caption.data(), rect, DT_END_ELLIPSIS);
    dc.SetBkMode(background);
    if (m_SortCol != 0 && item == std::abs(m_SortCol) - 1 && rect.Width() > arrowRoom) drawArrow(dc, rect);
}

void CLraHeaderCtrl::drawArrow(HDC target, RECT caption) const {
    const platform::UniqueGdi<HPEN> dark(::CreatePen(PS_SOLID, 1, ::GetSysColor(COLOR_3DDKSHADOW)));
    const platform::UniqueGdi<HPEN> light(::CreatePen(PS_SOLID, 1, ::GetSysColor(COLOR_3DHILIGHT)));
    CRect rect(caption);
    rect.DeflateRect(3, 1);
    LONG base = rect.top + 1;
    LONG tip = rect.bottom - 3;
    if (m_SortCol < 0) std::swap(base, tip);

    CDC dc(target);
    const platform::Selected darkSide(dc, dark.get());
    dc.MoveTo(rect.right - 10, base);
    dc.LineTo(rect.right - 5, tip);
    const platform::Selected lightSides(dc, light.get());
    dc.LineTo(rect.right, base);
    dc.LineTo(rect.right - 10, base);
}

int CLraHeaderCtrl::GetItemText(int item, char* buffer, int size) {
    if (buffer == nullptr || size <= 0) return 0;
    HDITEMA text = {};
    text.mask = HDI_TEXT;
    text.pszText = buffer;
    text.cchTextMax = size;
    buffer[0] = '\0';
    GetItem(item, text);
    buffer[size - 1] = '\0';
    return size;
}

int CLraHeaderCtrl::SetItemText(int item, const char* text) {
    if (text == nullptr || m_hWnd == nullptr) return 0;
    HDITEMA change = {};
    change.mask = HDI_TEXT;
    change.pszText = const_cast<char*>(text);
    SetItem(item, change);
    return static_cast<int>(std::strlen(text));
}

int CLraHeaderCtrl::GetItemOrder(int item) {
    if (item < 0) return 0;
    HDITEMA place = {};
    place.mask = HDI_ORDER;
    return GetItem(item, place) ? place.iOrder : 0;
}

int CLraHeaderCtrl::DeleteAllItems() {
    if (m_hWnd == nullptr) return 0;
    // Kept: item 0 stays, a list needs a first column.
    for (int item = GetItemCount() - 1; item > 0; --item) DeleteItem(item);
    return 1;
}

void CLraHeaderCtrl::releaseRecords() {
    if (!m_holdsRecords) return;
    for (int item = GetItemCount() - 1; item >= 0; --item) controls::releaseRecord(*this, item);
}

LRESULT CLraHeaderCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case HDM_LAYOUT:
            return GetLayout(wParam, lParam);
        case HDM_DELETEITEM:
            if (m_holdsRecords) controls::releaseRecord(*this, static_cast<int>(wParam));
            break;
        case WM_DESTROY:
            releaseRecords();
            break;
        default:
            break;
    }
    return CHeaderCtrl::WindowProc(message, wParam, lParam);
}
