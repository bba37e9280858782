#pragma once
#include <windows.h>
// after windows.h
#include <commctrl.h>

#include <memory>
#include <type_traits>

/// Owned handles and paired calls of the windowing system. Everything here keeps the thread's last error, so
/// that a clean-up on the way out of a failure does not hide its cause.
namespace platform {

/// Keeps GetLastError as it was when this was constructed.
class KeepLastError {
  public:
    KeepLastError() : m_error(::GetLastError()) {}
    ~KeepLastError() { ::SetLastError(m_error); }
    KeepLastError(const KeepLastError&) = delete;
    KeepLastError& operator=(const KeepLastError&) = delete;

  private:
    DWORD m_error;
};

/// How each kind of handle is released.
struct ReleaseHandle {
    void operator()(HMENU menu) const {
        const KeepLastError keep;
        ::DestroyMenu(menu);
    }
    void operator()(HIMAGELIST images) const {
        const KeepLastError keep;
        ::ImageList_Destroy(images);
    }
    void operator()(HDC memory) const {
        const KeepLastError keep;
        ::DeleteDC(memory);
    }
    /// Pens, brushes, fonts, bitmaps.
    void operator()(HGDIOBJ object) const {
        const KeepLastError keep;
        ::DeleteObject(object);
    }
};

template <class Handle>
using UniqueOf = std::unique_ptr<std::remove_pointer_t<Handle>, ReleaseHandle>;

/// A pen, brush, font or bitmap; not to be released while it is selected into a device context.
template <class Handle>
using UniqueGdi = UniqueOf<Handle>;
using UniqueMemoryDc = UniqueOf<HDC>;
using UniqueMenu = UniqueOf<HMENU>;
using UniqueImageList = UniqueOf<HIMAGELIST>;

/// Device context of a window's client area (null: of the screen), given back at the end.
class WindowDc {
  public:
    explicit WindowDc(HWND window) : m_window(window), m_dc(::GetDC(window)) {}
    ~WindowDc() {
        const KeepLastError keep;
        if (m_dc != nullptr) ::ReleaseDC(m_window, m_dc);
    }
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    operator HDC() const { return m_dc; }

  private:
    HWND m_window;
    HDC m_dc;
};

/// An object selected into a device context while this lives; null selects nothing.
class Selected {
  public:
    Selected(HDC dc, HGDIOBJ object)
        : m_dc(dc), m_before(object != nullptr ? ::SelectObject(dc, object) : nullptr) {}
    ~Selected() {
        const KeepLastError keep;
        if (m_before != nullptr) ::SelectObject(m_dc, m_before);
    }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

  private:
    HDC m_dc;
    HGDIOBJ m_before;
};

/// Redrawing of a window held back (WM_SETREDRAW) while this lives, then one invalidation. The message also
/// shows a hidden window when it ends, so windows that are not visible are left alone.
class RedrawOff {
  public:
    explicit RedrawOff(HWND window) : m_window(::IsWindowVisible(window) ? window : nullptr) {
        if (m_window != nullptr) ::SendMessageA(m_window, WM_SETREDRAW, FALSE, 0);
    }
    ~RedrawOff() {
        if (m_window == nullptr || !::IsWindow(m_window)) return;
        const KeepLastError keep;
        ::SendMessageA(m_window, WM_SETREDRAW, TRUE, 0);
        ::InvalidateRect(m_window, nullptr, TRUE);
    }
    RedrawOff(const RedrawOff&) = delete;
    RedrawOff& operator=(const RedrawOff&) = delete;

  private:
    HWND m_window;
};

}  // namespace platform
