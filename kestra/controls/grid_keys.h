#pragma once

/// The key rules of the editable grid: what a key does, from the key and the state of the grid alone.
/// Private to this folder; `CEditListCtrl` gathers the state and carries the decision out.
namespace controls {

/// Keys by their virtual-key codes.
enum GridKey : unsigned {
    keyTab = 0x09,
    keyEnter = 0x0D,
    keyEscape = 0x1B,
    keySpace = 0x20,
    keyPageUp = 0x21,
    keyPageDown = 0x22,
    keyEnd = 0x23,
    keyHome = 0x24,
    keyLeft = 0x25,
    keyUp = 0x26,
    keyRight = 0x27,
    keyDown = 0x28,
    keyDelete = 0x2E,
    keyF2 = 0x71,
};

constexpr int checkBoxColumn = 3;
constexpr int comboColumn = 2;

struct GridKeyState {
    bool hasEditors = true;      ///< the in-place text editors exist
    bool focusOnGrid = false;    ///< the focus is the grid itself
    bool focusOnEditor = false;  ///< the focus is the active editor, or a part of it
    bool hasColumn = false;      ///< there is a current column, of style `columnStyle`
    int columnStyle = 0;         ///< 0 text, 2 combo box, 3 check box
    bool editing = false;        ///< the grid is editable
    bool control = false;        ///< the Control key is down
    bool shift = false;
    bool alt = false;
    bool listOpen = false;      ///< the drop-down list of the current column is open
    bool caretAtStart = false;  ///< the selection of the focused editor starts at 0
    bool caretAtEnd = false;    ///< it ends at or behind the end of the text
    int row = -1, column = -1;  ///< current cell
    int rowCount = 0;
    int rowsPerPage = 0;
    int escapes = 0;  ///< consecutive Escape keys before this one
};

enum class GridAction {
    none,
    toggleCheckBox,  ///< of the current cell
    deleteRows,      ///< the selected ones, after a question
    moveByColumns,   ///< `column` columns on
    moveToPosition,  ///< row `row`, the column shown at position `column`
    moveToCell,      ///< row `row`, column `column`
    selectText,      ///< all of the editor's
    restoreCell,     ///< drop what was typed and enter the cell anew
    cancelRow,       ///< ask for the row's changes to be dropped; where that is refused, `restoreCell`
};

struct GridKeyDecision {
    GridAction action = GridAction::none;
    int row = 0;
    int column = 0;
    /// What the key's handler answers: the key when it is dealt with, 0 to pass it on.
    unsigned result = 0;
};

/// The column behind the last one, for `moveToPosition`.
constexpr int lastPosition = 10000;

/// The rules, first match first. A page up that would lead above the first row gives a
/// negative row, which `SetCurrentSubItem` takes for none. Keys with Alt,
/// and Ctrl+Tab, are never the grid's; Shift turns Tab round.
GridKeyDecision decideGridKey(unsigned key, const GridKeyState& state);

}  // namespace controls
