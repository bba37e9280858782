#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a saved column layout does to a list, as plain functions over plain data: where it is kept, which of
/// its columns meets which of the list's, what is restored. Private to this folder.
///
/// Saved values may be anything: missing, or numbers that no list can have. Widths beyond `widestColumn`
/// either way, negative positions and those from `mostColumns` on are as good as missing; of other positions
/// that do not fit, because two are alike or there are fewer columns, only the order counts.
namespace controls {

constexpr int widestColumn = 10000;
/// A layout that claims to hold more columns is damaged.
constexpr int mostColumns = 10000;
/// Longest caption that is saved and read, in bytes.
constexpr int longestCaption = 255;

/// Flags of a load.
enum LayoutFlag : int {
    matchByCaption = 1,
    everyWidth = 2,
    everyOrder = 4,
    comboWidth = 16,
    comboHeight = 32,
};

/// Registry path of a layout below the user's hive: a name with a backslash is the path itself, any other
/// stands below `root` and `family`. Empty for a name that gives no path of its own below another key; the
/// deletion before a save would otherwise take the whole hive, or one of its main branches, with it.
std::string layoutPath(std::string_view root, std::string_view family, std::string_view name);
/// Name of a column's key below the layout.
std::string columnKeyName(int column);

/// One saved column; what could not be read is missing.
struct StoredColumn {
    std::optional<std::string> name;
    std::optional<std::int32_t> width, order;
};

/// One column of the list as it is. `width` is that on the screen, 0 for a hidden column.
struct ShownColumn {
    std::string caption;
    int width = 0;
    int order = 0;
};

/// What becomes of one column; what is missing stays. The width is as `SetColumnWidth` takes it.
struct ColumnChange {
    int column = 0;
    std::optional<std::string> caption;
    std::optional<int> width;
};

struct LayoutPlan {
    std::vector<ColumnChange> changes;
    std::vector<int> display;  ///< the columns in display order; empty when no position is restored
    int restored = 0;          ///< saved columns that were restored whole
    int damaged = 0;           ///< saved columns of which something needed could not be used
};

/// What a load with `flags` does. `stored` has an entry for each saved index, empty where the column's key is
/// missing; `shown` are the list's columns.
LayoutPlan planLayout(const std::vector<std::optional<StoredColumn>>& stored,
                      const std::vector<ShownColumn>& shown, int flags);

}  // namespace controls
