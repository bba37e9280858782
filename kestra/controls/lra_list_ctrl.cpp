#include <kestra/controls/lra_list_ctrl.h>

#include <algorithm>
#include <string_view>

#include <kestra/controls/column_record.h>
#include <platform/prompt.h>
#include <platform/window/device_context.h>
#include <platform/window/image_list.h>

namespace {

constexpr DWORD gridStyles = LVS_REPORT | LVS_OWNERDRAWFIXED;
constexpr DWORD platformSort = LVS_SORTASCENDING | LVS_SORTDESCENDING;
constexpr int booleanType = 'B';
constexpr int checkBoxStyle = 3;
constexpr int tallestRow = 99;
/// Room that a fitted column leaves beside its widest cell.
constexpr int fitMargin = 15;

}  // namespace

const CRuntimeClass CLraListCtrl::runtimeClass{"CLraListCtrl", &CWnd::runtimeClass};

std::int32_t CLraListCtrl::m_nEscapes = 0;

CLraListCtrl::CLraListCtrl() {
    m_nEscapes = 0;
}

CLraListCtrl::~CLraListCtrl() {
    // Here, and not in the base class, WM_DESTROY still finds this class's WindowProc.
    if (ownsWindow()) DestroyWindow();
}

void CLraListCtrl::attachHeader() {
    if (!m_HeaderCtrl.SubclassWindow(GetDlgItem(0))) return;
    m_HeaderCtrl.m_holdsRecords = true;
    m_HeaderCtrl.m_Height = 0;
    Initialize(1);
}

int CLraListCtrl::Initialize(int reset) {
    if (reset != 0) {
        m_FocusRow = m_FocusSubItem = -1;
        m_nEscapes = 0;
        m_nColumns = m_nItems = 0;
        m_Initialized = 0;
        m_ItemHeight = 0;
        m_ColSort = 1;
        m_Options = 1;
        return 1;
    }
    if (m_Initialized != 0 || m_hWnd == nullptr) return 1;
    ModifyStyle(platformSort, gridStyles);
    if (m_HeaderCtrl.m_hWnd == nullptr) return 0;
    GetMyListHeader(0);
    for (int col = 1; col < m_nColumns; ++col) {
        const LraListColum* const record = GetMyListHeader(col);
        if (record != nullptr && record->pEditWnd != nullptr) record->pEditWnd->ShowWindow(SW_HIDE);
    }
    SetItemHeight(m_ItemHeight);
    m_Initialized = 1;
    return 1;
}

int CLraListCtrl::UpdateItemCount() {
    if (m_hWnd == nullptr) return 0;
    const int count = GetItemCount();
    if (count != m_nItems || count == 0) Invalidate(TRUE);
    m_nItems = count;
    return count;
}

int CLraListCtrl::onSelectAll() {
    if (m_hWnd == nullptr) return 0;
    for (int row = GetNextItem(-1, LVNI_ALL); row >= 0; row = GetNextItem(row, LVNI_ALL)) {
        SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
    }
    return m_nItems;
}

int CLraListCtrl::UnselectAll(int keepRow, std::uint64_t keepData) {
    constexpr UINT current = LVIS_SELECTED | LVIS_FOCUSED;
    int kept = -1;
    const int count = GetItemCount();
    for (int row = 0; row < count; ++row) {
        const bool keep = row == keepRow || (keepData != 0 && GetItemData(row) == keepData);
        SetItemState(row, keep ? current : 0, current);
        if (keep) kept = row;
    }
    if (kept >= 0) {
        m_FocusRow = kept;
        m_FocusSubItem = -1;
        EnsureVisible(kept, FALSE);
    }
    Invalidate();
    return kept;
}

int CLraListCtrl::SetItemData(int row, std::uint64_t data) {
    return CListCtrl::SetItemData(row, static_cast<LPARAM>(data));
}

std::uint64_t CLraListCtrl::GetItemData(int row) {
    return static_cast<std::uint64_t>(CListCtrl::GetItemData(row));
}

int CLraListCtrl::InsertItem(int row, const char* text) {
    if (m_hWnd == nullptr) return 0;
    LVITEMA item = {};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.pszText = const_cast<char*>(text != nullptr ? text : "");
    return CListCtrl::InsertItem(item);
}

