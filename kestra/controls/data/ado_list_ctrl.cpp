#include <kestra/controls/data/ado_list_ctrl.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <kestra/controls/data/display_texts.h>
#include <kestra/controls/data/row_cache.h>

// The rows and columns of a data-bound list.

namespace {

constexpr int headerWidth = 22;
constexpr int hasText = 1;

struct FieldKind {
    ado20::DataTypeEnum type;
    int code;  // of the column: text, whole number, number, date, boolean
    int width;
};
constexpr FieldKind kinds[] = {
    {ado20::adSmallInt, 'I', 70},     {ado20::adInteger, 'I', 80}, {ado20::adUnsignedTinyInt, 'I', 60},
    {ado20::adBigInt, 'I', 90},       {ado20::adSingle, 'R', 80},  {ado20::adDouble, 'R', 90},
    {ado20::adCurrency, 'R', 90},     {ado20::adDecimal, 'R', 90}, {ado20::adNumeric, 'R', 90},
    {ado20::adDate, 'D', 130},        {ado20::adDBDate, 'D', 100}, {ado20::adDBTimeStamp, 'D', 130},
    {ado20::adLongVarChar, 'T', 220}, {ado20::adBoolean, 'B', 50}, {ado20::adLongVarWChar, 'T', 220}};
constexpr FieldKind textKind = {ado20::adVarChar, 'T', 120};

const FieldKind& kindOf(ado20::DataTypeEnum type) {
    const auto found = std::find_if(std::begin(kinds), std::end(kinds),
                                    [type](const FieldKind& each) { return each.type == type; });
    return found != std::end(kinds) ? *found : textKind;
}

int formatOf(const FieldKind& kind) {
    if (kind.code == 'B') return LVCFMT_CENTER;
    return kind.code == 'I' || kind.code == 'R' ? LVCFMT_RIGHT : LVCFMT_LEFT;
}

/// A 64-bit integer of a field does not keep its whole-number editor from taking a sign.
int editorCode(const FieldKind& kind) {
    return kind.code == 'I' ? 'R' : kind.code;
}

}  // namespace

const CRuntimeClass CAdoListCtrl::runtimeClass{"CAdoListCtrl", &CEditListCtrl::runtimeClass};

CAdoListCtrl::CAdoListCtrl()
    : m_cache(std::make_unique<controls::RowCache>(
          [this](int row, std::vector<std::string>& texts) { return ReadRow(row, texts); })) {}

CAdoListCtrl::~CAdoListCtrl() {
    if (ownsWindow()) DestroyWindow();
}

BOOL CAdoListCtrl::Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id) {
    return CListCtrl::Create(style | LVS_REPORT | LVS_OWNERDATA, rect, parent, id);
}

int CAdoListCtrl::Open(const char* source, _ConnectionPtr connection) {
    MyRecordsetPtr opened;
    if (opened.Open(source, connection, ado20::adCmdUnknown, ado20::adOpenKeyset, ado20::adLockOptimistic) <
        0) {
        return -1;
    }
    // The copy that goes must not close what the list now holds.
    _RecordsetPtr recordset;
    std::swap(recordset, opened.m_pRecordset);
    return SetRecordset(std::move(recordset));
}

int CAdoListCtrl::SetRecordset(_RecordsetPtr recordset) {
    UpdateEdit(dropEditor);
    dropRow();
    m_Recordset.Close();
    m_Recordset.m_pRecordset = std::move(recordset);
    m_FocusRow = m_FocusSubItem = -1;
    m_fields.clear();
    if (isOpen() && m_HeaderCtrl.GetItemCount() == 0) MakeColumns();
    m_EditFlags = isOpen() && m_Recordset.m_pRecordset->Supports(ado20::adUpdate) ? editable : 0;
    Initialize(0);
    return ShowRecords();
}

int CAdoListCtrl::MakeColumns() {
    if (m_hWnd == nullptr) return 0;
    UpdateEdit(dropEditor);
    for (int col = m_HeaderCtrl.GetItemCount(); col-- > 0;) DeleteColumn(col);
    InsertColumn(0, "", LVCFMT_LEFT, headerWidth, 0, 0);
    m_LastFixedCol = 1;
    const int count = m_Recordset.GetFieldCount();
    for (int field = 0; field < count; ++field) addColumn(field + 1, field);
    m_fields.clear();
    return m_HeaderCtrl.GetItemCount();
}

