#include <algorithm>

#include <kestra/controls/column_record.h>
#include <kestra/controls/edit_list_ctrl.h>
#include <kestra/controls/grid_keys.h>
#include <kestra/controls/grid_rules.h>
#include <kestra/controls/grid_watch.h>
#include <platform/prompt.h>

// The editors over the current cell of a grid, and what becomes of what was typed.

namespace {

constexpr UINT firstEditorId = 0x7001;
/// Longest text of columns whose type sets no limit of its own.
constexpr int usualLimit = 50;
/// Room that is kept between the edited cell and the edge of the window.
constexpr LONG scrollMargin = 4;
constexpr int longestCaption = 255;

bool holdsWholeNumbers(int type) {
    return type == 'I' || type == 'B';
}

bool setsItsLimit(int type) {
    return type == 'T' || type == 'N';
}

bool isComboBox(HWND window) {
    char name[16] = "";
    ::GetClassNameA(window, name, sizeof name);
    return ::lstrcmpiA(name, "ComboBox") == 0;
}

void putText(CWnd& editor, const char* text) {
    editor.SetWindowText(text);
    if (!isComboBox(editor)) return;
    const LRESULT entry =
        editor.SendMessage(CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text));
    const DWORD kind = editor.GetStyle() & (CBS_SIMPLE | CBS_DROPDOWN | CBS_DROPDOWNLIST);
    if (entry >= 0 || kind == CBS_DROPDOWNLIST) editor.SendMessage(CB_SETCURSEL, static_cast<WPARAM>(entry));
}

bool isShown(const CWnd& editor) {
    return (editor.GetStyle() & WS_VISIBLE) != 0;
}

}  // namespace

void CEditListCtrl::createEditors() {
    if (m_LeftEditor.m_hWnd != nullptr) return;
    ModifyStyle(0, WS_CLIPCHILDREN);
    const auto create = [this](CEdit& editor, DWORD alignment, UINT id) {
        editor.Create(WS_CHILD | WS_BORDER | ES_AUTOHSCROLL | alignment, {}, this, id);
        editor.SetFont(GetFont());
    };
    create(m_LeftEditor, ES_LEFT, firstEditorId);
    create(m_RightEditor, ES_RIGHT, firstEditorId + 1);
    create(m_CenterEditor, ES_CENTER, firstEditorId + 2);
}

/// The editor in use; null, and forgotten, when its object or its window went meanwhile.
CWnd* CEditListCtrl::activeEditor() {
    if (m_pActiveEditor != nullptr &&
        (!::IsWindow(m_editorWindow) || CWnd::FromHandlePermanent(m_editorWindow) != m_pActiveEditor)) {
        forgetEditor();
    }
    return m_pActiveEditor;
}

/// Record of the edited column; null, and forgotten, when its column went meanwhile.
CLraListCtrl::LraListColum* CEditListCtrl::currentRecord() {
    if (m_pCurCol == nullptr) return nullptr;
    for (int item = m_HeaderCtrl.GetItemCount() - 1; item >= 0; --item) {
        if (controls::recordOf(m_HeaderCtrl, item) == m_pCurCol) return m_pCurCol;
    }
    m_pCurCol = nullptr;
    hideEditor();
    forgetEditor();
    return nullptr;
}

void CEditListCtrl::useEditor(int row, int col) {
    forgetEditor();
    m_pCurCol = GetMyListHeader(col);
    if (m_pCurCol == nullptr) return;
    Initialize(0);
    m_pActiveEditor = editorFor(col, *m_pCurCol);
    m_editorWindow = m_pActiveEditor->m_hWnd;
    if (m_pActiveEditor != m_pCurCol->pEditWnd) prepareEditor(*m_pActiveEditor, *m_pCurCol);
    scrollToColumn(row, col);
}

CWnd* CEditListCtrl::editorFor(int col, const LraListColum& record) {
    if (record.pEditWnd != nullptr && record.pEditWnd->m_hWnd != nullptr) return record.pEditWnd;
    LVCOLUMNA column = {};
    column.mask = LVCF_FMT;
    GetColumn(col, column);
    switch (column.fmt & LVCFMT_JUSTIFYMASK) {
        case LVCFMT_RIGHT:
            return &m_RightEditor;
        case LVCFMT_CENTER:
            return &m_CenterEditor;
        default:
            return &m_LeftEditor;
    }
}