int CLraListCtrl::InsertItem(int row, const char* text, int image) {
    if (m_hWnd == nullptr) return 0;
    LVITEMA item = {};
    item.mask = LVIF_TEXT | LVIF_IMAGE;
    item.iItem = row;
    item.pszText = const_cast<char*>(text != nullptr ? text : "");
    item.iImage = image;
    return CListCtrl::InsertItem(item);
}

int CLraListCtrl::DeleteItem(int row) {
    return CListCtrl::DeleteItem(row);
}

int CLraListCtrl::GetValue(int row, int col, CString& out) {
    // Kept: row m_nItems, one past the last, is accepted too; its cells are empty.
    if (m_hWnd == nullptr || col < 0 || row < 0 || row > m_nItems) return 0;
    GetItemText(row, col, out);
    return 1;
}

CLraListCtrl::LraListColum* CLraListCtrl::GetMyListHeader(int col) {
    if (m_HeaderCtrl.m_hWnd == nullptr) return nullptr;
    m_nColumns = m_HeaderCtrl.GetItemCount();
    if (col < 0 || col >= m_nColumns) return nullptr;
    LraListColum* const record = controls::recordOf(m_HeaderCtrl, col);
    return record != nullptr ? record : controls::createRecord(m_HeaderCtrl, col);
}

CLraListCtrl::LraListColum* CLraListCtrl::InsertColumn(int col, const char* heading, int format, int width,
                                                       int typeData, int param) {
    if (m_hWnd == nullptr) return nullptr;
    LVCOLUMNA column = {};
    column.mask = LVCF_FMT | LVCF_TEXT | LVCF_SUBITEM | (width != -1 ? LVCF_WIDTH : 0u);
    column.fmt = format | HDF_OWNERDRAW;
    column.cx = width;
    column.pszText = const_cast<char*>(heading != nullptr ? heading : "");
    column.iSubItem = col;
    const int inserted = CListCtrl::InsertColumn(col, column);
    if (col < 0 || inserted < 0) return nullptr;
    drawCaptionOurselves(inserted);
    makeRoomForCaption(column.pszText);

    // Kept: the record is that of the index asked for, even where the platform chose another one.
    LraListColum* const record = GetMyListHeader(col);
    if (record == nullptr) {
        ::AfxMessageBox("ERROR AdoCol");
        return nullptr;
    }
    record->FtypeData = typeData;
    record->nParam = param;
    if (record->ColStyle == 0 && typeData == booleanType) record->ColStyle = checkBoxStyle;
    return record;
}

/// The format bit for owner drawing has another meaning in a list's columns: some platforms pass it on to the
/// header, others take it for a callback image.
void CLraListCtrl::drawCaptionOurselves(int item) {
    HDITEMA format = {};
    format.mask = HDI_FORMAT;
    if (!m_HeaderCtrl.GetItem(item, format) || (format.fmt & HDF_OWNERDRAW) != 0) return;
    format.fmt = (format.fmt & ~HDF_IMAGE) | HDF_OWNERDRAW;
    m_HeaderCtrl.SetItem(item, format);
}

/// A caption of more lines than the header was laid out for makes it higher.
void CLraListCtrl::makeRoomForCaption(const char* caption) {
    const std::string_view text(caption);
    if (1 + std::count(text.begin(), text.end(), '\n') <= m_HeaderCtrl.m_nLines) return;
    m_HeaderCtrl.CalculHeight();
    layOutHeader();
}

/// Makes the platform's list ask its header again how high it is, as when it has another size. Some platforms
/// do so at WM_SIZE, which this message leads to, others at this one.
void CLraListCtrl::layOutHeader() {
    const CRect place = GetWindowRect();
    WINDOWPOS same = {};
    same.hwnd = m_hWnd;
    same.cx = place.Width();
    same.cy = place.Height();
    same.flags = SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE;
    SendMessage(WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&same));
}

int CLraListCtrl::DeleteColumn(int col) {
    if (m_HeaderCtrl.m_hWnd != nullptr) controls::releaseRecord(m_HeaderCtrl, col);
    return CListCtrl::DeleteColumn(col);
}

