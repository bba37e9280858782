#pragma once
#include <windows.h>

#include <platform/cstring.h>
#include <platform/export.h>
#include <platform/runtime_class.h>
#include <platform/window/geometry.h>
#include <platform/window/window_subclass.h>

/// A window object: the base of every control and dialog of the library.
///
/// What differs from what a reader may expect:
/// - there are no temporary objects: `FromHandlePermanent` knows the windows that were created or subclassed
///   by an object, and what answers a window otherwise answers its handle;
/// - `Attach` only notes a handle; messages come to `WindowProc` after `Create` or `SubclassWindow`;
/// - an object that created its window destroys it when it is destroyed; one that subclassed a window lets it
///   go. A derived class whose `WindowProc` must see WM_DESTROY calls `DestroyWindow` in its destructor;
/// - children belong to their parent window: their objects may go before or after it;
/// - every operation on a missing window returns 0 or nothing, without side effects.
/// Texts are Windows-1252. An object belongs to the thread of its window.
class DORSEL_API CWnd : private platform::WindowSubclass::Target {
  public:
    CWnd();
    virtual ~CWnd();
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    static const CRuntimeClass runtimeClass;
    virtual const CRuntimeClass* GetRuntimeClass() const { return &runtimeClass; }
    bool IsKindOf(const CRuntimeClass& other) const { return GetRuntimeClass()->IsDerivedFrom(other); }

    /// The window, null for none.
    HWND m_hWnd = nullptr;
    HWND GetSafeHwnd() const { return m_hWnd; }
    operator HWND() const { return m_hWnd; }
    /// Object that created or subclassed a window of this thread, null for none.
    static CWnd* FromHandlePermanent(HWND window);

    /// Notes a handle; false when it is null or the object has a window already. `Detach` forgets it and
    /// returns it.
    BOOL Attach(HWND window);
    HWND Detach();
    /// Takes the messages of an existing window of this thread; false when it has an object already.
    BOOL SubclassWindow(HWND window);
    BOOL SubclassDlgItem(UINT id, const CWnd* parent);
    HWND UnsubclassWindow();

    /// Creates the window; `WindowProc` sees its messages from the first one on. A null class name stands for
    /// the framework's plain window class (arrow cursor, window background, no procedure of its own). False
    /// when the window could not be created; GetLastError tells why.
    BOOL CreateEx(DWORD extendedStyle, const char* className, const char* text, DWORD style, const RECT& rect,
                  HWND parent, HMENU idOrMenu, void* parameter = nullptr);
    BOOL Create(const char* className, const char* text, DWORD style, const RECT& rect, const CWnd* parent,
                UINT id);
    /// Destroys the window with its children; the object stays and may create another one.
    virtual BOOL DestroyWindow();

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return m_hWnd != nullptr ? ::SendMessageA(m_hWnd, message, wParam, lParam) : 0;
    }
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return m_hWnd != nullptr && ::PostMessageA(m_hWnd, message, wParam, lParam);
    }

    void SetWindowText(const char* text) { ::SetWindowTextA(m_hWnd, text); }
    /// Whole text of the window whatever its length; returns its length.
    int GetWindowText(CString& text) const;
    DWORD GetStyle() const { return static_cast<DWORD>(::GetWindowLongA(m_hWnd, GWL_STYLE)); }
    /// False when nothing changed. Non-zero `positionFlags` also tell the window that its frame changed.
    BOOL ModifyStyle(DWORD remove, DWORD add, UINT positionFlags = 0);
    HWND GetParent() const { return m_hWnd != nullptr ? ::GetParent(m_hWnd) : nullptr; }
    HWND GetDlgItem(int id) const { return m_hWnd != nullptr ? ::GetDlgItem(m_hWnd, id) : nullptr; }
    int GetDlgCtrlID() const { return m_hWnd != nullptr ? ::GetDlgCtrlID(m_hWnd) : 0; }
    void SetDlgItemText(int id, const char* text) { ::SetDlgItemTextA(m_hWnd, id, text); }
    int GetDlgItemText(int id, CString& text) const;

    CRect GetClientRect() const;
    CRect GetWindowRect() const;
    void MoveWindow(const RECT& rect, BOOL repaint = TRUE);
    BOOL SetWindowPos(HWND after, int x, int y, int width, int height, UINT flags);
    void ScreenToClient(POINT* point) const { ::ScreenToClient(m_hWnd, point); }
    void ClientToScreen(POINT* point) const { ::ClientToScreen(m_hWnd, point); }
    BOOL ShowWindow(int show) { return m_hWnd != nullptr && ::ShowWindow(m_hWnd, show); }
    BOOL EnableWindow(BOOL enable = TRUE) { return ::EnableWindow(m_hWnd, enable); }
    BOOL IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
    /// Whole client area; without a window nothing (not the whole screen).
    void Invalidate(BOOL erase = TRUE) { InvalidateRect(nullptr, erase); }
    void InvalidateRect(const RECT* rect, BOOL erase = TRUE);
    void UpdateWindow() { ::UpdateWindow(m_hWnd); }
    HWND SetFocus() { return m_hWnd != nullptr ? ::SetFocus(m_hWnd) : nullptr; }
    void SetFont(HFONT font, BOOL redraw = TRUE);
    HFONT GetFont() const { return reinterpret_cast<HFONT>(SendMessage(WM_GETFONT)); }
    UINT_PTR SetTimer(UINT_PTR id, UINT milliseconds) {
        return ::SetTimer(m_hWnd, id, milliseconds, nullptr);
    }
    BOOL KillTimer(UINT_PTR id) { return ::KillTimer(m_hWnd, id); }

    /// First sight of a message of the program's loop, or of a modal dialog's, for this window or one of its
    /// children; true when it is dealt with.
    virtual BOOL PreTranslateMessage(MSG* message);
    /// Offers a message to the window objects from its window up to `stop` (included; null: up to the
    /// top-level window) until one deals with it.
    static BOOL WalkPreTranslateTree(HWND stop, MSG* message);

  protected:
    /// Whether this object created its window and will destroy it.
    bool ownsWindow() const { return m_created; }
    /// Every message of the window. The framework's own offers notifications and owner drawing of a child to
    /// the child's object first (`OnChildNotify`), then to `OnNotify` or `OnCommand` here, then to the
    /// window.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// What the window would have answered by itself.
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// WM_COMMAND and WM_NOTIFY; true when dealt with (the answer of WM_COMMAND is then 0).
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result);
    /// A message that this window made its parent receive: WM_COMMAND, WM_NOTIFY, WM_DRAWITEM,
    /// WM_MEASUREITEM, WM_COMPAREITEM, WM_DELETEITEM. True when dealt with, the answer in `*result`.
    virtual BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    /// The window is dead and `m_hWnd` null; an object on the heap may delete itself here.
    virtual void PostNcDestroy();

  private:
    friend class CreationHook;
    LRESULT windowMessage(UINT message, WPARAM wParam, LPARAM lParam) final;
    void windowGone() final;

    platform::WindowSubclass m_subclass;
    bool m_created = false;
};
