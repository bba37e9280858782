#pragma once
#include <windows.h>

#include <string>

#include <platform/arrays.h>
#include <platform/export.h>
#include <platform/window/file_dialog.h>

/// The file chooser of the family's applications: the system's, with a title, several files at a time, and a
/// start where the user last was.
///
/// Where it starts: the folder of the file name it is given; else the folder where a file of the same
/// extension was last chosen in this process; else the folder of the current project (`chtdef`); else what
/// the system thinks. A file name that the system does not accept is left out; the dialog opens all the same.
class KESTRA_API CMyFileDialog : public CFileDialog {
  public:
    /// As `CFileDialog`; OFN_ALLOWMULTISELECT in `flags` lets the user choose several files.
    explicit CMyFileDialog(bool open, const char* extension = nullptr, const char* fileName = nullptr,
                           DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST,
                           const char* filter = nullptr, CWnd* parent = nullptr);

    CString m_titre;  ///< title of the dialog; empty: the system's

    INT_PTR DoModal() override;
    /// Whole paths of the files chosen, in place of what `paths` held; returns their number.
    int GetPathNames(CStringArray& paths) const;
    /// The first of them, empty when none was chosen.
    CString GetPathName() const;
    /// Folder where the dialog starts when the file name does not say it, ended by a separator; empty: the
    /// system's choice.
    CString StartFolder() const;

  private:
    std::string m_kind;  // the extension, upper case
};
