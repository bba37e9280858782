#include <kestra/controls/grid_keys.h>

#include <algorithm>

namespace controls {

namespace {

/// Whether the key belongs to something else than the grid's text cells: a list of choices of its own, or the
/// list view while the editor is not in use.
bool isForAnotherWindow(const GridKeyState& state) {
    return state.hasColumn && state.columnStyle != checkBoxColumn &&
           (state.focusOnGrid || !state.focusOnEditor);
}

GridKeyDecision toRow(int row, unsigned key, const GridKeyState& state) {
    return {GridAction::moveToCell, row, state.column, key};
}

GridKeyDecision byColumns(int step, unsigned key) {
    return {GridAction::moveByColumns, 0, step, key};
}

GridKeyDecision toCorner(int row, int position, unsigned key, const GridKeyState& state) {
    if (!state.control) return {};
    return {GridAction::moveToPosition, row, position, key};
}

}  // namespace

GridKeyDecision decideGridKey(unsigned key, const GridKeyState& state) {
    if (!state.hasEditors || state.alt || state.listOpen) return {};
    if (key == keySpace && state.focusOnGrid && state.hasColumn && state.columnStyle == checkBoxColumn) {
        return {GridAction::toggleCheckBox, 0, 0, key};
    }
    if (key == keyDelete && state.focusOnGrid) return {GridAction::deleteRows, 0, 0, key};
    if (isForAnotherWindow(state)) return {};
    switch (key) {
        case keyTab:
            if (!state.editing || state.control) return {};
            return byColumns(state.shift ? -1 : 1, key);
        case keyEnter:
            return state.editing ? byColumns(1, key) : GridKeyDecision{};
        case keyRight:
            return state.editing && state.caretAtEnd ? byColumns(1, key) : GridKeyDecision{};
        case keyLeft:
            return state.editing && state.caretAtStart ? byColumns(-1, key) : GridKeyDecision{};
        case keyEnd:
            return toCorner(state.rowCount, lastPosition, key, state);
        case keyHome:
            // Kept: Ctrl+Home leads to column 1, column 0 is the row header's.
            return toCorner(0, 1, key, state);
        case keyPageUp:
            // Kept: a page up beyond the first row leads to no row.
            return toRow(state.row - state.rowsPerPage, key, state);
        case keyPageDown:
            return toRow(state.row + state.rowsPerPage, key, state);
        case keyUp:
            return toRow(std::max(0, state.row - 1), key, state);
        case keyDown:
            return toRow(state.row + 1, key, state);
        case keyF2:
            return state.editing ? GridKeyDecision{GridAction::selectText, 0, 0, key} : GridKeyDecision{};
        case keyEscape:
            if (!state.editing) return {};
            return {state.escapes > 0 ? GridAction::cancelRow : GridAction::restoreCell, 0, 0, key};
        default:
            return {};
    }
}

}  // namespace controls
