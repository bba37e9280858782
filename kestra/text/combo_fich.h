#pragma once
#include <string>
#include <string_view>
#include <vector>

#include <platform/export.h>

class CComboBox;

/// Fills a drop-down list with the names of the files that match `file`, each name once, and selects again
/// the text that the control showed; nothing is selected when the list no longer holds it. 1, or -1 when
/// `combo` or `file` is null. Only where there are windows.
///
/// `file`: a file name or pattern; with a folder, that folder is looked in. `folders`: further folders
/// separated by ';', null or empty for none. `flags` not 0: the folder of the current project as well, when
/// there is one. Names are those of files that are not hidden; equal ones are found as neighbours, so the
/// control has to be a sorted one. Names that differ only in case stay both.
extern "C" KESTRA_API int ComboFich(CComboBox* combo, const char* file, const char* folders, int flags);

/// The same without a control.
namespace text {

/// What is looked for, folder by folder: full patterns.
std::vector<std::string> comboPatterns(const char* file, const char* folders, bool projectFolder);

/// Indices of items that repeat the one before them, from the last to the first; empty items count for
/// nothing.
std::vector<int> repeatedItems(const std::vector<std::string>& items);

/// The names that the control would show, in its order. Empty when `file` is null.
KESTRA_API std::vector<std::string> comboNames(const char* file, const char* folders, int flags);

}  // namespace text