void CEditListCtrl::prepareEditor(CWnd& editor, const LraListColum& record) {
    editor.ModifyStyle(ES_NUMBER | ES_READONLY, holdsWholeNumbers(record.FtypeData) ? ES_NUMBER : 0);
    if (record.ColStyle >= controls::comboColumn) return;
    const int limit = setsItsLimit(record.FtypeData) ? record.nParam : usualLimit;
    editor.SendMessage(EM_LIMITTEXT, static_cast<WPARAM>(std::max(limit, 0)));
    editor.SendMessage(EM_SETREADONLY, static_cast<WPARAM>(record.ReadOnly & 1));
}

void CEditListCtrl::fillEditor(int col) {
    const Watch watch(*this);
    if (activeEditor() == nullptr) return;
    m_EditFlags |= cellInEditor;
    CString text;
    const int bits = GetSubItemValue(col, text);
    if (watch.gone()) return;
    if (bits == noValue) {
        UpdateEdit(dropEditor);
        return;
    }
    if (CWnd* const editor = activeEditor()) {
        putText(*editor, text);
        editor->SendMessage(EM_SETSEL, 0, -1);
    }
}

CRect CEditListCtrl::cellRect(int row, int col) const {
    CRect cell;
    if (!GetItemRect(row, cell, LVIR_BOUNDS)) return {};
    const CRect caption = m_HeaderCtrl.GetItemRect(col);
    cell.right = cell.left + caption.right;
    cell.left += caption.left;
    return cell;
}

/// Scrolls sideways until the cell lies wholly in the window; a cell that is wider shows its left end.
void CEditListCtrl::scrollToColumn(int row, int col) {
    const CRect cell = cellRect(row, col);
    const LONG right = GetClientRect().right;
    LONG by = std::max<LONG>(0, cell.right + scrollMargin - right);
    if (cell.left - by < scrollMargin) by = cell.left - scrollMargin;
    // The first column cannot be moved away from the edge.
    if (by != 0 && (by > 0 || cell.left < 0)) Scroll({by, 0});
}