void CAdoListCtrl::addColumn(int col, long index) {
    try {
        const ado20::FieldPtr field = m_Recordset.m_pRecordset->GetFields()->GetItem(index);
        const FieldKind& kind = kindOf(field->GetType());
        const std::int64_t longest =
            std::min<std::int64_t>(field->GetDefinedSize(), std::numeric_limits<int>::max());
        const std::string name = field->GetName();
        LraListColum* const record = InsertColumn(col, name.c_str(), formatOf(kind), kind.width,
                                                  editorCode(kind), static_cast<int>(longest));
        if (record != nullptr && (field->GetAttributes() & ado20::adFldUpdatable) == 0) record->ReadOnly = 1;
        BindColumn(col, name.c_str());
    } catch (const _com_error& error) {
        m_Recordset.Erreur(error, "CAdoListCtrl::MakeColumns");
    }
}

int CAdoListCtrl::BindColumn(int col, const char* field) {
    LraListColum* const record = GetMyListHeader(col);
    if (record == nullptr || field == nullptr) return 0;
    std::free(record->pBuffer);
    record->pBuffer = ::strdup(field);
    m_fields.clear();
    return 1;
}

/// Field of a column, -1 for none.
int CAdoListCtrl::fieldOf(int col) {
    const int columns = m_HeaderCtrl.GetItemCount();
    if (static_cast<int>(m_fields.size()) != columns) {
        m_fields.assign(static_cast<std::size_t>(columns), -1);
        for (int each = 0; each < columns; ++each) {
            const auto* const name = static_cast<const char*>(GetMyListHeader(each)->pBuffer);
            if (name != nullptr && isOpen()) {
                m_fields[static_cast<std::size_t>(each)] = m_Recordset.GetIndexFromName(name);
            }
        }
    }
    return col >= 0 && col < columns ? m_fields[static_cast<std::size_t>(col)] : -1;
}

bool CAdoListCtrl::isOpen() {
    return m_Recordset.m_pRecordset && m_Recordset.m_pRecordset->GetState() == ado20::adStateOpen;
}

int CAdoListCtrl::records() {
    return isOpen() ? static_cast<int>(m_Recordset.GetRecordCount()) : 0;
}

int CAdoListCtrl::ShowRecords() {
    UpdateBookmarks();
    const int count = UpdateItemCount();
    Invalidate();
    return count;
}

int CAdoListCtrl::UpdateItemCount() {
    if (m_hWnd == nullptr) return 0;
    const int count = records() + (m_newRow ? 1 : 0);
    if (count != GetItemCount()) {
        SendMessage(LVM_SETITEMCOUNT, static_cast<WPARAM>(count), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
    }
    return CEditListCtrl::UpdateItemCount();
}

int CAdoListCtrl::onSelectAll() {
    SetItemState(-1, LVIS_SELECTED, LVIS_SELECTED);
    return m_nItems;
}

int CAdoListCtrl::UpdateBookmarks() {
    m_cache->forgetAll();
    m_Recordset.m_Position = -1;
    return 0;
}

bool CAdoListCtrl::MoveToRow(int row) {
    if (row < 0 || row >= records()) return false;
    if (m_Recordset.m_Position == row || m_Recordset.Move(row, -1) == 0) return true;
    // A failed move says 0, where the cursor is not: the next visit to row 0 must move there.
    m_Recordset.m_Position = -1;
    return false;
}

std::int64_t CAdoListCtrl::RowsRead() const {
    return m_cache->rowsRead();
}

bool CAdoListCtrl::ReadRow(int row, std::vector<std::string>& texts) {
    if (!MoveToRow(row)) return false;
    const int count = m_Recordset.GetFieldCount();
    CString text;
    for (int field = 0; field < count; ++field) {
        m_Recordset.GetValue(field, text);
        texts.emplace_back(text.view());
    }
    return true;
}

int CAdoListCtrl::GetValue(int row, int col, CString& out) {
    const int field = fieldOf(col);
    if (field < 0 || row < 0 || row > m_nItems) return 0;
    out.Empty();
    const auto typed = m_pending.find(field);
    if (row == m_FocusRow && typed != m_pending.end()) {
        out = std::string_view(typed->second);
    } else if (!isNewRow(row) && row < m_nItems) {
        const auto* const texts = m_cache->row(row);
        const auto index = static_cast<std::size_t>(field);
        if (texts != nullptr && index < texts->size()) out = std::string_view((*texts)[index]);
    }
    return hasText;
}

int CAdoListCtrl::DataBaseIsEmpty() {
    return records() == 0 && !m_newRow ? 1 : 0;
}

BOOL CAdoListCtrl::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    if (message == WM_NOTIFY && controls::answerDisplayText(*this, lParam)) {
        *result = 0;
        return TRUE;
    }
    return CEditListCtrl::OnChildNotify(message, wParam, lParam, result);
}
