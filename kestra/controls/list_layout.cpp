#include <dorsel/globals.h>
#include <kestra/controls/column_layout.h>
#include <kestra/controls/lra_list_ctrl.h>
#include <platform/window/handles.h>
#include <platform/window/registry.h>

#include <array>
#include <cstdlib>

// How a list's layout goes to the registry and comes back; what a load does is decided in column_layout.h.

namespace {

constexpr char family[] = "CLraListCtrl";
/// Sort states beyond this one stand for "as before" and are no state to restore.
constexpr std::int32_t lastSortState = 65535;

std::string pathOf(const CString& name) {
    return controls::layoutPath(g_RegTOREL_32, family, name.view());
}

/// The layout's key: the caller's, or the operation's own, which goes back to a caller who asked for it.
class LayoutKey {
  public:
    explicit LayoutKey(HKEY* caller) : m_caller(caller) {}
    ~LayoutKey() {
        if (m_own && m_caller != nullptr) *m_caller = m_own.release();
    }
    LayoutKey(const LayoutKey&) = delete;
    LayoutKey& operator=(const LayoutKey&) = delete;

    bool isCallers() const { return m_caller != nullptr && *m_caller != nullptr; }
    platform::RegistryKey& own() { return m_own; }
    HKEY get() const { return isCallers() ? *m_caller : m_own.get(); }
    /// Writes an own key to the disk, unless the caller goes on with it.
    void flush() {
        if (m_own && m_caller == nullptr) platform::theRegistry().flush(m_own.get());
    }

  private:
    HKEY* m_caller;
    platform::RegistryKey m_own;
};

/// The saved columns; those whose keys are there but do not open are counted besides.
struct SavedColumns {
    std::vector<std::optional<controls::StoredColumn>> columns;
    int closed = 0;

    void read(HKEY layout) {
        platform::RegistryKey key;
        const std::string name = controls::columnKeyName(static_cast<int>(columns.size()));
        const LSTATUS status = key.open(layout, name.c_str(), KEY_READ);
        columns.emplace_back();
        if (status != ERROR_SUCCESS) {
            closed += status != ERROR_FILE_NOT_FOUND ? 1 : 0;
            return;
        }
        columns.back() = {platform::readText(key.get(), "Name", controls::longestCaption + 1),
                          platform::readNumber(key.get(), "Width"), platform::readNumber(key.get(), "Order")};
    }
};

controls::ShownColumn shownColumn(CLraListCtrl& list, int col) {
    std::array<char, controls::longestCaption + 1> caption = {};
    CLraHeaderCtrl& header = *list.GetHeaderCtrl();
    header.GetItemText(col, caption.data(), static_cast<int>(caption.size()));
    return {caption.data(), list.CListCtrl::GetColumnWidth(col), header.GetItemOrder(col)};
}

bool writeColumn(HKEY layout, int col, CLraListCtrl& list) {
    platform::RegistryKey key;
    if (key.create(layout, controls::columnKeyName(col).c_str()) != ERROR_SUCCESS) return false;
    const auto write = [&key](const char* name, std::int32_t value) {
        platform::writeNumber(key.get(), name, value);
    };
    const controls::ShownColumn shown = shownColumn(list, col);
    write("Width", list.GetColumnWidth(col));
    write("Order", shown.order);
    platform::theRegistry().set(key.get(), "Name", REG_SZ, shown.caption.c_str(),
                                static_cast<DWORD>(shown.caption.size() + 1));
    const CLraListCtrl::LraListColum* const record = list.GetMyListHeader(col);
    if (record == nullptr) return false;
    write("ColStyle", record->ColStyle);
    write("ReadOnly", record->ReadOnly);
    write("FtypeData", record->FtypeData);
    return true;
}

}  // namespace

