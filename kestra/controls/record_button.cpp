#include <windows.h>
// after windows.h
#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include <kestra/controls/record_button.h>
#include <platform/window/device_context.h>
#include <platform/window/handles.h>

namespace {

constexpr int labelId = 20;

struct PartSetting {
    int part;
    const char* name;  // read out, and the tip
};
constexpr PartSetting buttons[] = {{CRecordButton::first, "Premier"},
                                   {CRecordButton::previous, "Précédent"},
                                   {CRecordButton::next, "Suivant"},
                                   {CRecordButton::last, "Dernier"},
                                   {CRecordButton::added, "Nouveau"}};
constexpr const char* numberName = "Enregistrement";

/// The parts from left to right; those that are no buttons share what the square buttons leave.
constexpr int fromLeft[] = {CRecordButton::first, CRecordButton::previous, CRecordButton::number,
                            CRecordButton::next,  CRecordButton::last,     CRecordButton::added,
                            CRecordButton::total};

bool isWide(int part) {
    return part == CRecordButton::number || part == CRecordButton::total;
}

/// A triangle with its point to the right (`towards` 1) or left (-1).
void drawTriangle(HDC dc, int middleX, int middleY, int size, int towards) {
    const POINT corners[] = {{middleX - towards * size / 2, middleY - size},
                             {middleX - towards * size / 2, middleY + size},
                             {middleX + towards * size / 2, middleY}};
    ::Polygon(dc, corners, 3);
}

void drawBar(HDC dc, int x, int middleY, int size) {
    ::Rectangle(dc, x, middleY - size, x + std::max(2, size / 3), middleY + size + 1);
}

/// Six rays.
void drawStar(HDC dc, int middleX, int middleY, int size) {
    const int half = size / 2;
    const POINT rays[] = {{size, 0}, {half, size - 1}, {half, 1 - size}};
    for (const POINT& ray : rays) {
        ::MoveToEx(dc, middleX - ray.x, middleY - ray.y, nullptr);
        ::LineTo(dc, middleX + ray.x, middleY + ray.y);
    }
}

void drawSymbol(HDC dc, int part, const RECT& rect) {
    const int size = std::max<int>(3, (rect.bottom - rect.top) / 5);
    const int x = (rect.left + rect.right) / 2, y = (rect.top + rect.bottom) / 2;
    const bool forwards = part != CRecordButton::first && part != CRecordButton::previous;
    const int triangleX = part == CRecordButton::added ? x - size : x;
    drawTriangle(dc, triangleX, y, size, forwards ? 1 : -1);
    if (part == CRecordButton::first) drawBar(dc, x - size, y, size);
    if (part == CRecordButton::last) drawBar(dc, x + size / 2 + 1, y, size);
    if (part == CRecordButton::added) drawStar(dc, x + size, y, size);
}

void drawButton(const DRAWITEMSTRUCT& draw) {
    RECT rect = draw.rcItem;
    const bool pushed = (draw.itemState & ODS_SELECTED) != 0;
    ::DrawFrameControl(draw.hDC, &rect, DFC_BUTTON,
                       DFCS_BUTTONPUSH | DFCS_ADJUSTRECT | (pushed ? DFCS_PUSHED : 0U));
    const int color = (draw.itemState & ODS_DISABLED) != 0 ? COLOR_GRAYTEXT : COLOR_BTNTEXT;
    const int thickness = std::max<int>(1, (rect.bottom - rect.top) / 16);
    const platform::UniqueGdi<HPEN> pen(::CreatePen(PS_SOLID, thickness, ::GetSysColor(color)));
    {
        const platform::Selected line(draw.hDC, pen.get());
        const platform::Selected area(draw.hDC, ::GetSysColorBrush(color));
        if (pushed) ::OffsetRect(&rect, 1, 1);
        drawSymbol(draw.hDC, static_cast<int>(draw.CtlID), rect);
    }
    if ((draw.itemState & ODS_FOCUS) != 0) ::DrawFocusRect(draw.hDC, &rect);
}

}  // namespace

const CRuntimeClass CRecordButton::runtimeClass{"CRecordButton", &CWnd::runtimeClass};

CRecordButton::CRecordButton() = default;

CRecordButton::~CRecordButton() {
    if (m_target != nullptr) m_target->RecordButtonGone(*this);
    if (ownsWindow()) DestroyWindow();
}

BOOL CRecordButton::Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id) {
    if (!CWnd::Create(nullptr, "", style | WS_CLIPCHILDREN, rect, parent, id)) return FALSE;
    createParts();
    return TRUE;
}

void CRecordButton::createParts() {
    if (m_hWnd == nullptr || m_number.m_hWnd != nullptr) return;
    ::SetWindowLongA(m_hWnd, GWL_EXSTYLE, ::GetWindowLongA(m_hWnd, GWL_EXSTYLE) | WS_EX_CONTROLPARENT);
    ModifyStyle(0, WS_CLIPCHILDREN);
    const auto create = [this](const char* windowClass, const char* text, DWORD style, int part) {
        ::CreateWindowExA(0, windowClass, text, WS_CHILD | style, 0, 0, 0, 0, m_hWnd,
                          reinterpret_cast<HMENU>(static_cast<INT_PTR>(part)), nullptr, nullptr);
    };
    // Made in the order of Tab; what stands before an editor is its name.
    for (const int part : fromLeft) {
        if (part == number) {
            create("STATIC", numberName, 0, labelId);
            m_number.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_BORDER | ES_CENTER | ES_NUMBER, {}, this,
                            number);
        } else if (part == total) {
            create("STATIC", "", WS_VISIBLE | SS_LEFTNOWORDWRAP | SS_CENTERIMAGE, total);
        } else {
            const auto* setting = std::find_if(std::begin(buttons), std::end(buttons),
                                               [&](const PartSetting& each) { return each.part == part; });
            create("BUTTON", setting->name, WS_VISIBLE | WS_TABSTOP | BS_OWNERDRAW, part);
        }
    }
    const auto parentFont = reinterpret_cast<HFONT>(::SendMessageA(GetParent(), WM_GETFONT, 0, 0));
    setPartFont(parentFont != nullptr ? parentFont : static_cast<HFONT>(::GetStockObject(DEFAULT_GUI_FONT)));
    createTips();
    placeParts();
    Refresh();
}