/// Puts the editor over its cell, out of sight while the cell is, and gives it the grid's focus.
void CEditListCtrl::placeEditor() {
    CWnd* const editor = activeEditor();
    const LraListColum* const record = currentRecord();
    if (editor == nullptr || record == nullptr || (m_EditFlags & cellInEditor) == 0) return;
    if (record->ColStyle == controls::checkBoxColumn) return;
    CRect cell = cellRect(m_FocusRow, m_FocusSubItem);
    const CRect header = m_HeaderCtrl.GetWindowRect();
    if (cell.top < header.Height()) cell.OffsetRect(0, -10000);
    const CRect before = editor->GetWindowRect();
    POINT place = {before.left, before.top};
    ScreenToClient(&place);
    const bool moved = place.x != cell.left || place.y != cell.top || before.Width() != cell.Width() ||
                       before.Height() != cell.Height();
    if (moved && isComboBox(*editor)) {
        editor->SetWindowPos(nullptr, cell.left, cell.top, cell.Width(), 0,
                             SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOSIZE);
        editor->SetWindowPos(nullptr, 0, 0, cell.Width(), before.Height(),
                             SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    } else if (moved) {
        editor->SetWindowPos(nullptr, cell.left, cell.top, cell.Width(), cell.Height(),
                             SWP_NOZORDER | SWP_NOACTIVATE);
    }
    if (!isShown(*editor)) editor->ShowWindow(SW_SHOWNA);
    if (::GetFocus() == m_hWnd) focusEditor(*editor);
}

/// An editor may hand the focus back; it is offered once.
void CEditListCtrl::focusEditor(CWnd& editor) {
    if (m_focusOnItsWay) return;
    const Watch watch(*this);
    m_focusOnItsWay = true;
    editor.SetFocus();
    if (!watch.gone()) m_focusOnItsWay = false;
}

void CEditListCtrl::hideEditor() {
    const Watch watch(*this);
    CWnd* const editor = activeEditor();
    if (editor == nullptr) return;
    const HWND focus = ::GetFocus();
    if (focus == m_editorWindow || ::IsChild(m_editorWindow, focus)) {
        m_focusOnItsWay = true;
        SetFocus();
        if (watch.gone()) return;
        m_focusOnItsWay = false;
    }
    if (CWnd* const still = activeEditor()) still->ShowWindow(SW_HIDE);
    if (!watch.gone()) m_EditFlags &= ~cellInEditor;
}

void CEditListCtrl::forgetEditor() {
    m_pActiveEditor = nullptr;
    m_editorWindow = nullptr;
    m_EditFlags &= ~cellInEditor;
}

int CEditListCtrl::UpdateEdit(int code) {
    if (m_EditFlags == 0) return 1;
    const Watch watch(*this);
    int answer = 1;
    if ((code & commitCell) != 0) {
        answer = storeEdited();
        if (answer == 0 || watch.gone()) return 0;
    }
    if ((code & dropEditor) != 0) {
        hideEditor();
        if (watch.gone()) return 0;
        forgetEditor();
    }
    return answer;
}

/// 3 stored, 1 nothing to store, 0 refused.
int CEditListCtrl::storeEdited() {
    const Watch watch(*this);
    CWnd* const editor = activeEditor();
    const int col = m_FocusSubItem;
    if (editor == nullptr || !isShown(*editor) || currentRecord() == nullptr || col < 0) return 1;
    m_nEscapes = 0;
    // The row vanished under the editor: there is no cell left that could take the text.
    if (m_FocusRow >= GetItemCount()) return UpdateEdit(dropEditor);
    CString typed, stored;
    editor->GetWindowText(typed);
    GetSubItemValue(col, stored);
    if (watch.gone()) return 0;
    if (typed == stored) return 1;
    const bool accepted = SetSubItemValue(col, typed) != 0;
    if (watch.gone()) return 0;
    if (accepted) {
        m_EditFlags |= rowChanged;
        return 3;
    }
    char caption[longestCaption + 1] = "";
    m_HeaderCtrl.GetItemText(col, caption, sizeof caption);
    CString message;
    message.Format("Problème de Données sur '%s'", caption);
    ::AfxMessageBox(message);
    return 0;
}

/// The check box of the current cell becomes the other one, as far as its column may be edited.
bool CEditListCtrl::toggleCheck() {
    const Watch watch(*this);
    const LraListColum* const record = currentRecord();
    if (record == nullptr || (record->ReadOnly & 1) != 0) return false;
    CString value;
    GetSubItemValue(m_FocusSubItem, value);
    if (watch.gone()) return false;
    const CString toggled(controls::toggledCheck(value.view()));
    const bool stored = SetSubItemValue(m_FocusSubItem, toggled) != 0;
    if (watch.gone() || !stored) return false;
    m_EditFlags |= rowChanged;
    if (CWnd* const editor = activeEditor()) putText(*editor, toggled);
    RedrawItems(m_FocusRow, m_FocusRow);
    return true;
}

void CEditListCtrl::toggleByClick(const POINT& click) {
    const LraListColum* const record = currentRecord();
    if (record == nullptr || record->ColStyle != controls::checkBoxColumn || activeEditor() == nullptr)
        return;
    const CRect cell = cellRect(m_FocusRow, m_FocusSubItem);
    const controls::CheckClick hit{static_cast<int>(click.x - (cell.left + cell.right) / 2),
                                   static_cast<int>(click.y - (cell.top + cell.bottom) / 2), m_FocusSubItem,
                                   m_ItemHeight};
    if (controls::hitsCheckBox(hit)) toggleCheck();
}

int CEditListCtrl::SetEditSel(int start, int end) {
    CWnd* const editor = activeEditor();
    if (editor == nullptr || !isShown(*editor)) return 0;
    focusEditor(*editor);
    if (CWnd* const still = activeEditor()) {
        const bool combo = isComboBox(*still);
        still->SendMessage(combo ? CB_SETEDITSEL : EM_SETSEL, combo ? 0 : static_cast<WPARAM>(start),
                           combo ? MAKELPARAM(start, std::min(end, 0x7FFF)) : end);
    }
    return 1;
}
