#pragma once
#include <functional>

#include <kestra/controls/edit_list_ctrl.h>

#include "ui_support.h"

/// A parent that is on the screen and hears of moved cells.
class GridParent : public CWnd {
  public:
    GridParent() {
        CWnd::Create(nullptr, "parent", WS_OVERLAPPEDWINDOW | WS_VISIBLE, {0, 0, 620, 420}, nullptr, 0);
        ::SetForegroundWindow(m_hWnd);
    }
    int moves = 0;
    std::function<void()> onMove = [] {};

  protected:
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override {
        if (HIWORD(wParam) != CEditListCtrl::cellMoved) return CWnd::OnCommand(wParam, lParam);
        ++moves;
        onMove();
        return TRUE;
    }
};

/// An editable grid of twenty rows "r0" ... with a row header, a left, a right, a centred, a check-box and a
/// last left column; cell (r, c) reads "r,c", check boxes are "1" in even rows.
class TestGrid : public CEditListCtrl {
  public:
    enum Column { header, left, right, center, check, last };

    explicit TestGrid(const CWnd& parent, int rows = 20) {
        CEditListCtrl::Create(WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS, {0, 0, 600, 300},
                              &parent, 77);
        SetExtendedStyle(LVS_EX_FULLROWSELECT);
        InsertColumn(header, "", LVCFMT_LEFT, 30, 0, 0);
        InsertColumn(left, "Nom", LVCFMT_LEFT, 90, 'T', 12);
        InsertColumn(right, "Compte", LVCFMT_RIGHT, 80, 'I', 0);
        InsertColumn(center, "Milieu", LVCFMT_CENTER, 80, 'D', 0);
        InsertColumn(check, "Fait", LVCFMT_CENTER, 40, 'B', 0);
        InsertColumn(last, "Fin", LVCFMT_LEFT, 90, 'T', 40);
        for (int row = 0; row < rows; ++row) {
            InsertItem(row, "");
            for (int col = left; col <= last; ++col) SetItemText(row, col, cellText(row, col).c_str());
        }
        m_LastFixedCol = 1;
        m_EditFlags = editable;
        Initialize(0);
    }
    static std::string cellText(int row, int col) {
        if (col == check) return row % 2 == 0 ? "1" : "0";
        return std::to_string(row) + "," + std::to_string(col);
    }
    std::string text(int row, int col) {
        CString cell;
        GetItemText(row, col, cell);
        return std::string(cell.view());
    }
    std::string edited() { return m_pActiveEditor != nullptr ? textOf(*m_pActiveEditor) : "no editor"; }
    std::string current() const { return std::to_string(m_FocusRow) + "," + std::to_string(m_FocusSubItem); }
    /// The rows that are selected, with blanks between.
    std::string selected() const {
        std::string all;
        for (int row = -1; (row = GetNextItem(row, LVNI_SELECTED)) >= 0;) all += std::to_string(row) + " ";
        return all;
    }
    void type(const char* typed) {
        m_pActiveEditor->SendMessage(EM_SETSEL, 0, -1);
        m_pActiveEditor->SendMessage(EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(typed));
    }
    /// Middle of a cell in the window.
    POINT middle(int row, int col) {
        CRect cell, caption = m_HeaderCtrl.GetItemRect(col);
        GetItemRect(row, cell, LVIR_BOUNDS);
        return {cell.left + (caption.left + caption.right) / 2, (cell.top + cell.bottom) / 2};
    }
    /// A click as the list tells its parent of it.
    void click(UINT code, int row, int col, POINT place) {
        NMITEMACTIVATE info = {};
        info.hdr = {m_hWnd, 77, code};
        info.iItem = row;
        info.iSubItem = col;
        info.ptAction = place;
        ::SendMessageA(GetParent(), WM_NOTIFY, 77, reinterpret_cast<LPARAM>(&info));
    }
    void click(int row, int col) { click(static_cast<UINT>(NM_CLICK), row, col, middle(row, col)); }
};
