#pragma once
#include <kestra/controls/edit_list_ctrl.h>

/// Tells, after a call that may have destroyed anything, whether the grid and its window are still there.
/// Private to this folder.
class CEditListCtrl::Watch {
  public:
    explicit Watch(CEditListCtrl& grid) : m_grid(grid), m_life(grid.m_life), m_window(grid.m_hWnd) {}
    bool gone() const { return m_life.expired() || m_grid.m_hWnd != m_window || m_window == nullptr; }

  private:
    CEditListCtrl& m_grid;
    std::weak_ptr<bool> m_life;
    HWND m_window;
};
