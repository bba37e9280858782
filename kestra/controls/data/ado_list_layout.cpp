#include <dorsel/globals.h>
#include <dorsel/trace.h>
#include <kestra/controls/column_layout.h>
#include <kestra/controls/data/ado_list_ctrl.h>
#include <platform/window/registry.h>

#include <cstdlib>

// How a data-bound list is sorted, and how that is kept with its layout.

namespace {

constexpr char family[] = "CadoListCtrl";
constexpr int sortAgain = 65536;
constexpr DWORD longestSort = 255;

/// An own key for the time of a call, or the caller's.
class LentKey {
  public:
    explicit LentKey(HKEY* caller) : m_caller(caller), m_key(caller != nullptr ? *caller : nullptr) {}
    ~LentKey() {
        if (m_caller != nullptr)
            *m_caller = m_key;
        else if (m_key != nullptr)
            platform::theRegistry().close(m_key);
    }
    LentKey(const LentKey&) = delete;
    LentKey& operator=(const LentKey&) = delete;
    HKEY* address() { return &m_key; }
    HKEY get() const { return m_key; }
    bool isOwn() const { return m_caller == nullptr && m_key != nullptr; }

  private:
    HKEY* m_caller;
    HKEY m_key;
};

}  // namespace

void CAdoListCtrl::applySort(const char* expression) {
    ado20::Variant current;
    if (MoveToRow(m_FocusRow)) current = m_Recordset.m_pRecordset->GetBookmark();
    m_Recordset.m_pRecordset->PutSort(expression);
    const int column = m_FocusSubItem;
    ShowRecords();
    if (current.isNull()) return;
    m_Recordset.MoveTo(current);
    const auto row = static_cast<int>(m_Recordset.GetPosition());
    SetItemState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    m_FocusRow = m_FocusSubItem = -1;
    SetCurrentSubItem(row, column);
}

int CAdoListCtrl::SortColum(const char* expression) {
    if (!isOpen() || m_hWnd == nullptr || UpdateEdit(commitAll) == 0) return 0;
    try {
        applySort(expression != nullptr ? expression : "");
        return 1;
    } catch (const _com_error& error) {
        m_Recordset.Erreur(error, "CAdoListCtrl::SortColum");
        return 0;
    }
}

int CAdoListCtrl::SortColum(int col) {
    const std::int32_t wanted = col < sortAgain ? col : m_ColSort;
    const int field = wanted != 0 ? fieldOf(std::abs(wanted) - 1) : -1;
    CString expression;
    if (field >= 0) {
        expression.Format("[%s] %s", CString(m_Recordset.GetFieldName(field)).GetString(),
                          wanted < 0 ? "DESC" : "ASC");
    }
    if (SortColum(expression.GetString()) == 0) return 0;
    m_ColSort = wanted;
    Invalidate();
    return 1;
}

int CAdoListCtrl::SaveHeadToReg(const char* name, HKEY* key) {
    if (name != nullptr && *name != '\0') m_RegName = name;
    const std::string path = controls::layoutPath(g_RegTOREL_32, family, m_RegName.view());
    if (path.empty()) return 0;
    LentKey lent(key);
    const int saved = CEditListCtrl::SaveHeadToReg(path.c_str(), lent.address());
    if (lent.get() == nullptr) return saved;
    try {
        const std::string sort = isOpen() ? m_Recordset.m_pRecordset->GetSort() : std::string();
        if (!sort.empty()) {
            // Kept: the length leaves out the final NUL.
            platform::theRegistry().set(lent.get(), "ColSort", REG_SZ, sort.data(),
                                        static_cast<DWORD>(sort.size()));
        }
    } catch (const _com_error& error) {
        m_Recordset.Erreur(error, "CAdoListCtrl::SaveHeadToReg");
    }
    if (lent.isOwn()) platform::theRegistry().flush(lent.get());
    return saved;
}

int CAdoListCtrl::LoadHeadFromReg(const char* name, int flags, HKEY* key) {
    if (name != nullptr && *name != '\0') m_RegName = name;
    const std::string path = controls::layoutPath(g_RegTOREL_32, family, m_RegName.view());
    if (path.empty()) return 0;
    LentKey lent(key);
    const int restored = CEditListCtrl::LoadHeadFromReg(path.c_str(), flags, lent.address());
    if (lent.get() == nullptr || !isOpen()) return restored;
    const auto sort = platform::readText(lent.get(), "ColSort", longestSort);
    if (!sort || sort->empty()) return restored;
    try {
        applySort(sort->c_str());
    } catch (const _com_error& error) {
        mprintf("\n ***Erreur CAdoListCtrl::LoadHeadFromReg %s", error.Description().c_str());
    }
    return restored;
}
