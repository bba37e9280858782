#include <platform/window/file_dialog.h>

#include <algorithm>
#include <string_view>

namespace {

constexpr std::size_t pathRoom = 4096;

/// The system wants the parts of a filter ended by NULs, the last one by two.
std::string systemFilter(const char* filter) {
    std::string parts = filter != nullptr ? filter : "";
    std::replace(parts.begin(), parts.end(), '|', '\0');
    return parts + '\0';
}

std::size_t dotOf(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? name.size() : dot;
}

}  // namespace

CFileDialog::CFileDialog(bool open, const char* extension, const char* fileName, DWORD flags,
                         const char* filter, CWnd* parent)
    : m_path(fileName != nullptr ? fileName : ""),
      m_open(open),
      m_extension(extension != nullptr ? extension : ""),
      m_filter(systemFilter(filter)) {
    m_path.resize(pathRoom);
    m_path.back() = '\0';
    m_ofn.lStructSize = sizeof m_ofn;
    m_ofn.hwndOwner = parent != nullptr ? parent->m_hWnd : nullptr;
    m_ofn.Flags = flags | OFN_EXPLORER | OFN_NOCHANGEDIR;
}

CFileDialog::~CFileDialog() = default;

INT_PTR CFileDialog::DoModal() {
    m_ofn.lpstrFile = m_path.data();
    m_ofn.nMaxFile = static_cast<DWORD>(m_path.size());
    m_ofn.lpstrFilter = m_filter.data();
    m_ofn.lpstrDefExt = m_extension.empty() ? nullptr : m_extension.c_str();
    const BOOL chosen = m_open ? ::GetOpenFileNameA(&m_ofn) : ::GetSaveFileNameA(&m_ofn);
    return chosen ? IDOK : IDCANCEL;
}

CString CFileDialog::GetPathName() const {
    return m_path.c_str();
}

CString CFileDialog::GetFileName() const {
    const std::string_view path = m_path.c_str();
    const std::size_t folder = path.find_last_of("\\/:");
    return folder == std::string_view::npos ? path : path.substr(folder + 1);
}

CString CFileDialog::GetFileExt() const {
    const CString name = GetFileName();
    return name.Mid(static_cast<int>(dotOf(name.view())) + 1);
}

CString CFileDialog::GetFileTitle() const {
    const CString name = GetFileName();
    return name.Left(static_cast<int>(dotOf(name.view())));
}
