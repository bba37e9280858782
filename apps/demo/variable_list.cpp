#include "variable_list.h"

#include <dorsel/paths.h>
#include <kestra/project/reading/variable_list.h>

namespace {

struct ColumnSetting {
    const char* caption;
    int width;
};
constexpr ColumnSetting columns[] = {{"Section", 90}, {"Nom", 130}, {"Valeur", 150}, {"Fichier", 190}};

CString joined(const CStringArray& values) {
    CString text;
    for (int i = 0; i < values.GetSize(); ++i) {
        if (i > 0) text += " ; ";
        text += values[i];
    }
    return text;
}

}  // namespace

void VariableList::addColumns() {
    int index = 0;
    for (const ColumnSetting& column : columns)
        InsertColumn(index++, column.caption, LVCFMT_LEFT, column.width, 0, 0);
}

int VariableList::show(Cchantier& project) {
    if (project.Open() == nullptr) return -1;
    SendMessage(WM_SETREDRAW, FALSE);
    DeleteAllItems();
    const int count = VisitVariables(project, [this](const ProjectVariable& variable) {
        const int row = InsertItem(GetItemCount(), variable.section);
        SetItemText(row, name, variable.name);
        SetItemText(row, value, joined(variable.values));
        SetItemText(row, file, DOS::GetPName(variable.file, "NE"));
        return true;
    });
    GetHeaderCtrl()->m_SortCol = 0;
    SendMessage(WM_SETREDRAW, TRUE);
    UpdateItemCount();
    Invalidate();
    return count;
}

int VariableList::SortColum(int col) {
    const int sorted = CLraListCtrl::SortColum(col);
    GetHeaderCtrl()->m_SortCol = m_ColSort;
    GetHeaderCtrl()->Invalidate();
    return sorted;
}
