#pragma once
#include <windows.h>

#include <string_view>

/// How the lists draw what stands in a cell. Private to this folder.
namespace controls {

/// A check box of at most 14 pixels in the middle of a cell, ticked when the text is a number other than 0.
void drawCheckBox(HDC dc, const RECT& cell, const char* value);
/// One line, in the middle of the height, aligned as `headerFormat` (HDF_ bits) says, 4 pixels from the
/// edges, cut with an ellipsis.
void drawCellText(HDC dc, const RECT& cell, int headerFormat, std::string_view text);

}  // namespace controls
