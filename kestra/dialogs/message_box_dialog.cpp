#include <kestra/dialogs/message_box_dialog.h>

#include <algorithm>
#include <climits>

#include <kestra/dialogs/message_box.h>
#include <kestra/dialogs/resource.h>
#include <platform/window/clipboard.h>
#include <platform/window/device_context.h>
#include <platform/window/handles.h>
#include <platform/window/module_state.h>
#include <platform/window/win_app.h>

namespace {

constexpr UINT oneSecond = 1000;
constexpr int nothingRemembered = -1;
constexpr UINT messageFormat = DT_LEFT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX | DT_EXPANDTABS;
constexpr UINT labelFormat = DT_LEFT | DT_SINGLELINE;

CWinApp* hostApplication() {
    return AfxGetAppModuleState()->m_pCurrentWinApp;
}

/// A text of the host, empty when it has none of that number.
CString hostText(UINT resource) {
    CString text;
    AfxLoadString(resource, text);
    return text;
}

/// A text of this library.
CString ownText(UINT resource) {
    const AfxManageState state(AfxGetStaticModuleState());
    return hostText(resource);
}

HICON systemIcon(unsigned number) {
    if (number == 0) return nullptr;
    return static_cast<HICON>(::LoadImageA(nullptr, MAKEINTRESOURCEA(number), IMAGE_ICON,
                                           ::GetSystemMetrics(SM_CXICON), ::GetSystemMetrics(SM_CYICON),
                                           LR_SHARED));
}

kestra::BoxSize sizeOfIcon(HICON icon) {
    ICONINFO info = {};
    if (icon == nullptr || !::GetIconInfo(icon, &info)) return {};
    const platform::UniqueGdi<HBITMAP> mask(info.hbmMask), color(info.hbmColor);
    BITMAP bitmap = {};
    ::GetObjectA(color != nullptr ? color.get() : mask.get(), sizeof bitmap, &bitmap);
    // Without colours the mask holds two pictures, one above the other.
    return {bitmap.bmWidth, color != nullptr ? bitmap.bmHeight : bitmap.bmHeight / 2};
}

kestra::BoxSize extentOf(HDC dc, std::string_view text, int width, UINT format) {
    RECT rect = {0, 0, width, 0};
    ::DrawTextA(dc, text.data(), static_cast<int>(text.size()), &rect, format | DT_CALCRECT);
    return {rect.right, rect.bottom};
}

/// Width that the caption bar needs beside a title, borders aside.
int captionWidth(std::string_view title) {
    NONCLIENTMETRICSA metrics = {};
    metrics.cbSize = sizeof metrics;
    if (!::SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) return 0;
    const platform::UniqueGdi<HFONT> font(::CreateFontIndirectA(&metrics.lfCaptionFont));
    const platform::WindowDc screen(nullptr);
    const platform::Selected selected(screen, font.get());
    return extentOf(screen, title, 0, labelFormat | DT_NOPREFIX).width + 3 * ::GetSystemMetrics(SM_CXSIZE);
}

CRect workArea(HWND window) {
    MONITORINFO info = {};
    info.cbSize = sizeof info;
    ::GetMonitorInfoA(::MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &info);
    return info.rcWork;
}

/// What the frame of a window adds to its client area.
kestra::BoxSize frameOf(const CWnd& window) {
    CRect frame;
    ::AdjustWindowRectEx(&frame, window.GetStyle(), FALSE,
                         static_cast<DWORD>(::GetWindowLongA(window, GWL_EXSTYLE)));
    return {frame.Width(), frame.Height()};
}

/// More characters than the room could show, even of narrow ones: such a text is not measured, which would
/// take long.
bool isBeyondMeasure(std::size_t length, const kestra::BoxExtents& extents) {
    const int narrow = std::max(extents.unit.width / 3, 1), high = std::max(extents.unit.height, 1);
    const auto columns = static_cast<std::size_t>(std::max(extents.room.width, 0) / narrow);
    return length > columns * static_cast<std::size_t>(std::max(extents.room.height, 0) / high);
}

CString withCrLf(CString text) {
    text.Replace("\r\n", "\n");
    text.Replace("\n", "\r\n");
    return text;
}

CString withoutAmpersands(CString label) {
    label.Remove('&');
    return label;
}

}  // namespace

