#pragma once
#include <windows.h>

#include <kestra/controls/lra_list_ctrl.h>
#include <kestra/project/chantier.h>

/// The list of the window host: one row a variable line of a project and its includes, in file order until it
/// is sorted.
class VariableList : public CLraListCtrl {
  public:
    enum Column { section, name, value, file };

    /// Adds the columns. The window must be there.
    void addColumns();
    /// Shows the variables of a project in place of those shown before; returns their number, -1 (and the
    /// rows stay) when the project cannot be opened.
    int show(Cchantier& project);

    /// Sorts, and draws the arrow on the caption sorted by.
    int SortColum(int col) override;
};
