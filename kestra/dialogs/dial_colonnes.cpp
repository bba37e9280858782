#include <kestra/dialogs/dial_colonnes.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include <kestra/controls/lra_list_ctrl.h>
#include <kestra/dialogs/resource.h>

namespace {

constexpr int narrowestShown = 10;
constexpr int captionRoom = 255;

/// A caption on one line.
CString captionOf(CLraHeaderCtrl& header, int column) {
    std::array<char, captionRoom> caption = {};
    header.GetItemText(column, caption.data(), captionRoom);
    std::replace(caption.begin(), caption.end(), '\n', ' ');
    return caption.data();
}

bool isChecked(const CListCtrl& choices, int row) {
    return (choices.GetItemState(row, LVIS_STATEIMAGEMASK) >> 12) == 2;
}

void check(CListCtrl& choices, int row, bool on) {
    choices.SetItemState(row, static_cast<UINT>(INDEXTOSTATEIMAGEMASK(on ? 2 : 1)), LVIS_STATEIMAGEMASK);
}

}  // namespace

const CRuntimeClass CDialColonnes::runtimeClass{"CDialColonnes", &CDialog::runtimeClass};

CDialColonnes::CDialColonnes(CLraListCtrl* list, int firstColumn)
    : CDialog(IDD_COLONNES, list), m_list(list), m_firstColumn(std::max(firstColumn, 0)) {}

void CDialColonnes::DoDataExchange(CDataExchange* exchange) {
    DDX_Control(exchange, IDC_COLONNES_LISTE, m_choices);
}

BOOL CDialColonnes::OnInitDialog() {
    CDialog::OnInitDialog();
    m_choices.SetExtendedStyle(LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    LVCOLUMNA only = {};
    only.mask = LVCF_WIDTH;
    only.cx = m_choices.GetClientRect().Width() - ::GetSystemMetrics(SM_CXVSCROLL);
    m_choices.InsertColumn(0, only);
    m_offered.clear();
    CLraHeaderCtrl& header = *m_list->GetHeaderCtrl();
    for (int order = 0; order < header.GetItemCount(); ++order) {
        const int column = header.OrderToIndex(order);
        if (column >= m_firstColumn) addColumn(column);
    }
    return TRUE;
}

void CDialColonnes::addColumn(int column) {
    const CString caption = captionOf(*m_list->GetHeaderCtrl(), column);
    LVITEMA item = {};
    item.mask = LVIF_TEXT;
    item.iItem = static_cast<int>(m_offered.size());
    item.pszText = const_cast<char*>(caption.GetString());
    const int row = m_choices.InsertItem(item);
    if (row < 0) return;
    m_offered.push_back(column);
    check(m_choices, row, m_list->GetColumnWidth(column) > 0);
}

void CDialColonnes::OnOK() {
    for (std::size_t row = 0; row < m_offered.size(); ++row) {
        const int column = m_offered[row];
        const int width = m_list->GetColumnWidth(column);
        const bool show = isChecked(m_choices, static_cast<int>(row));
        if (show && width <= 0) m_list->SetColumnWidth(column, std::max(std::abs(width), narrowestShown));
        if (!show && width > 0) m_list->SetColumnWidth(column, -width);
    }
    m_list->Invalidate();
    CDialog::OnOK();
}
