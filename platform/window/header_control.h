#pragma once
#include <windows.h>
// after windows.h
#include <commctrl.h>

#include <platform/window/wnd.h>

/// The platform's header control. Items are counted from 0 in the order of their columns, whatever the order
/// on the screen is.
class DORSEL_API CHeaderCtrl : public CWnd {
  public:
    BOOL Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id);

    /// 0 without a window (the control's own -1 is never seen).
    int GetItemCount() const;
    /// `item.mask` says what is meant; false when there is no such item.
    BOOL GetItem(int index, HDITEMA& item) const;
    BOOL SetItem(int index, const HDITEMA& item);
    int InsertItem(int index, const HDITEMA& item);
    BOOL DeleteItem(int index);
    /// Place of an item in the header's client area; all zero when there is no such item.
    CRect GetItemRect(int index) const;
    /// Item at a display position.
    int OrderToIndex(int order) const {
        return static_cast<int>(SendMessage(HDM_ORDERTOINDEX, static_cast<WPARAM>(order)));
    }

    /// Draws an item with HDF_OWNERDRAW; the framework's own draws nothing.
    virtual void DrawItem(DRAWITEMSTRUCT* draw);

  protected:
    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
};
