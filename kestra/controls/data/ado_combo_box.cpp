#include <kestra/controls/data/ado_combo_box.h>

#include <string>

#include <dorsel/globals.h>
#include <kestra/controls/column_layout.h>
#include <platform/window/registry.h>

namespace {

constexpr int columnFlags = 15;
constexpr int widestDropDown = 10000;

/// The key of the layout. The list, which takes a name with a backslash for a whole path, is given it as
/// well.
std::string pathOf(const CString& name) {
    if (name.IsEmpty()) return {};
    return std::string(g_RegTOREL_32) + "\\CadoListCtrl\\" + name.GetString();
}

bool isSize(const std::optional<std::int32_t>& size) {
    return size && *size > 0 && *size <= widestDropDown;
}

}  // namespace

const CRuntimeClass CAdoComboBox::runtimeClass{"CAdoComboBox", &CWnd::runtimeClass};

int CAdoComboBox::Fill(MyRecordsetPtr& records, const char* field) {
    ResetContent();
    const int index = records.GetIndexFromName(field);
    if (m_hWnd == nullptr || index < 0 || records.GetRecordCount() == 0) return 0;
    CString text;
    int position = 0;
    for (long moved = records.MoveFirst(); moved >= 0 && records.Eof() == 0; moved = records.MoveNext()) {
        records.GetValue(index, text);
        SetItemData(AddString(text), static_cast<DWORD_PTR>(position++));
    }
    return position;
}

int CAdoComboBox::GetDroppedHeight() const {
    RECT rect = {};
    SendMessage(CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&rect));
    return static_cast<int>(rect.bottom - rect.top);
}

int CAdoComboBox::SetDroppedHeight(int height) {
    if (m_hWnd == nullptr || height <= 0) return 0;
    const CRect place = GetWindowRect();
    SetWindowPos(nullptr, 0, 0, place.Width(), height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    return GetDroppedHeight();
}

int CAdoComboBox::SaveHeadToReg(const char* name, int flags) {
    if (name != nullptr && *name != '\0') m_RegName = name;
    const std::string path = pathOf(m_RegName);
    if (path.empty()) return 0;
    int result = 1;
    if ((flags & columnFlags) != 0 && m_pList != nullptr && m_pList->m_hWnd != nullptr) {
        result = m_pList->SaveHeadToReg(path.c_str(), nullptr);
        m_pList->m_RegName.Empty();
    }
    platform::RegistryKey key;
    if (key.open(HKEY_CURRENT_USER, path.c_str(), KEY_ALL_ACCESS) != ERROR_SUCCESS) return result;
    platform::writeNumber(key.get(), "ComboWidth", GetDroppedWidth());
    // Kept: the name is misspelt; layouts that were saved have it.
    platform::writeNumber(key.get(), "ComboHeigth", GetDroppedHeight());
    platform::theRegistry().flush(key.get());
    return result;
}

int CAdoComboBox::LoadHeadFromReg(const char* name, int flags) {
    if (name != nullptr && *name != '\0') m_RegName = name;
    const std::string path = pathOf(m_RegName);
    if (path.empty()) return 0;
    const int result = m_pList != nullptr ? m_pList->LoadHeadFromReg(path.c_str(), flags, nullptr) : 0;
    platform::RegistryKey key;
    if (key.open(HKEY_CURRENT_USER, path.c_str(), KEY_READ) != ERROR_SUCCESS) return result;
    const auto width = platform::readNumber(key.get(), "ComboWidth");
    if ((flags & controls::comboWidth) != 0 && isSize(width)) {
        // Some platforms take a smaller width than before for none at all, the first time.
        if (SetDroppedWidth(*width) != *width) SetDroppedWidth(*width);
    }
    const auto height = platform::readNumber(key.get(), "ComboHeigth");
    if ((flags & controls::comboHeight) != 0 && isSize(height)) SetDroppedHeight(*height);
    return result;
}
