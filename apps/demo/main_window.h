#pragma once
#include <windows.h>

#include <kestra/controls/record_button.h>
#include <kestra/database/my_recordset_ptr.h>
#include <platform/window/handles.h>
#include <platform/window/wnd.h>

#include "table_list.h"
#include "variable_list.h"

/// The host's window: a menu, and a list that fills it: the open project's variables, or a table.
class MainWindow : public CWnd {
  public:
    /// Creates the window, not shown yet; false when that fails.
    bool create();
    /// Makes a project file the default project and shows its variables; returns their number, -1 (after a
    /// message, and what was open stays) when there is no such project.
    int open(const char* path);
    /// Shows a table of a database beside the project; an empty name lets the user choose one. Returns the
    /// number of its records, -1 when there is nothing to show (the user was told, and what was shown stays).
    int openTable(const char* database, const char* table);

    VariableList m_list;
    TableList m_table;
    CRecordButton m_navigator;  ///< below the table

  protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    void chooseProject();
    void print();
    /// Lets the user choose projections and converts the points of the open table.
    void convert();
    /// The list that is shown.
    CLraListCtrl& shown();
    void show(CLraListCtrl& list);
    void placeLists();

    platform::UniqueGdi<HFONT> m_font;
    _ConnectionPtr m_connection;  ///< of the open table
    CString m_tableName;
};
