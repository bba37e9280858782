#pragma once
#include <kestra/controls/lra_list_ctrl.h>

/// Column records where they live: in the application values of a header's items. Private to this folder.
namespace controls {

/// Record of an item, null when it has none.
CLraListCtrl::LraListColum* recordOf(const CHeaderCtrl& header, int item);
/// Gives an item a zeroed record; null when there is no such item.
CLraListCtrl::LraListColum* createRecord(CHeaderCtrl& header, int item);
/// Destroys the record of an item, if it has one.
void releaseRecord(CHeaderCtrl& header, int item);

}  // namespace controls
