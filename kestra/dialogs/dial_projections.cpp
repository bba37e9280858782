#include <kestra/dialogs/dial_projections.h>

#include <cmath>

#include <dorsel/geodesy/decimal.h>
#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <kestra/dialogs/resource.h>
#include <kestra/project/chantier.h>
#include <kestra/project/conversions/coordinate_operation.h>
#include <platform/window/controls.h>
#include <platform/window/file_dialog.h>
#include <platform/window/module_state.h>

namespace {

constexpr int sourceEditable = 1, targetEditable = 2;
constexpr int droppedWidth = 250;
constexpr int heightDecimals = 4;

/// A dialog's combo box, for as long as the messages take.
class ComboOf : public CComboBox {
  public:
    ComboOf(const CWnd& dialog, int id) { Attach(dialog.GetDlgItem(id)); }
    ~ComboOf() override { Detach(); }
};

/// A number with decimal point or comma.
void exchangeNumber(CDataExchange* exchange, int id, double& number) {
    char text[geodesy::decimalRoom + 1];
    *geodesy::printDecimal(text, number, number == std::trunc(number) ? 0 : heightDecimals) = '\0';
    CString written(text);
    DDX_Text(exchange, id, written);
    if (exchange->m_failed || !exchange->m_bSaveAndValidate) return;
    if (written == text) return;  // the number may have more decimals than are shown
    written.Trim();
    if (written.IsEmpty())
        number = 0;
    else if (!geodesy::readDecimal(written.view(), number))
        exchange->Fail(id, "Entrez un nombre.");
}

}  // namespace

const CRuntimeClass CDialProjections::runtimeClass{"CDialProjections", &CDialog::runtimeClass};

CDialProjections::CDialProjections(CWnd* parent) : CDialog(IDD_PROJECTIONS, parent) {}

INT_PTR CDialProjections::Choose(int mode) {
    const AfxManageState state(AfxGetStaticModuleState());
    m_mode = mode;
    return DoModal();
}

int CDialProjections::Transform(const double in[3], double out[3]) {
    if (in == nullptr || out == nullptr) return 0;
    kestra::CoordinateOperation operation;
    operation.from = m_pOrigine;
    operation.to = m_pFinale;
    operation.altiFrom = m_pAltiOrigine;
    operation.altiTo = m_pAltiFinale;
    operation.dz = m_dz;
    return operation.transform(in, out, m_geo) ? 1 : 0;
}

void CDialProjections::DoDataExchange(CDataExchange* exchange) {
    DDX_Text(exchange, IDC_PROJ_ORIGINE, m_projOrigine);
    DDX_Text(exchange, IDC_PROJ_FINALE, m_projFinale);
    DDX_Text(exchange, IDC_ALTI_ORIGINE, m_altiOrigine);
    DDX_Text(exchange, IDC_ALTI_FINALE, m_altiFinale);
    exchangeNumber(exchange, IDC_PROJ_DZ, m_dz);
}

BOOL CDialProjections::OnInitDialog() {
    if (m_projOrigine.IsEmpty()) m_projOrigine = chtdef.m_projection;
    if (m_projOrigine.IsEmpty()) m_projOrigine = pvg.projection;
    ComboOf source(*this, IDC_PROJ_ORIGINE), target(*this, IDC_PROJ_FINALE);
    Cchantier::UpdateComboProjection(m_projOrigine.IsEmpty() ? "*" : m_projOrigine.GetString(), &source);
    Cchantier::UpdateComboProjection("*", &target);
    fillAltitudes();
    enableByMode();
    if (!m_titre.IsEmpty()) SetWindowText(m_titre);
    if (!m_texte.IsEmpty()) SetDlgItemText(IDC_PROJ_TEXTE, m_texte);
    return CDialog::OnInitDialog();
}

void CDialProjections::fillAltitudes() {
    ComboOf source(*this, IDC_ALTI_ORIGINE), target(*this, IDC_ALTI_FINALE);
    source.SetDroppedWidth(droppedWidth);
    target.SetDroppedWidth(droppedWidth);
    source.AddString("");
    source.AddString("$Hauteur Ellipsoide");
    for (const std::string& choice : kestra::altitudeChoices()) source.AddString(choice.c_str());
    CString entry;
    for (int i = 0; i < source.GetCount(); ++i) {
        source.GetLBText(i, entry);
        target.AddString(entry);
    }
}

void CDialProjections::enableByMode() {
    struct {
        int bit, control;
    } const rules[] = {{sourceEditable, IDC_PROJ_ORIGINE},
                       {sourceEditable, IDC_ALTI_ORIGINE},
                       {targetEditable, IDC_PROJ_FINALE},
                       {targetEditable, IDC_ALTI_FINALE},
                       {targetEditable, IDC_PROJ_DZ}};
    for (const auto& rule : rules) ::EnableWindow(GetDlgItem(rule.control), (m_mode & rule.bit) != 0);
}

/// Enter does not close the dialog.
void CDialProjections::OnOK() {}

BOOL CDialProjections::OnCommand(WPARAM wParam, LPARAM lParam) {
    if (HIWORD(wParam) == BN_CLICKED) {
        switch (LOWORD(wParam)) {
            case IDC_PROJ_APPLIQUER:
                OnBnClickedApply();
                return TRUE;
            case IDC_ALTI_PARCOURIR_ORIGINE:
                OnBnClickedBPathFrom();
                return TRUE;
            case IDC_ALTI_PARCOURIR_FINALE:
                OnBnClickedBPathTo();
                return TRUE;
            default:
                break;
        }
    }
    return CDialog::OnCommand(wParam, lParam);
}

void CDialProjections::OnBnClickedApply() {
    if (!UpdateData(TRUE)) return;
    m_pOrigine = CtesProj::GetProjection(m_projOrigine);
    m_pFinale = CtesProj::GetProjection(m_projFinale);
    m_pAltiOrigine = kestra::gridOfChoice(m_altiOrigine);
    m_pAltiFinale = kestra::gridOfChoice(m_altiFinale);
    EndDialog(IDOK);
}

void CDialProjections::OnBnClickedBPathFrom() {
    OnBnClickedBPath(IDC_ALTI_ORIGINE);
}

void CDialProjections::OnBnClickedBPathTo() {
    OnBnClickedBPath(IDC_ALTI_FINALE);
}

void CDialProjections::OnBnClickedBPath(int control) {
    const CString start = CString(standardFolder('R')) + "INI\\*.MNT";
    CFileDialog chooser(true, "MNT", start, OFN_HIDEREADONLY | OFN_EXPLORER,
                        "Grilles MNT (*.MNT;*.GRA)|*.MNT;*.GRA|Tous (*.*)|*.*||", this);
    if (chooser.DoModal() == IDOK) SetDlgItemText(control, chooser.GetPathName());
}

int Cchantier::UpdateComboProjection(const char* selection, CComboBox* combo) {
    if (combo == nullptr) return -1;
    if (selection == nullptr) selection = "";
    if (combo->GetCount() < 2)
        for (const std::string& choice : kestra::projectionChoices(selection))
            combo->AddString(choice.c_str());
    const int index = combo->FindStringExact(-1, selection);
    combo->SetCurSel(index);
    return index;
}
