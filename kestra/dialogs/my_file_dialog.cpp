#include <windows.h>
// after windows.h
#include <cderr.h>

#include <map>
#include <string_view>

#include <kestra/dialogs/my_file_dialog.h>
#include <kestra/project/chantier.h>

namespace {

/// Room for the names of several files.
constexpr std::size_t manyFiles = 256 * 1024;

/// Where a file of each extension was last chosen.
std::map<std::string, std::string>& lastFolders() {
    static std::map<std::string, std::string> folders;
    return folders;
}

/// With the separator at its end; empty when the path names none.
std::string folderOf(std::string_view path) {
    return std::string(path.substr(0, path.find_last_of("\\/:") + 1));
}

std::string upperCase(const char* text) {
    return std::string(CString(text).MakeUpper().view());
}

}  // namespace

CMyFileDialog::CMyFileDialog(bool open, const char* extension, const char* fileName, DWORD flags,
                             const char* filter, CWnd* parent)
    : CFileDialog(open, extension, fileName, flags, filter, parent), m_kind(upperCase(extension)) {
    if ((flags & OFN_ALLOWMULTISELECT) != 0) m_path.resize(manyFiles);
}

CString CMyFileDialog::StartFolder() const {
    const auto last = lastFolders().find(m_kind);
    return last != lastFolders().end() ? CString(std::string_view(last->second))
                                       : CString(std::string_view(folderOf(chtdef.m_cheminCht.view())));
}

INT_PTR CMyFileDialog::DoModal() {
    const CString start = StartFolder();
    const bool saysFolder = !folderOf(m_path.c_str()).empty();
    m_ofn.lpstrInitialDir = saysFolder || start.IsEmpty() ? nullptr : start.GetString();
    m_ofn.lpstrTitle = m_titre.IsEmpty() ? nullptr : m_titre.GetString();
    INT_PTR result = CFileDialog::DoModal();
    if (result != IDOK && ::CommDlgExtendedError() == FNERR_INVALIDFILENAME) {
        m_path.assign(m_path.size(), '\0');
        result = CFileDialog::DoModal();
    }
    m_ofn.lpstrInitialDir = m_ofn.lpstrTitle = nullptr;
    if (result == IDOK) lastFolders()[m_kind] = folderOf(GetPathName().view());
    return result;
}

int CMyFileDialog::GetPathNames(CStringArray& paths) const {
    paths.RemoveAll();
    // One path, or the folder and then the names, each ended by NUL, an empty one at the end.
    const char* part = m_path.c_str();
    const std::string first = part;
    if (first.empty()) return 0;
    part += first.size() + 1;
    const bool single = (m_ofn.Flags & OFN_ALLOWMULTISELECT) == 0 || *part == '\0';
    if (single) return static_cast<int>(paths.Add(first.c_str())) + 1;
    const std::string folder = first.back() == '\\' ? first : first + '\\';
    for (; *part != '\0'; part += std::string_view(part).size() + 1) paths.Add((folder + part).c_str());
    return static_cast<int>(paths.GetSize());
}

CString CMyFileDialog::GetPathName() const {
    CStringArray paths;
    return GetPathNames(paths) > 0 ? paths[0] : CString();
}
