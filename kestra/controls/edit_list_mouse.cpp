#include <kestra/controls/edit_list_ctrl.h>
#include <kestra/controls/grid_rules.h>
#include <kestra/controls/grid_watch.h>
#include <platform/window/menu.h>
#include <platform/window/module_state.h>

// Clicks into a grid, and its menu.

namespace {

constexpr UINT current = LVIS_SELECTED | LVIS_FOCUSED;
constexpr int linesPerPage = 60;
constexpr int onlySelection = 1;

bool isClick(UINT code) {
    return code == NM_CLICK || code == NM_DBLCLK || code == NM_RCLICK;
}

}  // namespace

BOOL CEditListCtrl::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    if (message == WM_NOTIFY && isClick(reinterpret_cast<const NMHDR*>(lParam)->code)) {
        const Watch watch(*this);
        onClick(*reinterpret_cast<NMITEMACTIVATE*>(lParam));
        if (watch.gone()) {
            // The parent may be gone too: it must not go on.
            *result = 0;
            return TRUE;
        }
    }
    return CLraListCtrl::OnChildNotify(message, wParam, lParam, result);
}

void CEditListCtrl::onClick(NMITEMACTIVATE& info) {
    Initialize(0);
    if (::GetKeyState(VK_CONTROL) < 0 || ::GetKeyState(VK_SHIFT) < 0) return;
    const Watch watch(*this);
    POINT click = info.ptAction;
    SetCurrentSubItem(info.iItem, info.iSubItem, &click);
    if (!watch.gone() && info.hdr.code == NM_RCLICK) onRightClick(info);
}

void CEditListCtrl::onRightClick(NMITEMACTIVATE& info) {
    const Watch watch(*this);
    LVHITTESTINFO hit = {};
    hit.pt = info.ptAction;
    SubItemHitTest(hit);
    const UINT states = hit.iItem >= 0 ? GetItemState(hit.iItem, current) : 0;
    if ((hit.flags & LVHT_ONITEMLABEL) != 0 && states != 0 && hit.iItem != m_FocusRow) {
        const int former = m_FocusRow;
        const bool keepFormer = former >= 0 && (states & GetItemState(former, current) & LVIS_SELECTED) != 0;
        SetCurrentSubItem(hit.iItem, 0);
        if (watch.gone()) return;
        SetItemState(hit.iItem, current, current);
        if (keepFormer) SetItemState(former, LVIS_SELECTED, LVIS_SELECTED);
        Invalidate();
    }
    if ((m_GridOptions & noMenu) != 0) return;
    CMenu menu;
    OnRClickMenu(menu, controls::gridMenuFlags(m_EditFlags != 0, info.iSubItem), &info, nullptr, 0);
}

int CEditListCtrl::OnRClickMenu(CMenu& menu, int flags, NMITEMACTIVATE* info, const char* title,
                                int command) {
    if (m_hWnd == nullptr) return 0;
    const AfxManageState resources(AfxGetStaticModuleState());
    if (info != nullptr) {
        if (menu.GetSafeHmenu() == nullptr) menu.CreatePopupMenu();
        for (const auto& entry : controls::gridMenu(flags, m_EditFlags != 0, info->iSubItem)) {
            if (entry.text != nullptr) {
                menu.AppendMenu(MF_STRING, static_cast<UINT_PTR>(entry.command), entry.text);
            } else {
                menu.AppendSeparator();
            }
        }
    }
    if ((flags & controls::menuTrack) != 0) {
        const Watch watch(*this);
        POINT cursor = {};
        ::GetCursorPos(&cursor);
        command = menu.TrackPopupMenu(TPM_RETURNCMD | TPM_RIGHTBUTTON, cursor, m_hWnd);
        if (watch.gone()) return 0;
    }
    runCommand(command, title);
    return command;
}

void CEditListCtrl::runCommand(int command, const char* title) {
    CString text(title);
    switch (command) {
        case controls::gridAddRow:
            AddNew();
            break;
        case controls::gridDeleteRows:
            Delete();
            break;
        case controls::gridPrintSelection:
        case controls::gridPrintAll:
            PrintToHtml(nullptr, linesPerPage, text,
                        command == controls::gridPrintSelection ? onlySelection : 0);
            break;
        case controls::gridCopySelection:
        case controls::gridCopyAll:
            CopyToClipBoard(command == controls::gridCopySelection ? onlySelection : 0);
            break;
        default:
            break;
    }
}
