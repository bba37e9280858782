#include <kestra/dialogs/ret_edit.h>

namespace {

constexpr WPARAM controlA = 1;  // WM_CHAR

bool controlIsDown() {
    return ::GetKeyState(VK_CONTROL) < 0 && ::GetKeyState(VK_MENU) >= 0;
}

bool isFirstPress(LPARAM keyInformation) {
    return (keyInformation & (1 << 30)) == 0;
}

bool isReturn(const MSG* message) {
    return message != nullptr && message->wParam == VK_RETURN &&
           (message->message == WM_KEYDOWN || message->message == WM_CHAR);
}

}  // namespace

const CRuntimeClass CRetEdit::runtimeClass{"CRetEdit", &CWnd::runtimeClass};

bool CRetEdit::keepsReturn() const {
    constexpr DWORD lineEnds = ES_MULTILINE | ES_WANTRETURN;
    return (GetStyle() & lineEnds) != lineEnds;
}

LRESULT CRetEdit::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_GETDLGCODE: {
            const LRESULT wanted = CEdit::WindowProc(message, wParam, lParam);
            const bool ours = isReturn(reinterpret_cast<const MSG*>(lParam)) && keepsReturn();
            return ours ? wanted | DLGC_WANTMESSAGE : wanted;
        }
        case WM_KEYDOWN:
            if (wParam == VK_RETURN && keepsReturn()) {
                if (isFirstPress(lParam)) tellReturn();
                return 0;
            }
            if (wParam == 'A' && controlIsDown()) {
                SetSel(0, -1);
                return 0;
            }
            break;
        case WM_CHAR:
            if (wParam == controlA) return 0;
            if ((wParam == '\r' || wParam == '\n') && keepsReturn()) return 0;
            break;
        default:
            break;
    }
    return CEdit::WindowProc(message, wParam, lParam);
}

/// The parent may destroy this object here.
void CRetEdit::tellReturn() {
    const auto command = MAKEWPARAM(GetDlgCtrlID(), returnPressed);
    ::SendMessageA(GetParent(), WM_COMMAND, command, reinterpret_cast<LPARAM>(m_hWnd));
}
