#pragma once
#include <windows.h>

#include <kestra/controls/data/ado_list_ctrl.h>
#include <platform/window/controls.h>

/// A combo box filled from a recordset, with an optional list that its owner drops beside it.
///
/// The layout, below `g_RegTOREL_32` + "\\CadoListCtrl" whatever the name holds, keeps the size of the
/// drop-down
/// ("ComboWidth", "ComboHeigth") and, through the list, its columns. The list is not owned and must outlive
/// the combo box or be taken away (`m_pList` null).
class KESTRA_API CAdoComboBox : public CComboBox {
  public:
    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    CAdoListCtrl* m_pList = nullptr;  ///< list of the drop-down; null for none
    CString m_RegName;                ///< name of the saved layout

    /// Fills the entries with a field's texts, in the recordset's order, in place of those there are; returns
    /// their number, 0 when the field cannot be read. Item data are the records' positions from 0.
    int Fill(MyRecordsetPtr& records, const char* field);
    /// Height of the combo box with its list dropped, in pixels.
    int GetDroppedHeight() const;
    int SetDroppedHeight(int height);

    /// A `name` that is not empty becomes `m_RegName` first. With a bit of 15 in `flags` the list saves its
    /// layout first (and forgets its name, so that it does not do so again at its end). The sizes are written
    /// only below a key that exists. Returns the list's result, 1 when it was not asked, 0 without a name.
    int SaveHeadToReg(const char* name, int flags);
    /// Loads the list's layout with `flags` (`CLraListCtrl::LoadHeadFromReg`), the width with 16, the height
    /// with 32. Returns the list's result.
    int LoadHeadFromReg(const char* name, int flags);
};
