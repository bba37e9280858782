#pragma once
#include <windows.h>
// after windows.h
#include <commctrl.h>

#include <platform/export.h>
#include <platform/window/handles.h>

/// An image list that this object owns, destroyed with it unless it was detached. A list view takes over the
/// image lists it is given (and destroys them with itself) unless it has the style LVS_SHAREIMAGELISTS.
class DORSEL_API CImageList {
  public:
    /// Images of `width` by `height` pixels; `flags` as ILC_ constants. Replaces the list held; false when
    /// it cannot be had.
    BOOL Create(int width, int height, UINT flags, int initial, int grow);
    /// Index of the added bitmap (copied; pixels of colour `mask` are transparent), -1 on failure.
    int Add(HBITMAP bitmap, COLORREF mask) { return ::ImageList_AddMasked(m_images.get(), bitmap, mask); }
    int GetImageCount() const { return ::ImageList_GetImageCount(m_images.get()); }
    HIMAGELIST GetSafeHandle() const { return m_images.get(); }
    HIMAGELIST Detach() { return m_images.release(); }
    void DeleteImageList() { m_images.reset(); }

  private:
    platform::UniqueImageList m_images;
};