const CRuntimeClass CMessageBoxDialog::runtimeClass{"CMessageBoxDialog", &CDialog::runtimeClass};

CMessageBoxDialog::CMessageBoxDialog(CWnd* parent, const char* message, const char* title, UINT style,
                                     UINT helpId)
    : CDialog(IDD_MESSAGE_BOX, parent),
      m_style(style),
      m_helpId(helpId),
      m_message(message),
      m_title(title) {}

CMessageBoxDialog::CMessageBoxDialog(CWnd* parent, UINT message, UINT title, UINT style, UINT helpId)
    : CMessageBoxDialog(parent, hostText(message), hostText(title), style, helpId) {}

CMessageBoxDialog::~CMessageBoxDialog() {
    DestroyWindow();
}

void CMessageBoxDialog::SetMessage(UINT resource) {
    m_message = hostText(resource);
}

void CMessageBoxDialog::SetTitle(UINT resource) {
    m_title = hostText(resource);
}

void CMessageBoxDialog::SetMessageIcon(UINT resource) {
    const char* const name = MAKEINTRESOURCEA(resource);
    m_icon = ::LoadIconA(AfxFindResourceHandle(name, MAKEINTRESOURCEA(14) /* RT_GROUP_ICON */), name);
}

const std::string& CMessageBoxDialog::answerName() {
    if (m_answerName.empty()) m_answerName = kestra::rememberedName(m_helpId, m_message.view());
    return m_answerName;
}

INT_PTR CMessageBoxDialog::DoModal() {
    if (m_hWnd != nullptr) return -1;
    const CWinApp* const host = hostApplication();
    if ((m_style & kestra::boxRemembers) != 0 && host != nullptr) {
        const int remembered = host->GetProfileInt(profileSection, answerName().c_str(), nothingRemembered);
        if (remembered != nothingRemembered) return remembered;
    }
    m_buttons = kestra::buttonsOfStyle(m_style);
    m_answered = false;
    const AfxManageState state(AfxGetStaticModuleState());
    const INT_PTR result = CDialog::DoModal();
    return m_answered ? result : -1;
}

void CMessageBoxDialog::EndDialog(int result) {
    if (m_hWnd == nullptr) return;
    CWinApp* const host = hostApplication();
    const bool remembers = (m_style & kestra::boxRemembers) != 0 &&
                           ::IsDlgButtonChecked(m_hWnd, kestra::boxCheckMark) == BST_CHECKED;
    if (remembers && host != nullptr) host->WriteProfileInt(profileSection, answerName().c_str(), result);
    m_answered = true;
    CDialog::EndDialog(result);
}

void CMessageBoxDialog::ResetMessageBoxes() {
    if (CWinApp* const host = hostApplication()) host->DeleteProfileSection(profileSection);
}

BOOL CMessageBoxDialog::OnInitDialog() {
    SetWindowText(m_title.IsEmpty() ? AfxGetAppName() : m_title);
    const HICON icon = m_icon != nullptr ? m_icon : systemIcon(kestra::iconOfStyle(m_style));
    const kestra::BoxLayout layout = kestra::layOutBox(measure(icon));
    createControls(layout, icon);
    placeOnScreen(layout.client);
    applyStyle();
    startCountDown();
    focusDefault();
    return FALSE;
}

