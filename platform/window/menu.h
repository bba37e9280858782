#pragma once
#include <windows.h>

#include <platform/export.h>
#include <platform/window/handles.h>

/// A menu that this object owns: destroyed with it unless it was detached (a menu bar that was given to a
/// window belongs to the window). Texts are Windows-1252; command ids are 32 bits.
class DORSEL_API CMenu {
  public:
    CMenu() = default;
    HMENU GetSafeHmenu() const { return m_menu.get(); }
    operator HMENU() const { return m_menu.get(); }

    /// Replace the menu held, if any, by an empty one; false when there is none to be had.
    BOOL CreateMenu();
    BOOL CreatePopupMenu();
    BOOL Attach(HMENU menu);
    HMENU Detach() { return m_menu.release(); }
    void DestroyMenu() { m_menu.reset(); }

    /// `id` is the command, or the handle of a popup with MF_POPUP (which then belongs to this menu).
    BOOL AppendMenu(UINT flags, UINT_PTR id = 0, const char* text = nullptr);
    BOOL AppendSeparator() { return AppendMenu(MF_SEPARATOR); }
    UINT CheckMenuItem(UINT id, UINT check) { return ::CheckMenuItem(m_menu.get(), id, check); }
    BOOL EnableMenuItem(UINT id, UINT enable) { return ::EnableMenuItem(m_menu.get(), id, enable); }
    int GetMenuItemCount() const { return ::GetMenuItemCount(m_menu.get()); }

    /// Shows the popup at a point of the screen for `owner` until the user has chosen. With TPM_RETURNCMD the
    /// result is the command, 0 for none; else it is non-zero when the menu was shown.
    int TrackPopupMenu(UINT flags, const POINT& screen, HWND owner) const;

  private:
    platform::UniqueMenu m_menu;
};
