#include <platform/window/list_control.h>

#include <array>
#include <cstring>
#include <string>

namespace {

/// Longest cell text that is asked for; a control that claims to hold more is cut.
constexpr int longestText = 64 * 1024 * 1024;

LPARAM address(const void* data) {
    return reinterpret_cast<LPARAM>(data);
}

}  // namespace

BOOL CHeaderCtrl::Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id) {
    return CWnd::Create(WC_HEADERA, "", style, rect, parent, id);
}

int CHeaderCtrl::GetItemCount() const {
    const int count = static_cast<int>(SendMessage(HDM_GETITEMCOUNT));
    return count > 0 ? count : 0;
}

BOOL CHeaderCtrl::GetItem(int index, HDITEMA& item) const {
    return SendMessage(HDM_GETITEMA, static_cast<WPARAM>(index), address(&item)) != 0;
}

BOOL CHeaderCtrl::SetItem(int index, const HDITEMA& item) {
    return SendMessage(HDM_SETITEMA, static_cast<WPARAM>(index), address(&item)) != 0;
}

int CHeaderCtrl::InsertItem(int index, const HDITEMA& item) {
    if (m_hWnd == nullptr) return -1;
    return static_cast<int>(SendMessage(HDM_INSERTITEMA, static_cast<WPARAM>(index), address(&item)));
}

BOOL CHeaderCtrl::DeleteItem(int index) {
    return SendMessage(HDM_DELETEITEM, static_cast<WPARAM>(index)) != 0;
}

CRect CHeaderCtrl::GetItemRect(int index) const {
    CRect rect;
    if (!SendMessage(HDM_GETITEMRECT, static_cast<WPARAM>(index), address(&rect))) return {};
    return rect;
}

void CHeaderCtrl::DrawItem(DRAWITEMSTRUCT*) {}

BOOL CHeaderCtrl::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    if (message != WM_DRAWITEM) return CWnd::OnChildNotify(message, wParam, lParam, result);
    DrawItem(reinterpret_cast<DRAWITEMSTRUCT*>(lParam));
    *result = TRUE;
    return TRUE;
}

BOOL CListCtrl::Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id) {
    return CWnd::Create(WC_LISTVIEWA, "", style, rect, parent, id);
}

int CListCtrl::GetNextItem(int after, UINT flags) const {
    if (m_hWnd == nullptr) return -1;
    return static_cast<int>(
        SendMessage(LVM_GETNEXTITEM, static_cast<WPARAM>(after), static_cast<LPARAM>(flags)));
}

int CListCtrl::InsertItem(const LVITEMA& item) {
    if (m_hWnd == nullptr) return -1;
    return static_cast<int>(SendMessage(LVM_INSERTITEMA, 0, address(&item)));
}

BOOL CListCtrl::SetItem(const LVITEMA& item) {
    return SendMessage(LVM_SETITEMA, 0, address(&item)) != 0;
}

BOOL CListCtrl::GetItem(LVITEMA& item) const {
    return SendMessage(LVM_GETITEMA, 0, address(&item)) != 0;
}

int CListCtrl::GetItemText(int row, int column, CString& text) const {
    // One byte more than the control is told of stays zero: a text that filled the buffer still ends in it.
    std::array<char, 512> first;
    std::string longer;
    char* buffer = first.data();
    int size = static_cast<int>(first.size()) - 1;
    for (;;) {
        LVITEMA item = {};
        item.iSubItem = column;
        item.pszText = buffer;
        item.cchTextMax = size;
        buffer[0] = buffer[size] = '\0';
        SendMessage(LVM_GETITEMTEXTA, static_cast<WPARAM>(row), address(&item));
        // A control may answer with a text of its own instead of filling the buffer.
        const char* const got = item.pszText != nullptr ? item.pszText : "";
        const int length = static_cast<int>(std::strlen(got));
        if (got != buffer || length < size - 1 || size >= longestText) {
            text = std::string_view(got, static_cast<std::size_t>(length));
            return length;
        }
        size = size * 4 + 3;
        longer.assign(static_cast<std::size_t>(size) + 1, '\0');
        buffer = longer.data();
    }
}

