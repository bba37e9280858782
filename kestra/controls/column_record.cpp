#include <kestra/controls/column_record.h>

#include <cstdlib>
#include <memory>

namespace controls {

namespace {

using Record = CLraListCtrl::LraListColum;

/// Application values below this one are no addresses: items that other code inserted hold small numbers.
constexpr LPARAM firstAddress = 1000;

bool setValue(CHeaderCtrl& header, int item, LPARAM value) {
    HDITEMA change = {};
    change.mask = HDI_LPARAM;
    change.lParam = value;
    return header.SetItem(item, change) != FALSE;
}

}  // namespace

Record* recordOf(const CHeaderCtrl& header, int item) {
    HDITEMA found = {};
    found.mask = HDI_LPARAM;
    if (!header.GetItem(item, found) || found.lParam < firstAddress) return nullptr;
    return reinterpret_cast<Record*>(found.lParam);
}

Record* createRecord(CHeaderCtrl& header, int item) {
    auto record = std::make_unique<Record>();
    if (!setValue(header, item, reinterpret_cast<LPARAM>(record.get()))) return nullptr;
    return record.release();
}

void releaseRecord(CHeaderCtrl& header, int item) {
    const std::unique_ptr<Record> record(recordOf(header, item));
    if (record != nullptr) setValue(header, item, 0);
}

}  // namespace controls

CLraListCtrl::LraListColum::~LraListColum() {
    delete pEditWnd;
    std::free(pBuffer);
}
