#pragma once
#include <cstdint>

#include <platform/cstring.h>
#include <platform/export.h>

class CComboBox;

/// A list of recent files in a combo box, the newest first, kept in the settings: source "fichder", one
/// section a list, keys "FILE0" (the newest), "FILE1", ... in the local settings folder.
/// `kestra/project/recent_files.h` has its rules. Only where there are windows.
class KESTRA_API Cfichder {
  public:
    /// `section` names the list in the settings; the combo is not owned; at most `most` entries are read and
    /// written.
    Cfichder(const char* section, CComboBox* combo, int most);

    /// Puts a path at the top of the combo's list, once; with `keep` other than 0 a path that is listed
    /// already stays where it is. The list is not cut to its most here.
    void Add(const char* path, int keep);
    /// Loads the list from the settings. An empty edit text then becomes the first entry.
    void ReadList();
    /// Saves the combo's list.
    void WriteList();

    CComboBox* m_pCombo;
    std::int32_t m_nMax;
    CString m_cle;
};
