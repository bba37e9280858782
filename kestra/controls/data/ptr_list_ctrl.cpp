#include <kestra/controls/data/ptr_list_ctrl.h>

#include <algorithm>

#include <kestra/controls/data/display_texts.h>

const CRuntimeClass CPtrListCtrl::runtimeClass{"CPtrListCtrl", &CLraListCtrl::runtimeClass};

int CPtrListCtrl::AddPtr(void* object, int row) {
    if (m_hWnd == nullptr || object == nullptr) return -1;
    LVITEMA item = {};
    item.mask = LVIF_TEXT | LVIF_PARAM;
    item.iItem = std::clamp(row, 0, GetItemCount());
    item.pszText = LPSTR_TEXTCALLBACKA;
    item.lParam = reinterpret_cast<LPARAM>(object);
    const int added = CListCtrl::InsertItem(item);
    if (added >= 0) UpdateItemCount();
    return added;
}

void* CPtrListCtrl::GetPtr(int row) {
    return row >= 0 ? reinterpret_cast<void*>(GetItemData(row)) : nullptr;
}

int CPtrListCtrl::FindPtr(const void* object, int after) {
    const int count = object != nullptr ? GetItemCount() : 0;
    for (int row = std::max(after, -1) + 1; row < count; ++row) {
        if (GetPtr(row) == object) return row;
    }
    return -1;
}

int CPtrListCtrl::DeletePtr(const void* object) {
    int deleted = 0;
    for (int row = FindPtr(object); row >= 0; row = FindPtr(object, row - 1)) {
        if (!DeleteItem(row)) break;
        ++deleted;
    }
    UpdateItemCount();
    return deleted;
}

int CPtrListCtrl::GetPtrValue(void*, int, CString&) {
    return 0;
}

int CPtrListCtrl::GetValue(int row, int col, CString& out) {
    if (row < 0 || row >= GetItemCount() || col < 0 || col >= m_HeaderCtrl.GetItemCount()) return 0;
    void* const object = GetPtr(row);
    return object != nullptr ? GetPtrValue(object, col, out) : 0;
}

BOOL CPtrListCtrl::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    if (message == WM_NOTIFY && controls::answerDisplayText(*this, lParam)) {
        *result = 0;
        return TRUE;
    }
    return CLraListCtrl::OnChildNotify(message, wParam, lParam, result);
}
