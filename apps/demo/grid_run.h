#pragma once
#include "demo_run.h"

/// The second part of the demo: the table's grid under a script's real keys and mouse. The host names a place
/// in the file NAME.prete ("x y" on the screen) and waits; the script works there, takes the picture NAME.png
/// and deletes the file; the host then looks what came of it and writes it down in `rapport_grille.txt`.
class GridRun : public DemoRun {
  public:
    using DemoRun::DemoRun;
    /// Edits, adds, prints and deletes; 0 when each step did what it should, else 1.
    int run(const char* project);
    /// After a restart: the columns are as they were left.
    int again(const char* project);

  private:
    TableList& grid() { return m_window.m_table; }
    int finish();
    bool openPoints(const char* project);
    /// Lets the script work at a place of the grid's window.
    void step(const char* name, POINT place);
    POINT cell(int row, int col);
    CString stored(const char* query);
    void typeIntoCell();
    void leaveRow();
    void toggleCheck();
    void widenColumn();
    void printFromMenu();
    void addRow();
    void deleteRow();

    CString m_number;  // NUM of the row that is edited
};
