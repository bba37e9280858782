#include "table_list.h"

#include <algorithm>
#include <cstdlib>

namespace {

bool isNumber(ado20::DataTypeEnum type) {
    switch (type) {
        case ado20::adSmallInt:
        case ado20::adInteger:
        case ado20::adDouble:
        case ado20::adCurrency:
        case ado20::adDecimal:
            return true;
        default:
            return false;
    }
}

int widthOf(ado20::DataTypeEnum type) {
    switch (type) {
        case ado20::adDate:
            return 130;
        case ado20::adVarChar:
        case ado20::adVarWChar:
            return 110;
        case ado20::adLongVarChar:
        case ado20::adLongVarWChar:
            return 240;
        default:
            return 82;
    }
}

}  // namespace

int TableList::show(const _ConnectionPtr& connection, const char* table) {
    MyRecordsetPtr records;
    if (records.Open(table, connection, ado20::adCmdTable, ado20::adOpenKeyset, ado20::adLockOptimistic) < 0)
        return -1;
    // The two change places, and the copy that goes closes what was shown before.
    std::swap(m_records.m_pRecordset, records.m_pRecordset);
    m_ColSort = 0;
    addColumns();
    showRows();
    return GetItemCount();
}

void TableList::addColumns() {
    DeleteAllItems();
    for (int column = GetHeaderCtrl()->GetItemCount(); column-- > 0;) DeleteColumn(column);
    const int count = m_records.GetFieldCount();
    for (int column = 0; column < count; ++column) {
        const CString name = m_records.GetFieldName(column);
        const ado20::DataTypeEnum type =
            m_records.m_pRecordset->GetFields()->GetItem(long{column})->GetType();
        InsertColumn(column, name, isNumber(type) ? LVCFMT_RIGHT : LVCFMT_LEFT, widthOf(type), 0, 0);
    }
}

void TableList::showRows() {
    SendMessage(WM_SETREDRAW, FALSE);
    DeleteAllItems();
    const int columns = m_records.GetFieldCount();
    CString text;
    for (long moved = 0; moved >= 0 && m_records.Eof() == 0; moved = m_records.MoveNext()) {
        const int row = InsertItem(GetItemCount(), "");
        for (int column = 0; column < columns; ++column)
            if (m_records.GetValue(column, text)) SetItemText(row, column, text);
    }
    GetHeaderCtrl()->m_SortCol = m_ColSort;
    SendMessage(WM_SETREDRAW, TRUE);
    UpdateItemCount();
    Invalidate();
}

int TableList::SortColum(int col) {
    const int wanted = col >= 65536 ? m_ColSort : col;
    if (wanted == 0) return 0;
    const CString field = m_records.GetFieldName(std::abs(wanted) - 1);
    const CString order = CString("[") + field + (wanted < 0 ? "] DESC" : "] ASC");
    if (m_records.Sort(order) < 0) return 0;
    m_ColSort = wanted;
    showRows();
    GetHeaderCtrl()->Invalidate();
    return 1;
}
