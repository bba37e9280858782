#include <kestra/dialogs/dial_colonnes.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include <kestra/controls/lra_list_ctrl.h>
#include <kestra/dialogs/resource.h>
#include <platform/window/module_state.h>

namespace {

constexpr int narrowestShown = 10, widestShown = 32767;
constexpr int captionRoom = 255;

/// A caption on one line.
CString captionOf(CLraHeaderCtrl& header, int column) {
    std::array<char, captionRoom> caption = {};
    header.GetItemText(column, caption.data(), captionRoom);
    std::replace(caption.begin(), caption.end(), '\n', ' ');
    return caption.data();
}

bool isChecked(const CListCtrl& rows, int row) {
    return (rows.GetItemState(row, LVIS_STATEIMAGEMASK) >> 12) == 2;
}

void check(CListCtrl& rows, int row, bool on) {
    rows.SetItemState(row, static_cast<UINT>(INDEXTOSTATEIMAGEMASK(on ? 2 : 1)), LVIS_STATEIMAGEMASK);
}

}  // namespace

const CRuntimeClass CDialColonnes::runtimeClass{"CDialColonnes", &CDialog::runtimeClass};

CDialColonnes::CDialColonnes(CLraListCtrl* list, int firstColumn)
    : CDialog(IDD_COLONNES, list), m_list(list), m_firstColumn(std::max(firstColumn, 0)) {}

INT_PTR CDialColonnes::DoModal() {
    const AfxManageState state(AfxGetStaticModuleState());
    return CDialog::DoModal();
}

void CDialColonnes::DoDataExchange(CDataExchange* exchange) {
    DDX_Control(exchange, IDC_COLONNES_LISTE, m_rows);
}

BOOL CDialColonnes::OnInitDialog() {
    CDialog::OnInitDialog();
    m_rows.SetExtendedStyle(LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    LVCOLUMNA only = {};
    only.mask = LVCF_WIDTH;
    only.cx = m_rows.GetClientRect().Width() - ::GetSystemMetrics(SM_CXVSCROLL);
    m_rows.InsertColumn(0, only);
    m_choices.clear();
    CLraHeaderCtrl& header = *m_list->GetHeaderCtrl();
    for (int order = 0; order < header.GetItemCount(); ++order) {
        const int column = header.OrderToIndex(order);
        if (column >= m_firstColumn) addColumn(column);
    }
    select(0);
    return TRUE;
}

void CDialColonnes::addColumn(int column) {
    const CString caption = captionOf(*m_list->GetHeaderCtrl(), column);
    LVITEMA item = {};
    item.mask = LVIF_TEXT;
    item.iItem = static_cast<int>(m_choices.size());
    item.pszText = const_cast<char*>(caption.GetString());
    const int row = m_rows.InsertItem(item);
    if (row < 0) return;
    const int width = m_list->GetColumnWidth(column);
    m_choices.push_back({column, caption, std::max(std::abs(width), narrowestShown)});
    check(m_rows, row, width > 0);
}

BOOL CDialColonnes::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case IDC_COLONNES_MONTER:
            moveSelected(-1);
            return TRUE;
        case IDC_COLONNES_DESCENDRE:
            moveSelected(1);
            return TRUE;
        case IDC_COLONNES_TOUTES:
            checkAll(true);
            return TRUE;
        case IDC_COLONNES_AUCUNE:
            checkAll(false);
            return TRUE;
        case IDC_COLONNES_LARGEUR:
            if (HIWORD(wParam) == EN_CHANGE && !m_showing) takeWidth();
            return TRUE;
        default:
            return CDialog::OnCommand(wParam, lParam);
    }
}

BOOL CDialColonnes::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) {
    const NMHDR& header = *reinterpret_cast<const NMHDR*>(lParam);
    if (header.idFrom == IDC_COLONNES_LISTE && header.code == LVN_ITEMCHANGED) showWidth();
    return CDialog::OnNotify(wParam, lParam, result);
}