int CLraListCtrl::GetColumsWidth() {
    const int count = m_HeaderCtrl.GetItemCount();
    if (count == 0) return 0;
    return m_HeaderCtrl.GetItemRect(m_HeaderCtrl.OrderToIndex(count - 1)).right -
           m_HeaderCtrl.GetItemRect(m_HeaderCtrl.OrderToIndex(0)).left;
}

int CLraListCtrl::GetColumnWidth(int col) {
    const int width = CListCtrl::GetColumnWidth(col);
    const LraListColum* const record = GetMyListHeader(col);
    if (width > 1 || record == nullptr) return width;
    return record->Width > 0 ? -record->Width : record->Width;
}

int CLraListCtrl::SetColumnWidth(int col, int width) {
    CListCtrl::SetColumnWidth(col, width < 1 ? 0 : width & 0xFFFF);
    LraListColum* const record = GetMyListHeader(col);
    if (record == nullptr) return 0;
    if (width != 0) record->Width = width;
    return record->Width;
}

int CLraListCtrl::widestCell(int col) {
    CClientDC dc(m_hWnd);
    const platform::Selected font(dc, GetFont());
    LONG widest = 0;
    for (int row = 0; row < m_nItems; ++row) {
        CString text;
        GetValue(row, col, text);
        widest = std::max(widest, dc.GetTextExtent(text.view()).cx);
    }
    return static_cast<int>(widest);
}

void CLraListCtrl::OnHdnDividerdblclick(NMHDR* header, LRESULT* result) {
    const int col = reinterpret_cast<const NMHEADERA*>(header)->iItem;
    UpdateItemCount();
    const int widest = widestCell(col);
    SetColumnWidth(col, widest != 0 ? widest + fitMargin : GetColumnWidth(col));
    *result = 0;
}

int CLraListCtrl::rowOrFocused(int row, int leastRemembered) {
    if (row < 0) row = GetNextItem(-1, LVNI_FOCUSED);
    if (row < 0 && m_FocusRow >= leastRemembered) row = m_FocusRow;
    return std::min(row, m_nItems - 1);
}

CRect CLraListCtrl::GetFocusedPos(int row) {
    CRect rect;
    // Kept: a remembered row 0 counts as none here, though not in SetFocusedPos.
    GetItemRect(rowOrFocused(row, 1), rect, LVIR_BOUNDS);
    return rect;
}

CRect CLraListCtrl::SetFocusedPos(RECT previous, int row) {
    row = rowOrFocused(row, 0);
    CRect rect;
    if (row < 0) return previous;
    if (GetItemRect(row, rect, LVIR_BOUNDS)) {
        Scroll({rect.left - previous.left, rect.top - previous.top});
    }
    EnsureVisible(row, FALSE);
    GetItemRect(row, rect, LVIR_BOUNDS);
    return rect;
}

int CLraListCtrl::SetItemHeight(int height) {
    if (m_hWnd == nullptr) return 0;
    if (height != m_ItemHeight && height >= 1 && height <= tallestRow) {
        CImageList images;
        images.Create(1, height, ILC_COLOR4, 1, 1);
        const HIMAGELIST before = SetImageList(images.GetSafeHandle(), LVSIL_SMALL);
        if (before != nullptr && before == m_heightImages) ::ImageList_Destroy(before);
        m_heightImages = images.Detach();
        m_ItemHeight = height;
    }
    CRect first;
    if (GetItemRect(0, first, LVIR_BOUNDS)) m_ItemHeight = first.bottom - first.top - 1;
    return m_ItemHeight;
}

void CLraListCtrl::releaseHeightImages() {
    // A list that shares its image lists leaves them to whoever made them.
    if (m_heightImages != nullptr && (GetStyle() & LVS_SHAREIMAGELISTS) != 0) {
        SetImageList(nullptr, LVSIL_SMALL);
        ::ImageList_Destroy(m_heightImages);
    }
    m_heightImages = nullptr;
}

int CLraListCtrl::ItemHeight() {
    return m_ItemHeight;
}