void CRecordButton::createTips() {
    if (!m_tips.CreateEx(0, TOOLTIPS_CLASSA, "", WS_POPUP | TTS_NOPREFIX, {}, m_hWnd, nullptr)) return;
    const auto add = [this](int part, const char* name) {
        TOOLINFOA tool = {};
        tool.cbSize = TTTOOLINFOA_V1_SIZE;
        tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
        tool.hwnd = m_hWnd;
        tool.uId = reinterpret_cast<UINT_PTR>(GetDlgItem(part));
        tool.lpszText = const_cast<char*>(name);
        m_tips.SendMessage(TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
    };
    for (const PartSetting& button : buttons) add(button.part, button.name);
    add(number, numberName);
}

void CRecordButton::placeParts() {
    const CRect client = GetClientRect();
    const int side = client.Height();
    const int wide = std::max<int>(0, client.Width() - 5 * side) / 2;
    int left = 0;
    for (const int part : fromLeft) {
        const int width = isWide(part) ? wide : side;
        const int gap = part == total ? std::min(4, width) : 0;
        ::MoveWindow(GetDlgItem(part), left + gap, 0, width - gap, side, TRUE);
        left += width;
    }
}

void CRecordButton::setPartFont(HFONT font) {
    for (const int part : {+number, +total})
        ::SendMessageA(GetDlgItem(part), WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

void CRecordButton::Link(RecordTarget* target) {
    m_target = target;
    createParts();
    Refresh();
}

void CRecordButton::SetRecord(int record, int count) {
    createParts();
    count = std::max(count, 0);
    record = std::clamp(record, 0, count);
    if (record == m_record && count == m_count) return;
    m_record = record;
    m_count = count;
    Refresh();
}

void CRecordButton::Refresh() {
    if (m_number.m_hWnd == nullptr) return;
    showNumbers();
    enableParts();
}

void CRecordButton::showNumbers() {
    CString text;
    if (m_record > 0) text.Format("%d", m_record);
    CString shown;
    m_number.GetWindowText(shown);
    if (!(shown == text)) m_number.SetWindowText(text);
    text.Format("sur %d", m_count);
    SetDlgItemText(total, text);
}

void CRecordButton::enableParts() {
    const bool linked = m_target != nullptr;
    const bool before = linked && m_record > 1, after = linked && m_record < m_count;
    const struct {
        int part;
        bool enabled;
    } parts[] = {{first, before}, {previous, before}, {number, linked && m_count > 0},
                 {next, after},   {last, after},      {added, linked && m_target->MayAddRecord()}};
    for (const auto& each : parts) {
        const HWND window = GetDlgItem(each.part);
        if (!each.enabled && ::GetFocus() == window) ::SetFocus(m_number.m_hWnd);
        if (::IsWindowEnabled(window) != each.enabled) ::EnableWindow(window, each.enabled);
    }
}

LRESULT CRecordButton::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            createParts();
            break;
        case WM_SIZE:
            placeParts();
            break;
        case WM_SETFONT:
            setPartFont(reinterpret_cast<HFONT>(wParam));
            break;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(m_number.GetFont());
        case WM_ERASEBKGND:
            CDC(reinterpret_cast<HDC>(wParam)).FillSolidRect(GetClientRect(), ::GetSysColor(COLOR_3DFACE));
            return 1;
        case WM_DRAWITEM:
            drawButton(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return TRUE;
        case WM_DESTROY:
            m_tips.DestroyWindow();
            break;
        default:
            break;
    }
    return CWnd::WindowProc(message, wParam, lParam);
}

BOOL CRecordButton::OnCommand(WPARAM wParam, LPARAM lParam) {
    const int part = LOWORD(wParam);
    switch (HIWORD(wParam)) {
        case BN_CLICKED:
            press(part);
            return TRUE;
        case CRetEdit::returnPressed:
            press(number);
            return TRUE;
        case EN_KILLFOCUS:
            showNumbers();
            return TRUE;
        default:
            return CWnd::OnCommand(wParam, lParam);
    }
}

void CRecordButton::press(int part) {
    switch (part) {
        case first:
            return moveTo(1);
        case previous:
            return moveTo(m_record - 1);
        case next:
            return moveTo(m_record + 1);
        case last:
            return moveTo(m_count);
        case number: {
            CString typed;
            m_number.GetWindowText(typed);
            return typed.IsEmpty() ? showNumbers()
                                   : moveTo(static_cast<int>(std::strtol(typed, nullptr, 10)));
        }
        case added:
            if (m_target != nullptr && m_target->MayAddRecord()) m_target->AddRecord();
            return;
        default:
            return;
    }
}

/// The target may destroy this object: nothing is touched after it was asked.
void CRecordButton::moveTo(int record) {
    showNumbers();
    if (m_target != nullptr && m_count > 0) m_target->MoveToRecord(std::clamp(record, 1, m_count));
}
