#pragma once
#include <windows.h>
// after windows.h
#include <commdlg.h>

#include <string>

#include <platform/cstring.h>
#include <platform/export.h>
#include <platform/window/wnd.h>

/// The system's dialog to choose one file, to open or to save it under.
class DORSEL_API CFileDialog {
  public:
    /// `extension` without its dot is added to a name typed without one. `filter` holds pairs of a
    /// description and patterns, all separated by '|': "Chantiers (*.cht)|*.cht|Tous (*.*)|*.*||".
    /// `flags` are OFN_ bits; texts are copied, nulls mean none.
    explicit CFileDialog(bool open, const char* extension = nullptr, const char* fileName = nullptr,
                         DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, const char* filter = nullptr,
                         CWnd* parent = nullptr);
    virtual ~CFileDialog();

    /// IDOK when a file was chosen, else IDCANCEL; the process's current folder stays as it was.
    virtual INT_PTR DoModal();
    /// The file chosen: whole path, name with extension, extension without its dot, name alone.
    CString GetPathName() const;
    CString GetFileName() const;
    CString GetFileExt() const;
    CString GetFileTitle() const;

    /// What the system is asked; may be changed before `DoModal`, except for the texts held here.
    OPENFILENAMEA m_ofn = {};

  protected:
    /// What the system fills: a whole path, or with OFN_ALLOWMULTISELECT a folder and names, each ended by
    /// NUL. A derived class may make it longer before `DoModal`.
    std::string m_path;

  private:
    bool m_open;
    std::string m_extension;
    std::string m_filter;
};