kestra::BoxExtents CMessageBoxDialog::measure(HICON icon) const {
    kestra::BoxExtents extents;
    RECT unit = {0, 0, 4, 8};
    ::MapDialogRect(m_hWnd, &unit);
    extents.unit = {unit.right, unit.bottom};
    const CRect work = workArea(parentWindow());
    const kestra::BoxSize frame = frameOf(*this);
    extents.room = {work.Width() - frame.width, work.Height() - frame.height};
    extents.icon = sizeOfIcon(icon);
    extents.scrollBar = ::GetSystemMetrics(SM_CXVSCROLL);
    CString title;
    GetWindowText(title);
    extents.caption = std::min(captionWidth(title.view()), extents.room.width * 5 / 8);

    const platform::WindowDc dc(m_hWnd);
    const platform::Selected font(dc, GetFont());
    for (const kestra::BoxButton& button : m_buttons.shown) {
        const CString text = ownText(button.text);
        const bool counts = static_cast<std::uint32_t>(button.id) == m_buttons.defaultId;
        const std::string longest = kestra::countDownText(text.view(), counts ? m_countDown.seconds() : 0);
        extents.buttons.push_back(extentOf(dc, longest, 0, labelFormat).width);
    }
    if (const UINT mark = kestra::checkMarkOfStyle(m_style)) {
        extents.checkMark = extentOf(dc, ownText(mark).view(), 0, labelFormat);
        extents.checkMark.width += ::GetSystemMetrics(SM_CXMENUCHECK) + extents.unit.width;
        extents.checkMark.height = std::max(extents.checkMark.height, ::GetSystemMetrics(SM_CYMENUCHECK));
    }
    const bool unmeasured = isBeyondMeasure(m_message.view().size(), extents);
    const int width = kestra::widestMessage(extents);
    extents.message =
        unmeasured ? kestra::BoxSize{width, INT_MAX} : extentOf(dc, m_message.view(), width, messageFormat);
    return extents;
}

HWND CMessageBoxDialog::createControl(const char* windowClass, const char* text, DWORD style, int id,
                                      const kestra::BoxPlace& place) {
    const HWND control = ::CreateWindowExA(
        0, windowClass, text, WS_CHILD | WS_VISIBLE | style, place.left, place.top, place.width, place.height,
        m_hWnd, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    ::SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetFont()), FALSE);
    return control;
}

/// In lines of our own: an edit control may take minutes to wrap a line of 100 KB.
void CMessageBoxDialog::createScrolledMessage(const kestra::BoxPlace& place) {
    constexpr DWORD style =
        WS_TABSTOP | WS_VSCROLL | WS_BORDER | ES_MULTILINE | ES_READONLY | ES_AUTOHSCROLL | ES_AUTOVSCROLL;
    const HWND edit = createControl("EDIT", "", style, IDC_BOX_MESSAGE, place);
    RECT room = {};
    ::SendMessageA(edit, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&room));
    kestra::CharacterWidths widths = {};
    {
        const platform::WindowDc dc(edit);
        const platform::Selected font(dc, GetFont());
        ::GetCharWidth32A(dc, 0, 255, widths.data());
    }
    ::SendMessageA(edit, EM_SETLIMITTEXT, 0, 0);
    ::SetWindowTextA(edit, kestra::wrappedLines(m_message.view(), room.right - room.left, widths).c_str());
}

