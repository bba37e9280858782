#pragma once
#include <windows.h>

#include <vector>

#include <platform/export.h>
#include <platform/window/dialog.h>
#include <platform/window/list_control.h>

class CLraListCtrl;

/// Column chooser of a list: its columns from a first one on, in the order of the screen, each with a check
/// mark when it is shown. OK hides and shows them, Cancel changes nothing.
///
/// A column hidden here remembers its width and comes back with it, at least 10 pixels wide; columns whose
/// mark is as it was keep their widths untouched. The list is not owned and may lose its window meanwhile:
/// nothing is then changed.
class KESTRA_API CDialColonnes : public CDialog {
  public:
    /// `firstColumn` is the index of the first column offered; lower ones are fixed.
    CDialColonnes(CLraListCtrl* list, int firstColumn);

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

  protected:
    BOOL OnInitDialog() override;
    void OnOK() override;
    void DoDataExchange(CDataExchange* exchange) override;

  private:
    void addColumn(int column);

    CLraListCtrl* m_list;
    int m_firstColumn;
    CListCtrl m_choices;
    std::vector<int> m_offered;  // column of each row of the choices
};