int CLraListCtrl::SaveHeadToReg(const char* name, HKEY* key) {
    if (name != nullptr && *name != '\0') m_RegName = name;
    const std::string path = pathOf(m_RegName);
    if (path.empty() || m_HeaderCtrl.m_hWnd == nullptr) return 0;
    LayoutKey layout(key);
    if (!layout.isCallers()) {
        platform::theRegistry().deleteTree(HKEY_CURRENT_USER, path.c_str());
        if (layout.own().create(HKEY_CURRENT_USER, path.c_str()) != ERROR_SUCCESS) return 0;
    }
    const int columns = m_HeaderCtrl.GetItemCount();
    platform::writeNumber(layout.get(), "NCol", columns);
    platform::writeNumber(layout.get(), "m_ColSort", m_ColSort);
    if (m_ItemHeight > 0) platform::writeNumber(layout.get(), "ItemHeight", m_ItemHeight);
    int saved = 0;
    for (int col = 0; col < columns; ++col) saved += writeColumn(layout.get(), col, *this) ? 1 : 0;
    layout.flush();
    m_unreadLayout.Empty();
    return saved;
}

void CLraListCtrl::saveLayoutAtTheEnd() {
    // A layout that could not be read, and a list that never got its columns, would leave a worse one.
    if (m_RegName.IsEmpty() || m_HeaderCtrl.GetItemCount() == 0) return;
    if (!m_unreadLayout.IsEmpty() && pathOf(m_RegName) == m_unreadLayout.GetString()) return;
    SaveHeadToReg(nullptr, nullptr);
}

int CLraListCtrl::LoadHeadFromReg(const char* name, int flags, HKEY* key) {
    if (name != nullptr && *name != '\0') m_RegName = name;
    const std::string path = pathOf(m_RegName);
    if (path.empty() || m_hWnd == nullptr) return 0;
    m_unreadLayout.Empty();
    LayoutKey layout(key);
    if (!layout.isCallers()) {
        const LSTATUS status = layout.own().open(HKEY_CURRENT_USER, path.c_str(), KEY_READ);
        if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) m_unreadLayout = path.c_str();
        if (status != ERROR_SUCCESS) return 0;
    }
    if (const auto height = platform::readNumber(layout.get(), "ItemHeight")) SetItemHeight(*height);
    const auto columns = platform::readNumber(layout.get(), "NCol");
    const auto sort = platform::readNumber(layout.get(), "m_ColSort");
    if (sort && *sort >= -lastSortState && *sort <= lastSortState) m_ColSort = *sort;
    if (!columns || *columns < 0 || *columns > controls::mostColumns) {
        SavedColumns first;
        first.read(layout.get());
        if (first.columns[0] || first.closed > 0) m_unreadLayout = path.c_str();
        return 0;
    }
    if ((flags & controls::matchByCaption) == 0 && *columns != m_HeaderCtrl.GetItemCount()) return 0;
    return restoreColumns(layout.get(), *columns, flags);
}

int CLraListCtrl::restoreColumns(HKEY layout, int stored, int flags) {
    std::vector<controls::ShownColumn> shown;
    for (int col = 0; col < m_HeaderCtrl.GetItemCount(); ++col) shown.push_back(shownColumn(*this, col));
    if (shown.empty()) return 0;
    SavedColumns saved;
    while (static_cast<int>(saved.columns.size()) < stored) saved.read(layout);
    const controls::LayoutPlan plan = controls::planLayout(saved.columns, shown, flags);
    if (plan.restored == 0 && plan.damaged + saved.closed > 0) m_unreadLayout = pathOf(m_RegName).c_str();
    carryOut(plan);
    if (plan.restored > 0) {
        m_HeaderCtrl.CalculHeight();
        layOutHeader();
    }
    return plan.restored;
}

void CLraListCtrl::carryOut(const controls::LayoutPlan& plan) {
    const platform::RedrawOff held(m_hWnd);
    for (const controls::ColumnChange& change : plan.changes) {
        if (change.width) SetColumnWidth(change.column, *change.width);
        if (change.caption) m_HeaderCtrl.SetItemText(change.column, change.caption->c_str());
    }
    if (!plan.display.empty()) {
        SendMessage(LVM_SETCOLUMNORDERARRAY, plan.display.size(),
                    reinterpret_cast<LPARAM>(plan.display.data()));
    }
}
