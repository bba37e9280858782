#include "table_list.h"

namespace {

constexpr int byCaptionEverything = 7;

}  // namespace

int TableList::show(const _ConnectionPtr& connection, const char* table) {
    if (UpdateEdit(commitAll) == 0) return -1;
    if (!m_RegName.IsEmpty()) SaveHeadToReg(nullptr, nullptr);
    const int count = Open(table, connection);
    if (count < 0) return -1;
    m_ColSort = 0;
    MakeColumns();
    LoadHeadFromReg(table, byCaptionEverything, nullptr);
    Invalidate();
    return count;
}
