#pragma once
#include <windows.h>

#include <kestra/controls/data/ado_list_ctrl.h>

/// The grid of the window host: a table of a database, edited in place. Its columns come back as the user
/// left them, under the table's name.
class TableList : public CAdoListCtrl {
  public:
    /// Shows the records in place of what was shown before; returns their number, -1 (and what was shown
    /// stays) when the table cannot be opened, or a row could not be saved.
    int show(const _ConnectionPtr& connection, const char* table);
};
