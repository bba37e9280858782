#include <kestra/controls/data/ado_list_ctrl.h>
#include <kestra/controls/data/row_cache.h>
#include <platform/prompt.h>

// What is typed into a data-bound list, added to it and deleted from it.

namespace {

constexpr int cancelOnError = 1;

bool isText(ado20::DataTypeEnum type) {
    switch (type) {
        case ado20::adChar:
        case ado20::adWChar:
        case ado20::adVarChar:
        case ado20::adVarWChar:
        case ado20::adLongVarChar:
        case ado20::adLongVarWChar:
            return true;
        default:
            return false;
    }
}

}  // namespace

/// Puts a text into a field of the recordset's current record.
bool CAdoListCtrl::put(int index, const std::string& text) {
    try {
        const ado20::FieldPtr field = m_Recordset.m_pRecordset->GetFields()->GetItem(long{index});
        const bool toNull = text.empty() && !isText(field->GetType());
        field->PutValue(toNull ? ado20::Variant::null() : ado20::Variant(text));
        return true;
    } catch (const _com_error& error) {
        m_Recordset.m_LastError.SetError(error);
        return false;
    }
}

/// Whether a field takes a text; nothing is left pending in the recordset.
bool CAdoListCtrl::accepts(int row, int field, const std::string& text) {
    const bool adding = isNewRow(row);
    if (adding ? m_Recordset.AddNew() < 0 : !MoveToRow(row)) return false;
    const bool taken = put(field, text);
    m_Recordset.CancelUpdate();
    if (adding) m_Recordset.m_Position = -1;
    return taken;
}

int CAdoListCtrl::GetSubItemValue(int col, CString& out) {
    return fieldOf(col) < 0 ? noValue : GetValue(m_FocusRow, col, out);
}

int CAdoListCtrl::SetSubItemValue(int col, CString value) {
    return SetValue(m_FocusRow, col, std::move(value));
}

int CAdoListCtrl::SetValue(int row, int col, CString value) {
    const int field = fieldOf(col);
    const std::string text(value.view());
    if (field < 0 || row < 0 || row >= records() + (m_newRow ? 1 : 0)) return 0;
    if (row == m_FocusRow && m_EditFlags != 0) {
        if (!accepts(row, field, text)) return 0;
        m_pending[field] = text;
        return 1;
    }
    if (!MoveToRow(row)) return 0;
    const bool stored = put(field, text) && m_Recordset.Update(cancelOnError) >= 0;
    if (!stored) m_Recordset.CancelUpdate();
    m_cache->forget(row);
    RedrawItems(row, row);
    return stored ? 1 : 0;
}

int CAdoListCtrl::UpdateEdit(int code) {
    if (m_EditFlags == 0) return 1;
    const int answer = CEditListCtrl::UpdateEdit(code & ~dropEditor);
    if (answer == 0 || m_hWnd == nullptr) return 0;
    if ((code & commitRow) != 0 && !storeRow()) return 0;
    if ((code & dropEditor) != 0 && CEditListCtrl::UpdateEdit(dropEditor) == 0) return 0;
    return answer;
}

/// Writes what was typed into the current row; a new row without anything typed goes.
bool CAdoListCtrl::storeRow() {
    if (m_refusing) return false;
    const bool adding = m_newRow;
    if (!m_pending.empty() && !writeRow(adding)) {
        tellRefusal();
        return false;
    }
    const int row = m_FocusRow;
    dropRow();
    m_cache->forget(row);
    if (adding) UpdateItemCount();
    return true;
}

bool CAdoListCtrl::writeRow(bool adding) {
    if (adding ? m_Recordset.AddNew() < 0 : !MoveToRow(m_FocusRow)) return false;
    bool written = true;
    for (const auto& [field, text] : m_pending) written = written && put(field, text);
    written = written && m_Recordset.Update(cancelOnError) >= 0;
    if (!written) m_Recordset.CancelUpdate();
    // Where the record stands is the recordset's to say once it was written or added.
    m_Recordset.m_Position = -1;
    return written;
}

void CAdoListCtrl::tellRefusal() {
    m_refusing = true;
    ::AfxMessageBox(m_Recordset.m_LastError.m_Description, platform::iconExclamation);
    m_refusing = false;
}

/// Forgets what was typed into the current row, and a row to be added.
void CAdoListCtrl::dropRow() {
    m_pending.clear();
    m_newRow = false;
}

int CAdoListCtrl::CancelUpdate() {
    const bool adding = m_newRow;
    dropRow();
    m_EditFlags &= ~rowChanged;
    if (adding) UpdateItemCount();
    if (m_FocusRow >= 0) RedrawItems(m_FocusRow, m_FocusRow);
    // The cell is to be entered anew, with what the record holds.
    return -1;
}

int CAdoListCtrl::AddNew() {
    if (m_EditFlags == 0 || !isOpen() || !m_Recordset.m_pRecordset->Supports(ado20::adAddNew)) return 0;
    if (UpdateEdit(commitAll) == 0 || m_hWnd == nullptr) return 0;
    SetItemState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    m_FocusRow = m_FocusSubItem = -1;
    m_newRow = true;
    const int count = UpdateItemCount();
    Invalidate();
    SetCurrentSubItem(count - 1, m_LastFixedCol);
    m_PendingFlags |= rowAdded;
    return 1;
}

int CAdoListCtrl::DeleteItem(int row) {
    if (isNewRow(row)) {
        dropRow();
        return 1;
    }
    if (!MoveToRow(row)) return 0;
    try {
        m_Recordset.m_pRecordset->Delete();
    } catch (const _com_error& error) {
        m_Recordset.Erreur(error, "CAdoListCtrl::DeleteItem");
        return 0;
    }
    UpdateBookmarks();
    return 1;
}
