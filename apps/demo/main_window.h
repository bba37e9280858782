#pragma once
#include <windows.h>

#include <platform/window/handles.h>
#include <platform/window/wnd.h>

#include "variable_list.h"

/// The host's window: a menu, and the list of the open project's variables, which fills it.
class MainWindow : public CWnd {
  public:
    /// Creates the window, not shown yet; false when that fails.
    bool create();
    /// Makes a project file the default project and shows its variables; returns their number, -1 (after a
    /// message, and what was open stays) when there is no such project.
    int open(const char* path);

    VariableList m_list;

  protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    void chooseProject();
    void print();

    platform::UniqueGdi<HFONT> m_font;
};
