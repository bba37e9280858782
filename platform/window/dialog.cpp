#include <platform/window/dialog.h>

#include <cstdlib>
#include <utility>

#include <platform/prompt.h>
#include <platform/window/creation_hook.h>
#include <platform/window/handles.h>
#include <platform/window/module_state.h>
#include <platform/window/win_app.h>

namespace {

/// While it lives, a modal dialog's own message loop offers its messages to `PreTranslateMessage` first.
class ModalFilter {
  public:
    explicit ModalFilter(const CDialog& dialog)
        : m_dialog(dialog),
          m_before(std::exchange(innermost, this)),
          m_hook(::SetWindowsHookExA(WH_MSGFILTER, procedure, nullptr, ::GetCurrentThreadId())) {}
    ~ModalFilter() {
        const platform::KeepLastError keep;
        ::UnhookWindowsHookEx(m_hook);
        innermost = m_before;
    }
    ModalFilter(const ModalFilter&) = delete;
    ModalFilter& operator=(const ModalFilter&) = delete;

  private:
    static LRESULT CALLBACK procedure(int code, WPARAM wParam, LPARAM lParam) {
        MSG* const message = reinterpret_cast<MSG*>(lParam);
        if (code == MSGF_DIALOGBOX && innermost->offers(message)) return TRUE;
        return ::CallNextHookEx(nullptr, code, wParam, lParam);
    }
    bool offers(MSG* message) const {
        const HWND dialog = m_dialog.m_hWnd;
        if (dialog == nullptr || (message->hwnd != dialog && !::IsChild(dialog, message->hwnd))) return false;
        return CWnd::WalkPreTranslateTree(dialog, message);
    }

    static thread_local ModalFilter* innermost;
    const CDialog& m_dialog;
    ModalFilter* m_before;
    HHOOK m_hook;
};
thread_local ModalFilter* ModalFilter::innermost = nullptr;

bool readWholeNumber(const char* text, int& number) {
    char* end = nullptr;
    const long value = std::strtol(text, &end, 10);
    if (end == text) return false;
    while (*end == ' ') ++end;
    if (*end != '\0') return false;
    number = static_cast<int>(value);
    return true;
}

}  // namespace

void CDataExchange::Fail(int id, const char* text) {
    m_failed = true;
    ::AfxMessageBox(text, platform::iconExclamation);
    ::SetFocus(m_pDlgWnd.GetDlgItem(id));
}

void DDX_Text(CDataExchange* exchange, int id, CString& text) {
    if (exchange->m_failed) return;
    if (exchange->m_bSaveAndValidate) {
        exchange->m_pDlgWnd.GetDlgItemText(id, text);
    } else {
        exchange->m_pDlgWnd.SetDlgItemText(id, text);
    }
}

void DDX_Text(CDataExchange* exchange, int id, int& number) {
    CString text;
    text.Format("%d", number);
    DDX_Text(exchange, id, text);
    if (exchange->m_failed || !exchange->m_bSaveAndValidate) return;
    if (!readWholeNumber(text, number)) exchange->Fail(id, "Entrez un nombre entier.");
}

void DDX_Check(CDataExchange* exchange, int id, int& checked) {
    if (exchange->m_failed) return;
    if (exchange->m_bSaveAndValidate) {
        checked = static_cast<int>(::IsDlgButtonChecked(exchange->m_pDlgWnd, id));
    } else {
        ::CheckDlgButton(exchange->m_pDlgWnd, id, static_cast<UINT>(checked));
    }
}

void DDX_Control(CDataExchange* exchange, int id, CWnd& control) {
    if (control.m_hWnd == nullptr) control.SubclassDlgItem(static_cast<UINT>(id), &exchange->m_pDlgWnd);
}

const CRuntimeClass CDialog::runtimeClass{"CDialog", &CWnd::runtimeClass};

CDialog::~CDialog() {
    DestroyWindow();
}

HWND CDialog::parentWindow() const {
    if (m_parent != nullptr) return m_parent->m_hWnd;
    const CWinApp* const app = AfxGetAppModuleState()->m_pCurrentWinApp;
    const HWND main = app != nullptr && app->m_pMainWnd != nullptr ? app->m_pMainWnd->m_hWnd : nullptr;
    return main != nullptr ? ::GetLastActivePopup(main) : ::GetActiveWindow();
}

INT_PTR CDialog::DoModal() {
    if (m_hWnd != nullptr) return -1;
    const char* const name = MAKEINTRESOURCEA(m_resource);
    const HINSTANCE module = AfxFindResourceHandle(name, MAKEINTRESOURCEA(5) /* RT_DIALOG */);
    m_modal = true;
    INT_PTR result = -1;
    {
        const CreationHook hook(*this);
        const ModalFilter filter(*this);
        result = ::DialogBoxParamA(module, name, parentWindow(), procedure, 0);
    }
    m_modal = false;
    return result;
}

BOOL CDialog::Create() {
    if (m_hWnd != nullptr) return FALSE;
    const char* const name = MAKEINTRESOURCEA(m_resource);
    const HINSTANCE module = AfxFindResourceHandle(name, MAKEINTRESOURCEA(5) /* RT_DIALOG */);
    const CreationHook hook(*this);
    return ::CreateDialogParamA(module, name, parentWindow(), procedure, 0) != nullptr;
}

INT_PTR CALLBACK CDialog::procedure(HWND window, UINT message, WPARAM, LPARAM) {
    if (message != WM_INITDIALOG) return FALSE;
    CDialog* const dialog = static_cast<CDialog*>(FromHandlePermanent(window));
    return dialog != nullptr ? dialog->OnInitDialog() : TRUE;
}

void CDialog::EndDialog(int result) {
    if (m_modal) {
        ::EndDialog(m_hWnd, result);
    } else {
        ShowWindow(SW_HIDE);
    }
}

BOOL CDialog::UpdateData(BOOL save) {
    CDataExchange exchange(*this, save != FALSE);
    DoDataExchange(&exchange);
    return !exchange.m_failed;
}

BOOL CDialog::PreTranslateMessage(MSG* message) {
    return m_hWnd != nullptr && !m_modal && ::IsDialogMessageA(m_hWnd, message);
}

BOOL CDialog::OnInitDialog() {
    UpdateData(FALSE);
    return TRUE;
}

void CDialog::OnOK() {
    if (UpdateData(TRUE)) EndDialog(IDOK);
}

void CDialog::OnCancel() {
    EndDialog(IDCANCEL);
}

void CDialog::DoDataExchange(CDataExchange*) {}

BOOL CDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    if (CWnd::OnCommand(wParam, lParam)) return TRUE;
    if (HIWORD(wParam) != BN_CLICKED) return FALSE;
    switch (LOWORD(wParam)) {
        case IDOK:
            OnOK();
            return TRUE;
        case IDCANCEL:
            OnCancel();
            return TRUE;
        default:
            return FALSE;
    }
}
