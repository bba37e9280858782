#pragma once
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/// What the editable grid decides without a window: its menu, where a step along the columns leads, the row
/// to stand on after a deletion, check boxes, colours. Private to this folder.
namespace controls {

/// Attribute bits of a cell, as `GetValue` returns them.
enum CellBit : unsigned {
    cellHasText = 1,
    cellPink = 2,
    cellRed = 4,
    cellYellow = 8,
    cellToRowEnd = 16,
    cellGreen = 32,
    cellBlue = 64,
};

/// Background of a cell that is not selected, as 0xBBGGRR: red before pink, yellow, green and blue;
/// `plain` when no bit gives one.
unsigned cellColor(int bits, unsigned plain);

/// What a check-box cell becomes when it is toggled: "-1" when it was "0", else "0".
std::string_view toggledCheck(std::string_view value);

/// Whether a click hits the check box in the middle of a cell (or, vertically, one row height lower). In
/// column 0 every place across counts.
struct CheckClick {
    int x, y;  ///< from the cell's centre
    int column;
    int rowHeight;
};
bool hitsCheckBox(const CheckClick& click);

/// The row to make current after rows (in ascending order) were deleted while `current` was.
int rowAfterDeletion(int current, std::span<const int> deleted);

/// One column of the grid, in display order.
struct GridColumn {
    int column;
    bool shown;
};
struct GridCell {
    int row, column;
    bool operator==(const GridCell&) const = default;
};
/// The cell `step` columns further among those that are shown and not below `firstColumn`; behind the last
/// one follows the next row's first, before the first the row above's last. Stays where there is none.
GridCell cellBeside(std::span<const GridColumn> display, int firstColumn, GridCell from, int step,
                    int rowCount);
/// The column shown at a position; a hidden one gives the next shown, behind the last the last. -1 without
/// any.
int columnAtPosition(std::span<const GridColumn> display, int position);

/// Commands of the context menu.
enum GridCommand : int {
    gridAddRow = 0x10000001,
    gridDeleteRows = 0x10000002,
    gridPrintSelection = 0x10000010,
    gridPrintAll = 0x10000011,
    gridCopySelection = 0x10000012,
    gridCopyAll = 0x10000013,
};
/// What the menu is asked to offer.
enum GridMenuFlag : int { menuRecords = 1, menuExport = 2, menuTrack = 4 };

struct GridMenuEntry {
    int command;  ///< 0: a separator
    const char* text;
};
/// Entries for a right click on `column`.
std::vector<GridMenuEntry> gridMenu(int flags, bool editing, int column);
/// What a right click on `column` asks for.
int gridMenuFlags(bool editing, int column);

}  // namespace controls