int CDialColonnes::selected() const {
    const int row = m_rows.GetNextItem(-1, LVNI_SELECTED);
    return row < static_cast<int>(m_choices.size()) ? row : -1;
}

void CDialColonnes::select(int row) {
    m_rows.SetItemState(row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    m_rows.EnsureVisible(row, FALSE);
    showWidth();
}

void CDialColonnes::checkAll(bool on) {
    for (int row = 0; row < m_rows.GetItemCount(); ++row) check(m_rows, row, on);
}

void CDialColonnes::moveSelected(int step) {
    const int from = selected(), to = from + step;
    if (from < 0 || to < 0 || to >= static_cast<int>(m_choices.size())) return;
    const bool fromChecked = isChecked(m_rows, from), toChecked = isChecked(m_rows, to);
    std::swap(m_choices[static_cast<std::size_t>(from)], m_choices[static_cast<std::size_t>(to)]);
    for (const int row : {from, to})
        m_rows.SetItemText(row, 0, m_choices[static_cast<std::size_t>(row)].caption);
    check(m_rows, from, toChecked);
    check(m_rows, to, fromChecked);
    select(to);
}

void CDialColonnes::showWidth() {
    const int row = selected();
    m_showing = true;
    if (row >= 0)
        ::SetDlgItemInt(m_hWnd, IDC_COLONNES_LARGEUR,
                        static_cast<UINT>(m_choices[static_cast<std::size_t>(row)].width), FALSE);
    else
        SetDlgItemText(IDC_COLONNES_LARGEUR, "");
    m_showing = false;
    ::EnableWindow(GetDlgItem(IDC_COLONNES_LARGEUR), row >= 0);
}

/// While it is typed: a number that is no width yet leaves the width as it was.
void CDialColonnes::takeWidth() {
    BOOL isNumber = FALSE;
    const UINT typed = ::GetDlgItemInt(m_hWnd, IDC_COLONNES_LARGEUR, &isNumber, FALSE);
    const int row = selected();
    if (row < 0 || !isNumber || typed < narrowestShown || typed > widestShown) return;
    Choice& choice = m_choices[static_cast<std::size_t>(row)];
    choice.width = static_cast<int>(typed);
    choice.widthChanged = true;
}

void CDialColonnes::applyWidth(const Choice& choice, bool show) {
    const int before = m_list->GetColumnWidth(choice.column);
    if (show && (before <= 0 || choice.widthChanged)) m_list->SetColumnWidth(choice.column, choice.width);
    if (!show && (before > 0 || choice.widthChanged))
        m_list->SetColumnWidth(choice.column, -(choice.widthChanged ? choice.width : before));
}

/// The places on the screen that the offered columns have now, taken in the order of the rows.
void CDialColonnes::applyOrder() {
    CLraHeaderCtrl& header = *m_list->GetHeaderCtrl();
    std::vector<int> order;
    for (int place = 0; place < header.GetItemCount(); ++place) order.push_back(header.OrderToIndex(place));
    const std::vector<int> before = order;
    auto next = m_choices.begin();
    for (int& column : order) {
        if (column < m_firstColumn) continue;
        if (next == m_choices.end()) return;
        column = (next++)->column;
    }
    if (order != before && next == m_choices.end())
        m_list->SendMessage(LVM_SETCOLUMNORDERARRAY, order.size(), reinterpret_cast<LPARAM>(order.data()));
}

void CDialColonnes::OnOK() {
    if (m_list->m_hWnd != nullptr) {
        const int columns = m_list->GetHeaderCtrl()->GetItemCount();
        for (std::size_t row = 0; row < m_choices.size(); ++row) {
            if (m_choices[row].column < columns)
                applyWidth(m_choices[row], isChecked(m_rows, static_cast<int>(row)));
        }
        applyOrder();
        m_list->Invalidate();
    }
    CDialog::OnOK();
}
