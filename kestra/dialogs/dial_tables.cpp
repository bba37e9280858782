#include <kestra/dialogs/dial_tables.h>

#include <array>

#include <kestra/dialogs/resource.h>
#include <platform/window/file_dialog.h>
#include <platform/window/module_state.h>

namespace {

constexpr std::array<int, 2> boxControls = {IDC_TABLES_TABLES, IDC_TABLES_REQUETES};

bool chooseFile(platform::FileQuestion& question) {
    CFileDialog dialog(true, question.extension.c_str(), question.path.c_str(), question.style,
                       question.filter.c_str());
    dialog.m_ofn.hwndOwner = ::GetActiveWindow();
    if (dialog.DoModal() != IDOK) return false;
    question.path = dialog.GetPathName().view();
    return true;
}

bool chooseTable(platform::ListQuestion& question) {
    const AfxManageState state(AfxGetStaticModuleState());
    return CDialTables(question).DoModal() == IDOK;
}

[[maybe_unused]] const bool registered = (kestra::replaceDatabaseDialogs(&windowDialogs), true);

}  // namespace

constinit const kestra::DatabaseDialogs windowDialogs = {chooseFile, chooseTable};

const CRuntimeClass CDialTables::runtimeClass{"CDialTables", &CDialog::runtimeClass};

CDialTables::CDialTables(platform::ListQuestion& question, CWnd* parent)
    : CDialog(IDD_TABLES, parent), m_question(question) {}

void CDialTables::DoDataExchange(CDataExchange* exchange) {
    DDX_Control(exchange, IDC_TABLES_LISTE, m_list);
}

BOOL CDialTables::OnInitDialog() {
    CDialog::OnInitDialog();
    SetWindowText(m_question.caption.c_str());
    for (std::size_t i = 0; i < boxControls.size() && i < m_question.boxes.size(); ++i) {
        SetDlgItemText(boxControls[i], m_question.boxes[i].label.c_str());
        ::CheckDlgButton(m_hWnd, boxControls[i], m_question.boxes[i].isChecked ? BST_CHECKED : BST_UNCHECKED);
    }
    showEntries();
    return TRUE;
}

void CDialTables::showEntries() {
    m_list.ResetContent();
    for (const std::string& entry : m_question.entries) m_list.AddString(entry.c_str());
    m_list.SetCurSel(m_question.selected);
}

void CDialTables::onBoxClicked() {
    m_question.selected = m_list.GetCurSel();
    for (std::size_t i = 0; i < boxControls.size() && i < m_question.boxes.size(); ++i)
        m_question.boxes[i].isChecked = ::IsDlgButtonChecked(m_hWnd, boxControls[i]) == BST_CHECKED;
    if (m_question.refill) m_question.refill(m_question);
    showEntries();
}

BOOL CDialTables::OnCommand(WPARAM wParam, LPARAM lParam) {
    const int control = LOWORD(wParam);
    if (HIWORD(wParam) == BN_CLICKED && (control == IDC_TABLES_TABLES || control == IDC_TABLES_REQUETES)) {
        onBoxClicked();
        return TRUE;
    }
    if (HIWORD(wParam) == LBN_DBLCLK && control == IDC_TABLES_LISTE) {
        OnOK();
        return TRUE;
    }
    return CDialog::OnCommand(wParam, lParam);
}

void CDialTables::OnOK() {
    m_question.selected = m_list.GetCurSel();
    CDialog::OnOK();
}
