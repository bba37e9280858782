#pragma once
#include <windows.h>

#include <kestra/controls/lra_list_ctrl.h>
#include <kestra/database/my_recordset_ptr.h>

/// A table of a database: one column a field, one row a record, in the order of the database until it is
/// sorted.
class TableList : public CLraListCtrl {
  public:
    /// Shows the records in place of what was shown before and keeps them; returns their number, -1 (and what
    /// was shown stays) when the table cannot be opened.
    int show(const _ConnectionPtr& connection, const char* table);

    /// Has the recordset sorted, by numbers and dates where the field holds them, and shows it anew.
    int SortColum(int col) override;

  private:
    void addColumns();
    void showRows();

    MyRecordsetPtr m_records;
};
