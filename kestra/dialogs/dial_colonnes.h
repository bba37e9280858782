#pragma once
#include <windows.h>

#include <vector>

#include <platform/cstring.h>
#include <platform/export.h>
#include <platform/window/dialog.h>
#include <platform/window/list_control.h>

class CLraListCtrl;

/// Column chooser of a list: its columns from a first one on, in the order of the screen, each with a check
/// mark when it is shown. "Monter" and "Descendre" move the selected one, "Toutes" and "Aucune" set all
/// marks, "Largeur" is the width of the selected one in pixels. OK applies all of it, Cancel changes nothing.
///
/// A column hidden here remembers its width and comes back with it, at least 10 pixels wide; columns whose
/// mark and width are as they were keep their widths untouched. Columns before the first one offered stay
/// where they are on the screen. The list is not owned and may lose its window meanwhile: nothing is then
/// changed; of columns that have gone meanwhile nothing is applied.
class KESTRA_API CDialColonnes : public CDialog {
  public:
    /// `firstColumn` is the index of the first column offered; lower ones are fixed.
    CDialColonnes(CLraListCtrl* list, int firstColumn);

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    /// Takes its template from the library, whoever calls.
    INT_PTR DoModal() override;

  protected:
    BOOL OnInitDialog() override;
    void OnOK() override;
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override;

  private:
    struct Choice {
        int column;
        CString caption;
        int width;  // when shown
        bool widthChanged = false;
    };

    void addColumn(int column);
    void checkAll(bool on);
    void moveSelected(int step);
    void select(int row);
    int selected() const;
    void showWidth();
    void takeWidth();
    void applyWidth(const Choice& choice, bool show);
    void applyOrder();

    CLraListCtrl* m_list;
    int m_firstColumn;
    CListCtrl m_rows;
    std::vector<Choice> m_choices;  // of each row
    bool m_showing = false;         // the width, by this object
};
