#pragma once
#include <windows.h>

#include <platform/arrays.h>
#include <platform/export.h>
#include <platform/window/file_dialog.h>

/// The file chooser of the family's applications: the system's, with a title, several files at a time, and a
/// start where the user last was.
///
/// Where it starts: the folder of the file name it is given; else the folder where the last file of the same
/// extension was chosen in this process; else the folder of the current project; else what the system thinks.
class KESTRA_API CMyFileDialog : public CFileDialog {
  public:
    /// As `CFileDialog`; a `flags` with OFN_ALLOWMULTISELECT lets the user choose several files.
    explicit CMyFileDialog(bool open, const char* extension = nullptr, const char* fileName = nullptr,
                           DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST,
                           const char* filter = nullptr, CWnd* parent = nullptr);

    CString m_titre;  ///< title of the dialog; empty: the system's

    INT_PTR DoModal() override;
    /// Whole paths of the files chosen; returns their number. `GetPathName` gives the first.
    int GetPathNames(CStringArray& paths) const;
    /// Folder where the dialog starts, without a separator at its end; empty: the system's choice.
    CString StartFolder() const;
};
