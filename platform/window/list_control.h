#pragma once
#include <windows.h>
// after windows.h
#include <commctrl.h>

#include <platform/window/header_control.h>
#include <platform/window/wnd.h>

/// The platform's list view. Rows and columns count from 0; every operation on a missing window returns 0
/// (false, an empty text or rectangle), searches return -1.
class DORSEL_API CListCtrl : public CWnd {
  public:
    using CompareProc = int(CALLBACK*)(LPARAM first, LPARAM second, LPARAM context);

    BOOL Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id);
    /// The list's header window, null outside report view.
    HWND GetHeaderWindow() const { return reinterpret_cast<HWND>(SendMessage(LVM_GETHEADER)); }

    int GetItemCount() const { return static_cast<int>(SendMessage(LVM_GETITEMCOUNT)); }
    /// Next row behind `after` (-1: from the start) with the LVNI_ properties, -1 for none.
    int GetNextItem(int after, UINT flags) const;
    int InsertItem(const LVITEMA& item);
    BOOL SetItem(const LVITEMA& item);
    BOOL GetItem(LVITEMA& item) const;
    BOOL DeleteItem(int row) { return ask(LVM_DELETEITEM, row); }
    BOOL DeleteAllItems() { return ask(LVM_DELETEALLITEMS, 0); }

    /// Text of a cell, whatever its length; returns its length.
    int GetItemText(int row, int column, CString& text) const;
    BOOL SetItemText(int row, int column, const char* text);
    LPARAM GetItemData(int row) const;
    BOOL SetItemData(int row, LPARAM data);
    UINT GetItemState(int row, UINT mask) const;
    BOOL SetItemState(int row, UINT state, UINT mask);
    BOOL EnsureVisible(int row, BOOL partial);
    /// LVIR_ part of a row's place; false and all zero when there is no such row.
    BOOL GetItemRect(int row, RECT& rect, int part) const;
    BOOL GetSubItemRect(int row, int column, int part, RECT& rect) const;
    int SubItemHitTest(LVHITTESTINFO& hit) const;
    BOOL Scroll(CSize by);
    int GetCountPerPage() const { return ask(LVM_GETCOUNTPERPAGE, 0); }
    BOOL RedrawItems(int first, int last);
    BOOL SortItems(CompareProc compare, LPARAM context);

    int InsertColumn(int index, const LVCOLUMNA& column);
    BOOL GetColumn(int index, LVCOLUMNA& column) const;
    BOOL DeleteColumn(int index) { return ask(LVM_DELETECOLUMN, index); }
    int GetColumnWidth(int column) const { return ask(LVM_GETCOLUMNWIDTH, column); }
    BOOL SetColumnWidth(int column, int width);

    /// Gives the list an image list (LVSIL_ kind) and returns the one before; who owns them: `CImageList`.
    HIMAGELIST SetImageList(HIMAGELIST images, int kind);
    DWORD GetExtendedStyle() const;
    DWORD SetExtendedStyle(DWORD style);

    /// Draws a row of a list with LVS_OWNERDRAWFIXED; the framework's own draws nothing.
    virtual void DrawItem(DRAWITEMSTRUCT* draw);

  protected:
    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;

  private:
    int ask(UINT message, int index) const {
        return static_cast<int>(SendMessage(message, static_cast<WPARAM>(index)));
    }
};