/// In the order of Tab: the message when it scrolls, the check box, the buttons.
void CMessageBoxDialog::createControls(const kestra::BoxLayout& layout, HICON icon) {
    if (icon != nullptr) {
        const HWND picture = createControl("STATIC", "", SS_ICON, IDC_BOX_ICON, layout.icon);
        ::SendMessageA(picture, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
    }
    if (layout.scrolls) {
        createScrolledMessage(layout.message);
    } else {
        createControl("STATIC", m_message, SS_OWNERDRAW | SS_NOPREFIX, IDC_BOX_MESSAGE, layout.message);
    }
    if (const UINT mark = kestra::checkMarkOfStyle(m_style)) {
        createControl("BUTTON", ownText(mark), WS_TABSTOP | BS_AUTOCHECKBOX, kestra::boxCheckMark,
                      layout.checkMark);
    }
    for (std::size_t i = 0; i < layout.buttons.size(); ++i) {
        const kestra::BoxButton& button = m_buttons.shown[i];
        const bool isDefault = static_cast<std::uint32_t>(button.id) == m_buttons.defaultId;
        createControl("BUTTON", ownText(button.text),
                      WS_TABSTOP | (isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON), button.id,
                      layout.buttons[i]);
    }
    SendMessage(DM_SETDEFID, m_buttons.defaultId);
}

/// Over the middle of its owner, within the screen.
void CMessageBoxDialog::placeOnScreen(const kestra::BoxSize& client) {
    const kestra::BoxSize frame = frameOf(*this);
    const int width = client.width + frame.width, height = client.height + frame.height;
    const HWND owner = parentWindow();
    const CRect work = workArea(owner);
    CRect over = work;
    if (owner != nullptr && ::IsWindowVisible(owner) && !::IsIconic(owner)) ::GetWindowRect(owner, &over);
    const auto within = [](LONG from, LONG least, LONG most) {
        return std::max(least, std::min(from, most));
    };
    const LONG left = within((over.left + over.right - width) / 2, work.left, work.right - width);
    const LONG top = within((over.top + over.bottom - height) / 2, work.top, work.bottom - height);
    SetWindowPos(nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void CMessageBoxDialog::applyStyle() {
    if ((m_style & kestra::boxSilent) == 0) ::MessageBeep(m_style & 0xF0);
    if ((m_style & kestra::boxSystemModal) != 0) ModifyStyle(0, DS_SYSMODAL);
    if ((m_style & kestra::boxTopmost) != 0)
        SetWindowPos(HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    if ((m_style & kestra::boxForeground) != 0) ::SetForegroundWindow(m_hWnd);
    holdControls(false);
}

/// A count-down that cannot run is left out: nobody would enable the controls again.
void CMessageBoxDialog::startCountDown() {
    if (m_countDown.seconds() == 0) return;
    m_timer = SetTimer(timerId, oneSecond);
    if (m_timer == 0) m_countDown.set(0, m_countDown.disabled());
    if (m_countDown.holdsControls()) holdControls(true);
}

/// Enables or disables the buttons, the check box and the close box; that one only where Escape does
/// anything.
void CMessageBoxDialog::holdControls(bool held) {
    for (const kestra::BoxButton& button : m_buttons.shown) ::EnableWindow(GetDlgItem(button.id), !held);
    ::EnableWindow(GetDlgItem(kestra::boxCheckMark), !held);
    const bool closes = !held && m_buttons.escapeId != kestra::noEscape;
    ::EnableMenuItem(::GetSystemMenu(m_hWnd, FALSE), SC_CLOSE,
                     MF_BYCOMMAND | (closes ? MF_ENABLED : MF_GRAYED));
}

void CMessageBoxDialog::focusDefault() {
    const HWND button = GetDlgItem(static_cast<int>(m_buttons.defaultId));
    ::SetFocus(::IsWindowEnabled(button) ? button : m_hWnd);
}

void CMessageBoxDialog::onTimer() {
    using Tick = kestra::BoxCountDown::Tick;
    const Tick tick = m_countDown.tick();
    if (tick == Tick::nothing) return;
    if (tick != Tick::goesOn) {
        KillTimer(timerId);
        m_timer = 0;
    }
    showCountDown();
    if (tick == Tick::enables) {
        holdControls(false);
        focusDefault();
    } else if (tick == Tick::ends) {
        // A button that is held down, or an open window menu, lets go first.
        SendMessage(WM_CANCELMODE);
        EndDialog(static_cast<int>(m_buttons.defaultId));
    }
}

void CMessageBoxDialog::showCountDown() {
    for (const kestra::BoxButton& button : m_buttons.shown) {
        if (static_cast<std::uint32_t>(button.id) != m_buttons.defaultId) continue;
        const CString text = ownText(button.text);
        SetDlgItemText(button.id, kestra::countDownText(text.view(), m_countDown.seconds()).c_str());
    }
}

BOOL CMessageBoxDialog::PreTranslateMessage(MSG* message) {
    const bool pressed = message->message == WM_KEYDOWN || message->message == WM_SYSKEYDOWN;
    const bool isKey = message->message >= WM_KEYFIRST && message->message <= WM_KEYLAST;
    if (isKey && m_countDown.holdsControls()) return TRUE;
    if (!pressed) return FALSE;
    const auto key = static_cast<unsigned>(message->wParam);
    switch (kestra::boxKey(key, m_countDown.holdsControls(), m_buttons.escapeId)) {
        case kestra::BoxKey::swallowed:
            return TRUE;
        case kestra::BoxKey::escapes:
            answer(IDCANCEL);
            return TRUE;
        default:
            break;
    }
    const bool copies =
        key == 'C' && ::GetKeyState(VK_CONTROL) < 0 && ::GetFocus() != GetDlgItem(IDC_BOX_MESSAGE);
    if (copies) copyToClipboard();
    return copies;
}

BOOL CMessageBoxDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    if (HIWORD(wParam) != BN_CLICKED) return CDialog::OnCommand(wParam, lParam);
    answer(LOWORD(wParam));
    return TRUE;
}

bool CMessageBoxDialog::hasButton(int id) const {
    return std::any_of(m_buttons.shown.begin(), m_buttons.shown.end(),
                       [&](const kestra::BoxButton& button) { return button.id == id; });
}

/// A command of the box: a button, or IDCANCEL for Escape and the close box.
void CMessageBoxDialog::answer(int id) {
    if (m_countDown.holdsControls()) return;
    if (id == IDCANCEL) id = static_cast<int>(m_buttons.escapeId);
    if (!hasButton(id)) return;
    if (id == kestra::boxHelp) return askForHelp();
    EndDialog(id);
}

LRESULT CMessageBoxDialog::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_TIMER:
            if (wParam != timerId) break;
            onTimer();
            return 0;
        case WM_HELP:
            askForHelp();
            return TRUE;
        case WM_DRAWITEM:
            if (wParam != IDC_BOX_MESSAGE) break;
            drawMessage(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return TRUE;
        default:
            break;
    }
    return CDialog::WindowProc(message, wParam, lParam);
}

/// With the very format it was measured with.
void CMessageBoxDialog::drawMessage(const DRAWITEMSTRUCT& draw) const {
    RECT rect = draw.rcItem;
    ::FillRect(draw.hDC, &rect, ::GetSysColorBrush(COLOR_3DFACE));
    ::SetBkMode(draw.hDC, TRANSPARENT);
    ::SetTextColor(draw.hDC, ::GetSysColor(COLOR_WINDOWTEXT));
    const platform::Selected font(draw.hDC, GetFont());
    ::DrawTextA(draw.hDC, m_message, m_message.GetLength(), &rect, messageFormat);
}

void CMessageBoxDialog::askForHelp() {
    HELPINFO info = {};
    info.cbSize = sizeof info;
    info.iContextType = HELPINFO_WINDOW;
    info.hItemHandle = m_hWnd;
    info.dwContextId = m_helpId;
    ::GetCursorPos(&info.MousePos);
    if (const HWND owner = ::GetWindow(m_hWnd, GW_OWNER))
        ::SendMessageA(owner, WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
}

/// As the system's box does it: title, message and buttons between rules.
void CMessageBoxDialog::copyToClipboard() {
    constexpr const char* rule = "---------------------------\r\n";
    CString text, title;
    GetWindowText(title);
    text = CString(rule) + title + "\r\n" + rule + withCrLf(m_message) + "\r\n" + rule;
    for (const kestra::BoxButton& button : m_buttons.shown)
        text += withoutAmpersands(ownText(button.text)) + "   ";
    text += CString("\r\n") + rule;
    const platform::OpenedClipboard clipboard(m_hWnd);
    if (clipboard && ::EmptyClipboard()) clipboard.put(CF_TEXT, text.view());
}

int MyAfxMessageBox(const char* text, unsigned style, unsigned helpId) {
    return static_cast<int>(CMessageBoxDialog(nullptr, text, nullptr, style, helpId).DoModal());
}
