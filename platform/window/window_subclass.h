#pragma once
#include <windows.h>

#include <platform/export.h>

namespace platform {

/// The one way in which the framework takes the messages of a window: it puts its procedure before the
/// window's own and lets go by itself when the window dies (WM_NCDESTROY), when it is released, or when it is
/// destroyed, whichever comes first.
///
/// What differs from what a reader may expect:
/// - a window has at most one target; a second `attach` to it fails;
/// - the procedure is an 8-bit one: texts in messages are Windows-1252 whatever the window's own form is;
/// - when somebody else has subclassed the window since, releasing leaves the procedure in place as a mere
///   passage until the window dies, because taking it out would cut the other one off;
/// - it belongs to the thread of the window, where alone it may be used.
class DORSEL_API WindowSubclass {
  public:
    class DORSEL_API Target {
      public:
        /// One message of the window. The target may release or destroy anything here, itself included.
        virtual LRESULT windowMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
        /// The window is dead and the subclass has let go; the last call the target gets.
        virtual void windowGone() = 0;

      protected:
        ~Target();
    };

    explicit WindowSubclass(Target& target) : m_target(target) {}
    ~WindowSubclass() { release(); }
    WindowSubclass(const WindowSubclass&) = delete;
    WindowSubclass& operator=(const WindowSubclass&) = delete;

    /// False, and nothing changed, when `window` is none of this thread's windows or has a target, or when
    /// this subclass holds a window already.
    bool attach(HWND window);
    void release();
    /// The window held, null for none.
    HWND window() const { return m_window; }
    /// What the window would have answered without this subclass; 0 when none is held.
    LRESULT callPrevious(UINT message, WPARAM wParam, LPARAM lParam) const;

    /// Target of a window of this thread, null for none.
    static Target* targetOf(HWND window);

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static void forget(HWND window);

    Target& m_target;
    HWND m_window = nullptr;
    WNDPROC m_previous = nullptr;
};

}  // namespace platform
