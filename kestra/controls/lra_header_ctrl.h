#pragma once
#include <windows.h>

#include <platform/export.h>
#include <platform/window/header_control.h>

class CLraListCtrl;

/// The header of a `CLraListCtrl`: as high as the captions with most lines need it, with captions that may be
/// drawn by this object together with the sort arrow.
///
/// What differs from what a reader may expect:
/// - captions are drawn here only for items with HDF_OWNERDRAW (`SetOwnerDraw`; the list's `InsertColumn`
///   sets it for its columns);
/// - the height is computed at the first layout request and never again by itself: call `CalculHeight` when
///   captions have changed (the list's `InsertColumn` does it for a caption with more lines);
/// - the header of a list releases a column's record when its item is deleted, when the window is destroyed
///   and when this object goes before the window.
/// Captions are Windows-1252, items count from 0 in the order of the columns, sizes are pixels. Every
/// operation on a missing window returns 0.
class KESTRA_API CLraHeaderCtrl : public CHeaderCtrl {
  public:
    ~CLraHeaderCtrl() override;

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    int m_SortCol = 0;  ///< arrow to draw: column + 1, negative for descending, 0 for none
    int m_Height = 0;   ///< of the header; 0 while not computed
    int m_nLines = 1;   ///< most lines among the captions

    /// Computes `m_nLines` (one more than the line feeds of the caption that has most, in its first 250
    /// characters) and `m_Height` for that many lines of the header's font; returns the height.
    int CalculHeight();
    /// Answers a layout request (`layout` is the address of an HDLAYOUT); returns 1.
    int GetLayout(WPARAM wParam, LPARAM layout);
    /// Sets or clears HDF_OWNERDRAW on every item; returns the number of items.
    int SetOwnerDraw(int on);
    /// Draws one caption: a push button, the text (at most 254 characters) and, on the sorted column when it
    /// is wider than 12 pixels, the arrow: pointing down for ascending, up for descending.
    void DrawItem(DRAWITEMSTRUCT* draw) override;

    /// Fills `buffer` with a caption, ended by NUL; returns `size`, 0 when there is no buffer.
    int GetItemText(int item, char* buffer, int size);
    /// Sets a caption; returns its length in bytes, 0 when there is no text.
    int SetItemText(int item, const char* text);
    /// Display position of an item; 0 for a negative index.
    int GetItemOrder(int item);
    /// Deletes the items from the last one down to item 1: item 0 stays. Returns 1.
    int DeleteAllItems();

  protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    friend class CLraListCtrl;
    int linesOfCaption(int item);
    void drawArrow(HDC dc, RECT rect) const;
    void releaseRecords();

    bool m_holdsRecords = false;  // the application values of the items are the owning list's column records
};