BOOL CListCtrl::SetItemText(int row, int column, const char* text) {
    LVITEMA item = {};
    item.iSubItem = column;
    item.pszText = const_cast<char*>(text);
    return SendMessage(LVM_SETITEMTEXTA, static_cast<WPARAM>(row), address(&item)) != 0;
}

LPARAM CListCtrl::GetItemData(int row) const {
    LVITEMA item = {};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    return GetItem(item) ? item.lParam : 0;
}

BOOL CListCtrl::SetItemData(int row, LPARAM data) {
    LVITEMA item = {};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    item.lParam = data;
    return SetItem(item);
}

UINT CListCtrl::GetItemState(int row, UINT mask) const {
    return static_cast<UINT>(
        SendMessage(LVM_GETITEMSTATE, static_cast<WPARAM>(row), static_cast<LPARAM>(mask)));
}

BOOL CListCtrl::SetItemState(int row, UINT state, UINT mask) {
    LVITEMA item = {};
    item.state = state;
    item.stateMask = mask;
    return SendMessage(LVM_SETITEMSTATE, static_cast<WPARAM>(row), address(&item)) != 0;
}

BOOL CListCtrl::EnsureVisible(int row, BOOL partial) {
    return SendMessage(LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), partial) != 0;
}

BOOL CListCtrl::GetItemRect(int row, RECT& rect, int part) const {
    rect = {part, 0, 0, 0};
    if (row >= 0 && SendMessage(LVM_GETITEMRECT, static_cast<WPARAM>(row), address(&rect))) return TRUE;
    rect = {};
    return FALSE;
}

BOOL CListCtrl::GetSubItemRect(int row, int column, int part, RECT& rect) const {
    rect = {part, column, 0, 0};
    if (SendMessage(LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), address(&rect))) return TRUE;
    rect = {};
    return FALSE;
}

int CListCtrl::SubItemHitTest(LVHITTESTINFO& hit) const {
    if (m_hWnd == nullptr) return -1;
    return static_cast<int>(SendMessage(LVM_SUBITEMHITTEST, 0, address(&hit)));
}

BOOL CListCtrl::Scroll(CSize by) {
    return SendMessage(LVM_SCROLL, static_cast<WPARAM>(by.cx), by.cy) != 0;
}

BOOL CListCtrl::RedrawItems(int first, int last) {
    return SendMessage(LVM_REDRAWITEMS, static_cast<WPARAM>(first), last) != 0;
}

BOOL CListCtrl::SortItems(CompareProc compare, LPARAM context) {
    return SendMessage(LVM_SORTITEMS, static_cast<WPARAM>(context), reinterpret_cast<LPARAM>(compare)) != 0;
}

int CListCtrl::InsertColumn(int index, const LVCOLUMNA& column) {
    if (m_hWnd == nullptr) return -1;
    return static_cast<int>(SendMessage(LVM_INSERTCOLUMNA, static_cast<WPARAM>(index), address(&column)));
}

BOOL CListCtrl::GetColumn(int index, LVCOLUMNA& column) const {
    return SendMessage(LVM_GETCOLUMNA, static_cast<WPARAM>(index), address(&column)) != 0;
}

BOOL CListCtrl::SetColumnWidth(int column, int width) {
    return SendMessage(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), MAKELPARAM(width, 0)) != 0;
}

HIMAGELIST CListCtrl::SetImageList(HIMAGELIST images, int kind) {
    return reinterpret_cast<HIMAGELIST>(
        SendMessage(LVM_SETIMAGELIST, static_cast<WPARAM>(kind), reinterpret_cast<LPARAM>(images)));
}

DWORD CListCtrl::GetExtendedStyle() const {
    return static_cast<DWORD>(SendMessage(LVM_GETEXTENDEDLISTVIEWSTYLE));
}

DWORD CListCtrl::SetExtendedStyle(DWORD style) {
    return static_cast<DWORD>(SendMessage(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, static_cast<LPARAM>(style)));
}

void CListCtrl::DrawItem(DRAWITEMSTRUCT*) {}

BOOL CListCtrl::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    if (message != WM_DRAWITEM) return CWnd::OnChildNotify(message, wParam, lParam, result);
    DrawItem(reinterpret_cast<DRAWITEMSTRUCT*>(lParam));
    *result = TRUE;
    return TRUE;
}
