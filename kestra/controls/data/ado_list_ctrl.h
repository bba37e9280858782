#pragma once
#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <kestra/controls/edit_list_ctrl.h>
#include <kestra/database/my_recordset_ptr.h>

namespace controls {
class RowCache;
}

/// The editable grid over a recordset: rows are read when they are seen, whatever the table's size.
///
/// What differs from what a reader may expect:
/// - the window is a virtual list (LVS_OWNERDATA, which `Create` adds and a dialog's control must have): it
///   holds no texts and no item data of its own, though it answers with the records' texts when asked;
/// - the list moves the recordset as it likes: whoever wants a record of it calls `MoveToRow` first;
/// - what is typed is kept here until the row is left, then the whole row is written; a row that the database
///   refuses stays current, with its words in a message box. Escape twice drops the row's changes;
/// - an empty text in a field that is no text becomes null;
/// - columns sort as the recordset does, by numbers and dates where the field holds them;
/// - a double click on a divider reads the whole table.
/// Failures of the database never leave the list: they are reported as `MyRecordsetPtr` does.
class KESTRA_API CAdoListCtrl : public CEditListCtrl {
  public:
    CAdoListCtrl();
    ~CAdoListCtrl() override;

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    BOOL Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id);

    /// Opens a table or a statement, makes the columns when there are none, and shows the records, editable
    /// when they can be written. Returns their number, -1 (and what was shown stays) when it cannot be
    /// opened.
    int Open(const char* source, _ConnectionPtr connection);
    /// The same with an open recordset, which becomes the list's: it is closed with it. Null: none.
    int SetRecordset(_RecordsetPtr recordset);
    /// A row header and one column a field, in place of the columns there are; returns their number.
    int MakeColumns();
    /// Ties a column that was made with `InsertColumn` to a field, by its name.
    int BindColumn(int col, const char* field);
    /// Reads everything anew that is shown.
    int ShowRecords();
    /// Makes a row the recordset's current record; false when it cannot be.
    bool MoveToRow(int row);
    /// Rows that were read from the recordset so far.
    std::int64_t RowsRead() const;

    MyRecordsetPtr m_Recordset;

    /// Sorts the recordset by a column (column + 1, negative for descending; 0 or a column without a field:
    /// as it was opened), or by an expression of the recordset ("NOM DESC, AGE"); the current record stays
    /// current. 0 when the database refuses.
    int SortColum(int col) override;
    virtual int SortColum(const char* expression);

    /// The layout below `g_RegTOREL_32` + "\\CadoListCtrl" with the recordset's sort expression in "ColSort".
    /// A recordset error while loading is reported as "***Erreur CAdoListCtrl::LoadHeadFromReg".
    int SaveHeadToReg(const char* name, HKEY* key) override;
    int LoadHeadFromReg(const char* name, int flags, HKEY* key) override;

    int UpdateItemCount() override;
    int onSelectAll() override;
    int DeleteItem(int row) override;
    int GetValue(int row, int col, CString& out) override;
    int GetSubItemValue(int col, CString& out) override;
    int SetSubItemValue(int col, CString value) override;
    int SetValue(int row, int col, CString value) override;
    int DataBaseIsEmpty() override;
    int UpdateBookmarks() override;
    int CancelUpdate() override;
    int AddNew() override;
    int UpdateEdit(int code) override;

  protected:
    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
    /// Reads a row of the recordset: one text a field.
    virtual bool ReadRow(int row, std::vector<std::string>& texts);

  private:
    bool isOpen();
    int records();
    int fieldOf(int col);
    bool isNewRow(int row) { return m_newRow && row == records(); }
    bool put(int field, const std::string& text);
    bool accepts(int row, int field, const std::string& text);
    bool storeRow();
    void dropRow();
    bool writeRow(bool adding);
    void tellRefusal();
    void applySort(const char* expression);
    void addColumn(int col, long field);

    std::unique_ptr<controls::RowCache> m_cache;
    std::vector<int> m_fields;             // field of each column, -1 for none; empty: to be found
    std::map<int, std::string> m_pending;  // texts typed into the current row, by field
    bool m_newRow = false;                 // the row behind the records is one to be added
    bool m_refusing = false;               // a refusal is being told
};
