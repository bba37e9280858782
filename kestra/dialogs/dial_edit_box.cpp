#include <kestra/dialogs/dial_edit_box.h>

#include <kestra/dialogs/resource.h>
#include <platform/window/module_state.h>

const CRuntimeClass CDialEditBox::runtimeClass{"CDialEditBox", &CDialog::runtimeClass};

CDialEditBox::CDialEditBox(CWnd* parent) : CDialog(IDD_EDIT_BOX, parent) {}

INT_PTR CDialEditBox::DoModal() {
    const AfxManageState state(AfxGetStaticModuleState());
    return CDialog::DoModal();
}

BOOL CDialEditBox::OnInitDialog() {
    if (!m_titre.IsEmpty()) SetWindowText(m_titre);
    if (!m_texte.IsEmpty()) SetDlgItemText(IDC_EDIT_BOX_TEXTE, m_texte);
    ::SendDlgItemMessageA(m_hWnd, IDC_EDIT_BOX_VALEUR, EM_SETLIMITTEXT,
                          m_longueur > 0 ? static_cast<WPARAM>(m_longueur) : 0, 0);
    return CDialog::OnInitDialog();
}

void CDialEditBox::DoDataExchange(CDataExchange* exchange) {
    DDX_Text(exchange, IDC_EDIT_BOX_VALEUR, m_valeur);
}

/// The host's function is called as the host's own code is, with its resources in force.
bool CDialEditBox::accepts(const CString& entered) const {
    const AfxManageState host(nullptr);
    return m_accepte == nullptr || m_accepte(entered, m_contexte);
}

void CDialEditBox::OnOK() {
    CString entered;
    GetDlgItemText(IDC_EDIT_BOX_VALEUR, entered);
    if (!accepts(entered)) {
        ::SetFocus(GetDlgItem(IDC_EDIT_BOX_VALEUR));
        ::SendDlgItemMessageA(m_hWnd, IDC_EDIT_BOX_VALEUR, EM_SETSEL, 0, -1);
        return;
    }
    CDialog::OnOK();
}

int EditStringBox(CString& text, const char* title, const char* label, int longest, CWnd* parent) {
    CDialEditBox dialog(parent);
    dialog.m_titre = title;
    dialog.m_texte = label;
    dialog.m_valeur = text;
    dialog.m_longueur = longest;
    if (dialog.DoModal() != IDOK) return IDCANCEL;
    text = dialog.m_valeur;
    return IDOK;
}
