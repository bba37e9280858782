#include <kestra/controls/grid_rules.h>

#include <algorithm>
#include <cstdlib>

namespace controls {

namespace {

/// How far from its middle a check box is hit.
constexpr int checkReach = 7;

constexpr GridMenuEntry recordEntries[] = {{gridAddRow, "Nouvel Enregistrement"},
                                           {gridDeleteRows, "Effacer les enregistrements selectionnés"},
                                           {0, nullptr}};
constexpr GridMenuEntry exportEntries[] = {{gridPrintSelection, "Imprimer la selection (HTML)"},
                                           {gridPrintAll, "Imprimer Tout (HTML)"},
                                           {gridCopySelection, "Copier la selection (ClipBoard)"},
                                           {gridCopyAll, "Copier tout (ClipBoard)"}};

struct BitColor {
    unsigned bit, color;
};
/// The first three as in the printed listing.
constexpr BitColor bitColors[] = {{cellRed, 0x6464F0},
                                  {cellPink, 0xB4B4F0},
                                  {cellYellow, 0x64F0F0},
                                  {cellGreen, 0xB4F0B4},
                                  {cellBlue, 0xF0D2B4}};

}  // namespace

unsigned cellColor(int bits, unsigned plain) {
    for (const BitColor& each : bitColors) {
        if ((static_cast<unsigned>(bits) & each.bit) != 0) return each.color;
    }
    return plain;
}

std::string_view toggledCheck(std::string_view value) {
    return value == "0" ? "-1" : "0";
}

bool hitsCheckBox(const CheckClick& click) {
    const bool across = click.column == 0 || std::abs(click.x) <= checkReach;
    return across && (std::abs(click.y) <= checkReach || std::abs(click.y - click.rowHeight) <= checkReach);
}

int rowAfterDeletion(int current, std::span<const int> deleted) {
    for (std::size_t i = deleted.size(); i > 0; --i) current = std::min(current, deleted[i - 1] - 1);
    return current;
}

GridCell cellBeside(std::span<const GridColumn> display, int firstColumn, GridCell from, int step,
                    int rowCount) {
    std::vector<int> stops;
    int at = -1;
    for (const GridColumn& each : display) {
        if (each.shown && each.column >= firstColumn) stops.push_back(each.column);
        // A current column that is no stop lies behind the stop before it.
        if (each.column == from.column) at = static_cast<int>(stops.size()) - 1;
    }
    if (stops.empty() || rowCount <= 0) return from;
    const auto count = static_cast<int>(stops.size());
    if (at >= 0 && stops[static_cast<std::size_t>(at)] != from.column && step < 0) ++at;
    const long long place = static_cast<long long>(std::max(from.row, 0)) * count + at + step;
    if (place < 0 || place >= static_cast<long long>(rowCount) * count) return from;
    return {static_cast<int>(place / count), stops[static_cast<std::size_t>(place % count)]};
}

int columnAtPosition(std::span<const GridColumn> display, int position) {
    int found = -1;
    for (int place = 0; place < static_cast<int>(display.size()); ++place) {
        if (!display[static_cast<std::size_t>(place)].shown) continue;
        found = display[static_cast<std::size_t>(place)].column;
        if (place >= position) break;
    }
    return found;
}

std::vector<GridMenuEntry> gridMenu(int flags, bool editing, int column) {
    std::vector<GridMenuEntry> entries;
    if (editing && column == 0 && (flags & menuRecords) != 0) {
        entries.insert(entries.end(), std::begin(recordEntries), std::end(recordEntries));
    }
    if ((flags & menuExport) != 0) {
        entries.insert(entries.end(), std::begin(exportEntries), std::end(exportEntries));
    }
    return entries;
}

int gridMenuFlags(bool editing, int column) {
    if (!editing) return menuExport | menuTrack;
    return column == 0 ? menuRecords | menuExport | menuTrack : 0;
}

}  // namespace controls
