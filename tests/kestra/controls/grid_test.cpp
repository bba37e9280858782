#include <kestra/controls/grid_keys.h>
#include <kestra/controls/grid_rules.h>

#include <gtest/gtest.h>

namespace {

using namespace controls;
using enum GridAction;

/// A state in letters: g focus on the grid, e on the editor, t text column, b combo column, c check-box
/// column, + editable, ^ Control, < caret at the start, > at the end, 1 one Escape before, s Shift, a Alt, o
/// the list of choices is open, - no editors yet.
GridKeyState stateOf(std::string_view letters) {
    const auto has = [letters](char letter) { return letters.find(letter) != letters.npos; };
    GridKeyState state;
    state.hasEditors = !has('-');
    state.focusOnGrid = has('g');
    state.focusOnEditor = has('e');
    state.hasColumn = has('t') || has('b') || has('c');
    state.columnStyle = has('b') ? comboColumn : has('c') ? checkBoxColumn : 0;
    state.editing = has('+');
    state.control = has('^');
    state.shift = has('s');
    state.alt = has('a');
    state.listOpen = has('o');
    state.caretAtStart = has('<');
    state.caretAtEnd = has('>');
    state.escapes = has('1');
    state.row = 5;
    state.column = 2;
    state.rowCount = 40;
    state.rowsPerPage = 8;
    return state;
}

struct KeyCase {
    unsigned key;
    const char* state;
    GridAction action;
    int row = 0, column = 0;
};

/// Every rule of the grid's keys, each once as it holds and once as it just does not.
const KeyCase keyTable[] = {
    {keySpace, "gc+", toggleCheckBox},
    {keySpace, "ec+", none},
    {keySpace, "-gc+", none},
    {keyDelete, "gt+", deleteRows},
    {keyDelete, "et+", none},
    // A text or combo column's keys are the grid's only while its editor has the focus.
    {keyDown, "gt+", none},
    {keyTab, "eb+", moveByColumns, 0, 1},
    {keyDown, "g", moveToCell, 6, 2},
    {keyTab, "g", none},
    {keyEnter, "g", none},
    {keyRight, "et+>", moveByColumns, 0, 1},
    {keyRight, "et+<", none},
    {keyLeft, "et+<", moveByColumns, 0, -1},
    {keyLeft, "et+>", none},
    {keyEnd, "et+^", moveToPosition, 40, 10000},
    {keyEnd, "et+", none},
    {keyHome, "g^", moveToPosition, 0, 1},
    {keyHome, "et+", none},
    {keyPageUp, "et+", moveToCell, -3, 2},
    {keyPageDown, "et+", moveToCell, 13, 2},
    {keyUp, "et+", moveToCell, 4, 2},
    {keyDown, "et+", moveToCell, 6, 2},
    {keyDown, "-et+", none},
    {keyF2, "et+", selectText},
    {keyF2, "g", none},
    {keyEscape, "et+", restoreCell},
    {keyEscape, "et+1", cancelRow},
    {keyEscape, "g", none},
    {'A', "et+", none},
    // Beside the table: going back, leaving, and what belongs to the system or to an open list.
    {keyTab, "et+s", moveByColumns, 0, -1},
    {keyTab, "et+^", none},
    {keyDown, "eb+a", none},
    {keyEnter, "eb+o", none},
};

TEST(GridKeys, TheTable) {
    for (const KeyCase& each : keyTable) {
        const GridKeyDecision decision = decideGridKey(each.key, stateOf(each.state));
        SCOPED_TRACE(testing::Message() << each.key << " " << each.state);
        EXPECT_EQ(decision.action, each.action);
        EXPECT_EQ(decision.row, each.row);
        EXPECT_EQ(decision.column, each.column);
        EXPECT_EQ(decision.result, each.action == none ? 0 : each.key);
    }
}

TEST(GridKeys, ControlHomeLeadsToColumn1) {
    EXPECT_EQ(decideGridKey(keyHome, stateOf("et+^")).column, 1);
}

TEST(GridKeys, APageUpBeyondTheFirstRowLeadsToNoRow) {
    GridKeyState state = stateOf("et+");
    state.row = 39;
    EXPECT_EQ(decideGridKey(keyDown, state).row, 40);
    state.row = -1;
    EXPECT_EQ(decideGridKey(keyUp, state).row, 0);
    EXPECT_EQ(decideGridKey(keyPageUp, state).row, -9);
    state.row = 20;
    EXPECT_EQ(decideGridKey(keyPageUp, state).row, 12);
}

TEST(GridRules, ChecksAreToggledByValueAndHitNearTheirMiddle) {
    EXPECT_EQ(toggledCheck("1"), "0");
    EXPECT_EQ(toggledCheck("0"), "-1");
    EXPECT_EQ(toggledCheck(""), "0");
    const std::pair<CheckClick, bool> clicks[] = {{{7, -7, 2, 20}, true},  {{8, 0, 2, 20}, false},
                                                  {{800, 0, 0, 20}, true}, {{0, 8, 2, 20}, false},
                                                  {{0, 13, 2, 20}, true},  {{0, 28, 2, 20}, false}};
    for (const auto& [click, hit] : clicks) EXPECT_EQ(hitsCheckBox(click), hit) << click.x << "," << click.y;
}

TEST(GridRules, TheRowAfterADeletion) {
    EXPECT_EQ(rowAfterDeletion(6, std::vector{2, 5, 7}), 1);
    EXPECT_EQ(rowAfterDeletion(3, std::vector{5, 7}), 3);
    EXPECT_EQ(rowAfterDeletion(0, std::vector{0}), -1);
}

TEST(GridRules, StepsGoAlongTheShownColumnsAndOnToTheNextRow) {
    // Column 0 is the row header's, 3 is hidden, 2 stands before 1.
    const GridColumn display[] = {{0, true}, {2, true}, {3, false}, {1, true}};
    const struct {
        GridCell from;
        int step;
        GridCell to;
    } cases[] = {{{4, 2}, 1, {4, 1}},  {{4, 1}, 1, {5, 2}},   {{4, 2}, -1, {3, 1}},
                 {{9, 1}, 1, {9, 1}},  {{0, 2}, -1, {0, 2}},  {{4, 3}, 1, {4, 1}},
                 {{4, 3}, -1, {4, 2}}, {{-1, -1}, 1, {0, 2}}, {{4, 77}, 1, {4, 2}}};
    for (const auto& each : cases) {
        EXPECT_EQ(cellBeside(display, 1, each.from, each.step, 10), each.to)
            << each.from.row << "," << each.from.column << " by " << each.step;
    }
    EXPECT_EQ(cellBeside(display, 9, {4, 2}, 1, 10), (GridCell{4, 2})) << "no column to stop at";
    EXPECT_EQ(cellBeside(display, 1, {-1, -1}, 1, 0), (GridCell{-1, -1})) << "no rows";
    EXPECT_EQ(columnAtPosition(display, 1), 2);
    EXPECT_EQ(columnAtPosition(display, 2), 1) << "behind the hidden one";
    EXPECT_EQ(columnAtPosition(display, 10000), 1);
    EXPECT_EQ(columnAtPosition({}, 1), -1);
}

TEST(GridRules, TheMenuForEachRightClick) {
    const std::string records = "Nouvel Enregistrement|Effacer les enregistrements selectionnés|-|";
    const std::string exports =
        "Imprimer la selection (HTML)|Imprimer Tout (HTML)|"
        "Copier la selection (ClipBoard)|Copier tout (ClipBoard)|";
    const struct {
        bool editing;
        int column, flags;
        std::string texts;
    } cases[] = {{true, 0, 7, records + exports}, {true, 3, 0, ""}, {false, 0, 6, exports}};
    for (const auto& each : cases) {
        std::string texts;
        for (const GridMenuEntry& entry : gridMenu(each.flags, each.editing, each.column))
            texts += std::string(entry.text != nullptr ? entry.text : "-") + "|";
        EXPECT_EQ(gridMenuFlags(each.editing, each.column), each.flags);
        EXPECT_EQ(texts, each.texts);
    }
}

TEST(GridRules, ColoursOfAttributes) {
    EXPECT_EQ(cellColor(1, 0xFFFFFF), 0xFFFFFFu);
    EXPECT_EQ(cellColor(cellPink | cellRed | cellYellow, 0), 0x6464F0u);
    EXPECT_EQ(cellColor(cellPink | cellYellow | cellToRowEnd, 0), 0xB4B4F0u);
    EXPECT_EQ(cellColor(cellBlue | cellGreen, 0), 0xB4F0B4u);
}

}  // namespace
