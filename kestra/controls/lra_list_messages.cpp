#include <algorithm>
#include <cstdlib>

#include <kestra/controls/lra_list_ctrl.h>
#include <kestra/dialogs/dial_colonnes.h>
#include <platform/window/menu.h>
#include <platform/window/module_state.h>

// What a list does with the messages of its keys and of its header.

namespace {

constexpr std::int32_t optionSelectAll = 1;
constexpr int narrowestShown = 10;

enum HeaderCommand : int {
    sortDescending = 9,
    sortNone = 10,
    sortAscending = 11,
    chooseColumns = 20,
    showAll = 21,
};

struct MenuEntry {
    int command;
    const char* text;
};

constexpr MenuEntry sortEntries[] = {
    {sortAscending, "Tri Croissant"}, {sortDescending, "Tri Décroissant"}, {sortNone, "Pas de Tri"}};
constexpr MenuEntry columnEntries[] = {{chooseColumns, "Choisir les colonnes"},
                                       {showAll, "Afficher toutes les colonnes"}};

/// The platform's test is about rows; over the header some platforms find none, or only "above", where the
/// column is known all the same.
void completeOverHeader(const CHeaderCtrl& header, const POINT& screen, LVHITTESTINFO& hit) {
    if ((hit.flags & LVHT_ONITEMLABEL) != 0) return;
    HDHITTESTINFO place = {};
    place.pt = screen;
    header.ScreenToClient(&place.pt);
    const LRESULT item = header.SendMessage(HDM_HITTEST, 0, reinterpret_cast<LPARAM>(&place));
    hit.flags = item >= 0 ? LVHT_ONITEMLABEL : LVHT_NOWHERE;
    if (item >= 0) hit.iSubItem = static_cast<int>(item);
}

}  // namespace

LRESULT CLraListCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (m_HeaderCtrl.m_hWnd == nullptr) attachHeader();
    switch (message) {
        case WM_NOTIFY: {
            NMHEADERA& header = *reinterpret_cast<NMHEADERA*>(lParam);
            LRESULT result = 0;
            if (m_HeaderCtrl.m_hWnd != nullptr && header.hdr.hwndFrom == m_HeaderCtrl.m_hWnd &&
                onHeaderNotify(header, wParam, result)) {
                return result;
            }
            break;
        }
        case WM_KEYDOWN:
            if (wParam == 'A' && ::GetKeyState(VK_CONTROL) < 0 && (m_Options & optionSelectAll) != 0) {
                onSelectAll();
            }
            break;
        case WM_DESTROY:
            saveLayoutAtTheEnd();
            Initialize(1);
            releaseHeightImages();
            break;
        default:
            break;
    }
    return CListCtrl::WindowProc(message, wParam, lParam);
}

bool CLraListCtrl::onHeaderNotify(NMHEADERA& header, WPARAM wParam, LRESULT& result) {
    switch (header.hdr.code) {
        case HDN_ITEMCLICKA:
        case HDN_ITEMCLICKW:
            result = onHeaderClick(header, wParam);
            return true;
        case HDN_DIVIDERDBLCLICKA:
        case HDN_DIVIDERDBLCLICKW:
            OnHdnDividerdblclick(&header.hdr, &result);
            return true;
        case HDN_BEGINDRAG:
            // The platform's list would refuse every column that its own extended style does not let go.
            result = header.iItem == 0 ? 1 : 0;
            return true;
        case HDN_ENDDRAG:
            result = onHeaderEndDrag(header);
            return true;
        case NM_RCLICK:
            result = onHeaderRightClick();
            return true;
        default:
            return false;
    }
}

LRESULT CLraListCtrl::onHeaderClick(NMHEADERA& header, WPARAM wParam) {
    const int column = header.iItem + 1;
    const LRESULT byDefault = CListCtrl::WindowProc(WM_NOTIFY, wParam, reinterpret_cast<LPARAM>(&header));
    if (byDefault != 0) return byDefault;
    return SortColum(column == std::abs(m_ColSort) ? -m_ColSort : column);
}

LRESULT CLraListCtrl::onHeaderEndDrag(NMHEADERA& header) {
    header.iItem = std::max(header.iItem, 1);
    POINT cursor = {};
    ::GetCursorPos(&cursor);
    m_HeaderCtrl.ScreenToClient(&cursor);
    if (cursor.x < m_HeaderCtrl.GetItemRect(0).right) return 1;
    Invalidate();
    return 0;
}

LRESULT CLraListCtrl::onHeaderRightClick() {
    POINT screen = {};
    ::GetCursorPos(&screen);
    LVHITTESTINFO hit = {};
    hit.pt = screen;
    ScreenToClient(&hit.pt);
    SubItemHitTest(hit);
    completeOverHeader(m_HeaderCtrl, screen, hit);
    const AfxManageState resources(AfxGetStaticModuleState());
    return OnNM_RCLICK(hit, screen);
}

LRESULT CLraListCtrl::OnNM_RCLICK(LVHITTESTINFO& hit, POINT& screen) {
    CMenu menu;
    if (m_hWnd == nullptr || !menu.CreatePopupMenu()) return 0;
    fillHeaderMenu(menu);
    runHeaderCommand(menu.TrackPopupMenu(TPM_RETURNCMD | TPM_RIGHTBUTTON, screen, m_hWnd), hit);
    return 0;
}

void CLraListCtrl::fillHeaderMenu(CMenu& menu) const {
    const auto append = [&menu](const MenuEntry& entry) {
        menu.AppendMenu(MF_STRING, static_cast<UINT_PTR>(entry.command), entry.text);
    };
    for (const MenuEntry& entry : sortEntries) append(entry);
    menu.AppendSeparator();
    for (const MenuEntry& entry : columnEntries) append(entry);
}

void CLraListCtrl::runHeaderCommand(int command, const LVHITTESTINFO& hit) {
    switch (command) {
        case sortAscending:
        case sortDescending:
        case sortNone:
            // Kept: one formula for the three entries. "Pas de Tri" sorts column 0; "Tri Décroissant" sorts
            // column 0 ascending from column 0, nothing from column 1, and the column before last beyond.
            if ((hit.flags & LVHT_ONITEMLABEL) != 0) SortColum((command - sortNone) * hit.iSubItem + 1);
            break;
        case chooseColumns:
            if ((hit.flags & (LVHT_NOWHERE | LVHT_ONITEMLABEL)) != 0) {
                CDialColonnes(this, m_LastFixedCol + 1).DoModal();
            }
            break;
        case showAll:
            showAllColumns();
            break;
        default:
            break;
    }
}

void CLraListCtrl::showAllColumns() {
    GetMyListHeader(0);
    for (int col = m_LastFixedCol + 1; col < m_nColumns; ++col) {
        SetColumnWidth(col, std::max(std::abs(GetColumnWidth(col)), narrowestShown));
    }
    Invalidate();
}
