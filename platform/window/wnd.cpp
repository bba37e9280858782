#include <platform/window/wnd.h>

#include <string>
#include <utility>

#include <platform/window/creation_hook.h>
#include <platform/window/handles.h>
#include <platform/window/module_state.h>
#include <platform/window/win_app.h>

namespace {

thread_local CreationHook* hookInForce = nullptr;

const char* plainWindowClass() {
    static const char name[] = "KestraPlainWindow";
    static const ATOM registered = [] {
        WNDCLASSA plain = {};
        plain.style = CS_DBLCLKS;
        plain.lpfnWndProc = ::DefWindowProcA;
        plain.hInstance = ::GetModuleHandleA(nullptr);
        plain.hCursor = ::LoadCursorA(nullptr, IDC_ARROW);
        plain.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
        plain.lpszClassName = name;
        return ::RegisterClassA(&plain);
    }();
    return registered != 0 ? name : nullptr;
}

bool isInputMethodWindow(HWND window) {
    return (::GetClassLongA(window, GCL_STYLE) & CS_IME) != 0;
}

/// The child window that a message to its parent is about, null when it is about none (menus are drawn by
/// the same messages; a list's header has the id 0).
HWND childConcerned(HWND parent, UINT message, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            return reinterpret_cast<HWND>(lParam);
        case WM_NOTIFY:
            return reinterpret_cast<const NMHDR*>(lParam)->hwndFrom;
        case WM_DRAWITEM: {
            const auto& draw = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
            return draw.CtlType != ODT_MENU ? draw.hwndItem : nullptr;
        }
        case WM_MEASUREITEM: {
            const auto& measure = *reinterpret_cast<const MEASUREITEMSTRUCT*>(lParam);
            return measure.CtlType != ODT_MENU ? ::GetDlgItem(parent, static_cast<int>(measure.CtlID))
                                               : nullptr;
        }
        case WM_COMPAREITEM:
            return reinterpret_cast<const COMPAREITEMSTRUCT*>(lParam)->hwndItem;
        case WM_DELETEITEM:
            return reinterpret_cast<const DELETEITEMSTRUCT*>(lParam)->hwndItem;
        default:
            return nullptr;
    }
}

}  // namespace

CreationHook::CreationHook(CWnd& object)
    : m_object(&object),
      m_before(std::exchange(hookInForce, this)),
      m_hook(::SetWindowsHookExA(WH_CBT, procedure, nullptr, ::GetCurrentThreadId())) {}

CreationHook::~CreationHook() {
    const platform::KeepLastError keep;
    ::UnhookWindowsHookEx(m_hook);
    hookInForce = m_before;
}

LRESULT CALLBACK CreationHook::procedure(int code, WPARAM wParam, LPARAM lParam) {
    CreationHook* const hook = hookInForce;
    const HWND window = reinterpret_cast<HWND>(wParam);
    if (code == HCBT_CREATEWND && hook->m_object != nullptr && !isInputMethodWindow(window)) {
        std::exchange(hook->m_object, nullptr)->SubclassWindow(window);
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

const CRuntimeClass CWnd::runtimeClass{"CWnd", nullptr};

CWnd::CWnd() : m_subclass(*this) {}

CWnd::~CWnd() {
    const platform::KeepLastError keep;
    if (m_created) ::DestroyWindow(m_hWnd);
}

CWnd* CWnd::FromHandlePermanent(HWND window) {
    return static_cast<CWnd*>(platform::WindowSubclass::targetOf(window));
}

BOOL CWnd::Attach(HWND window) {
    if (window == nullptr || m_hWnd != nullptr) return FALSE;
    m_hWnd = window;
    return TRUE;
}

HWND CWnd::Detach() {
    m_subclass.release();
    m_created = false;
    return std::exchange(m_hWnd, nullptr);
}

BOOL CWnd::SubclassWindow(HWND window) {
    if (m_hWnd != nullptr || !m_subclass.attach(window)) return FALSE;
    m_hWnd = window;
    return TRUE;
}

BOOL CWnd::SubclassDlgItem(UINT id, const CWnd* parent) {
    return parent != nullptr && SubclassWindow(parent->GetDlgItem(static_cast<int>(id)));
}

HWND CWnd::UnsubclassWindow() {
    return m_subclass.window() != nullptr ? Detach() : nullptr;
}

BOOL CWnd::CreateEx(DWORD extendedStyle, const char* className, const char* text, DWORD style,
                    const RECT& rect, HWND parent, HMENU idOrMenu, void* parameter) {
    if (m_hWnd != nullptr) return FALSE;
    const CRect place(rect);
    const bool placedBySystem = place.left == CW_USEDEFAULT;
    const CreationHook hook(*this);
    const HWND window = ::CreateWindowExA(
        extendedStyle, className != nullptr ? className : plainWindowClass(), text, style, place.left,
        place.top, placedBySystem ? CW_USEDEFAULT : place.Width(),
        placedBySystem ? CW_USEDEFAULT : place.Height(), parent, idOrMenu, AfxGetInstanceHandle(), parameter);
    m_created = window != nullptr && m_hWnd == window;
    return m_created;
}

BOOL CWnd::Create(const char* className, const char* text, DWORD style, const RECT& rect, const CWnd* parent,
                  UINT id) {
    return CreateEx(0, className, text, style, rect, parent != nullptr ? parent->m_hWnd : nullptr,
                    reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)));
}

BOOL CWnd::DestroyWindow() {
    return m_hWnd != nullptr && ::DestroyWindow(m_hWnd);
}

int CWnd::GetWindowText(CString& text) const {
    const int length = m_hWnd != nullptr ? ::GetWindowTextLengthA(m_hWnd) : 0;
    std::string buffer(static_cast<std::size_t>(length) + 1, '\0');
    const int got = length > 0 ? ::GetWindowTextA(m_hWnd, buffer.data(), length + 1) : 0;
    text = std::string_view(buffer).substr(0, static_cast<std::size_t>(got));
    return got;
}

int CWnd::GetDlgItemText(int id, CString& text) const {
    CWnd item;
    item.m_hWnd = GetDlgItem(id);
    return item.GetWindowText(text);
}

BOOL CWnd::ModifyStyle(DWORD remove, DWORD add, UINT positionFlags) {
    const DWORD before = GetStyle();
    const DWORD after = (before & ~remove) | add;
    if (m_hWnd == nullptr || before == after) return FALSE;
    ::SetWindowLongA(m_hWnd, GWL_STYLE, static_cast<LONG>(after));
    if (positionFlags != 0) {
        SetWindowPos(nullptr, 0, 0, 0, 0,
                     SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | positionFlags);
    }
    return TRUE;
}

CRect CWnd::GetClientRect() const {
    CRect rect;
    ::GetClientRect(m_hWnd, &rect);
    return rect;
}

CRect CWnd::GetWindowRect() const {
    CRect rect;
    ::GetWindowRect(m_hWnd, &rect);
    return rect;
}

void CWnd::MoveWindow(const RECT& rect, BOOL repaint) {
    const CRect place(rect);
    ::MoveWindow(m_hWnd, place.left, place.top, place.Width(), place.Height(), repaint);
}

BOOL CWnd::SetWindowPos(HWND after, int x, int y, int width, int height, UINT flags) {
    return m_hWnd != nullptr && ::SetWindowPos(m_hWnd, after, x, y, width, height, flags);
}

void CWnd::InvalidateRect(const RECT* rect, BOOL erase) {
    if (m_hWnd != nullptr) ::InvalidateRect(m_hWnd, rect, erase);
}

void CWnd::SetFont(HFONT font, BOOL redraw) {
    SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font), redraw);
}

BOOL CWnd::PreTranslateMessage(MSG*) {
    return FALSE;
}

BOOL CWnd::WalkPreTranslateTree(HWND stop, MSG* message) {
    for (HWND window = message->hwnd; window != nullptr; window = ::GetParent(window)) {
        CWnd* const object = FromHandlePermanent(window);
        if (object != nullptr && object->PreTranslateMessage(message)) return TRUE;
        if (window == stop || (::GetWindowLongA(window, GWL_STYLE) & WS_CHILD) == 0) break;
    }
    return FALSE;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    switch (message) {
        case WM_NOTIFY:
            if (OnNotify(wParam, lParam, &result)) return result;
            break;
        case WM_COMMAND:
            if (OnCommand(wParam, lParam)) return 0;
            break;
        case WM_DRAWITEM:
        case WM_MEASUREITEM:
        case WM_COMPAREITEM:
        case WM_DELETEITEM:
            if (CWnd* const child = FromHandlePermanent(childConcerned(m_hWnd, message, lParam));
                child != nullptr && child->OnChildNotify(message, wParam, lParam, &result)) {
                return result;
            }
            break;
        default:
            break;
    }
    return DefWindowProc(message, wParam, lParam);
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    return m_subclass.callPrevious(message, wParam, lParam);
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    CWnd* const child = FromHandlePermanent(childConcerned(m_hWnd, WM_COMMAND, lParam));
    return child != nullptr && child->OnChildNotify(WM_COMMAND, wParam, lParam, &result);
}

BOOL CWnd::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) {
    CWnd* const child = FromHandlePermanent(childConcerned(m_hWnd, WM_NOTIFY, lParam));
    return child != nullptr && child->OnChildNotify(WM_NOTIFY, wParam, lParam, result);
}

BOOL CWnd::OnChildNotify(UINT, WPARAM, LPARAM, LRESULT*) {
    return FALSE;
}

void CWnd::PostNcDestroy() {}

LRESULT CWnd::windowMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return WindowProc(message, wParam, lParam);
}

void CWnd::windowGone() {
    m_hWnd = nullptr;
    m_created = false;
    CWinApp* const app = AfxGetAppModuleState()->m_pCurrentWinApp;
    if (app != nullptr && app->m_pMainWnd == this) {
        app->m_pMainWnd = nullptr;
        ::PostQuitMessage(0);
    }
    PostNcDestroy();
}
