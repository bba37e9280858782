#include <kestra/controls/column_layout.h>

#include <algorithm>
#include <cstdio>
#include <numeric>

#include <platform/cp1252.h>

namespace controls {

namespace {

/// The columns in display order.
std::vector<int> displayOrder(const std::vector<ShownColumn>& shown) {
    std::vector<int> display(shown.size());
    std::iota(display.begin(), display.end(), 0);
    std::stable_sort(display.begin(), display.end(), [&](int first, int second) {
        return shown[static_cast<std::size_t>(first)].order < shown[static_cast<std::size_t>(second)].order;
    });
    return display;
}

/// The display order in which each column that has a wish is as near to it as the others allow, and the
/// others keep their order. Wishes that are a permutation are granted to the letter.
std::vector<int> arranged(const std::vector<int>& display, const std::vector<std::optional<int>>& wishes) {
    std::vector<int> wishing, result(display.size(), -1);
    for (const int column : display) {
        if (wishes[static_cast<std::size_t>(column)]) wishing.push_back(column);
    }
    std::stable_sort(wishing.begin(), wishing.end(), [&](int first, int second) {
        return *wishes[static_cast<std::size_t>(first)] < *wishes[static_cast<std::size_t>(second)];
    });
    const auto count = static_cast<int>(display.size());
    auto left = static_cast<int>(wishing.size());
    int place = -1;
    for (const int column : wishing) {
        const int wish = *wishes[static_cast<std::size_t>(column)];
        place = std::min(std::max(wish, place + 1), count - left--);
        result[static_cast<std::size_t>(place)] = column;
    }
    auto next = result.begin();
    for (const int column : display) {
        if (wishes[static_cast<std::size_t>(column)]) continue;
        next = std::find(next, result.end(), -1);
        *next = column;
    }
    return result;
}

bool isPlace(const std::optional<std::int32_t>& place) {
    return place && *place >= 0 && *place < mostColumns;
}

bool isWidth(const std::optional<std::int32_t>& width) {
    return width && *width >= -widestColumn && *width <= widestColumn;
}

/// The list as the columns restored so far have left it: what the next one is measured by.
class Planner {
  public:
    Planner(const std::vector<ShownColumn>& shown, int flags)
        : m_shown(shown),
          m_flags(flags),
          m_start(displayOrder(shown)),
          m_display(m_start),
          m_wishes(shown.size()) {}

    void restore(int index, const StoredColumn& stored) {
        const int target = targetOf(index, stored);
        if (target < 0) return;
        ColumnChange change{target, {}, {}};
        const bool widthGood = takeWidth(stored, change);
        const bool orderWanted = wanted(everyOrder, placeOf(target));
        const bool whole = widthGood && (!orderWanted || isPlace(stored.order));
        if (whole) {
            change.caption = stored.name;
            if (orderWanted) moveTo(target, *stored.order);
        }
        ++(whole ? m_plan.restored : m_plan.damaged);
        if (change.width || change.caption) m_plan.changes.push_back(std::move(change));
    }
    LayoutPlan finish() {
        if (m_moved) m_plan.display = arranged(m_start, m_wishes);
        return std::move(m_plan);
    }

  private:
    bool wanted(int flag, int current) const { return (m_flags & flag) != 0 || current <= 0; }
    int placeOf(int column) const {
        return static_cast<int>(std::find(m_display.begin(), m_display.end(), column) - m_display.begin());
    }
    bool isCaptionOf(int column, const std::string& caption) const {
        return platform::equalNoCase1252(m_shown[static_cast<std::size_t>(column)].caption, caption);
    }

    int targetOf(int index, const StoredColumn& stored) const {
        const auto count = static_cast<int>(m_shown.size());
        const int same = index < count ? index : -1;
        if ((m_flags & matchByCaption) == 0 || !stored.name) return same;
        if (same >= 0 && isCaptionOf(same, *stored.name)) return same;
        for (int column = 0; column < count; ++column) {
            if (isCaptionOf(column, *stored.name)) return column;
        }
        return -1;
    }

    bool takeWidth(const StoredColumn& stored, ColumnChange& change) {
        ShownColumn& column = m_shown[static_cast<std::size_t>(change.column)];
        if (!wanted(everyWidth, column.width)) return true;
        if (!isWidth(stored.width)) return false;
        change.width = column.width = *stored.width;
        return true;
    }

    void moveTo(int column, int place) {
        m_moved = true;
        m_wishes[static_cast<std::size_t>(column)] = place;
        std::erase(m_display, column);
        const auto last = static_cast<int>(m_display.size());
        m_display.insert(m_display.begin() + std::clamp(place, 0, last), column);
    }

    std::vector<ShownColumn> m_shown;
    int m_flags;
    std::vector<int> m_start, m_display;
    std::vector<std::optional<int>> m_wishes;
    bool m_moved = false;
    LayoutPlan m_plan;
};

}  // namespace

std::string layoutPath(std::string_view root, std::string_view family, std::string_view name) {
    std::string path(name);
    if (path.find('\\') == std::string::npos) {
        if (path.empty()) return {};
        return std::string(root) + '\\' + std::string(family) + '\\' + path;
    }
    path.erase(0, path.find_first_not_of('\\'));
    path.erase(path.find_last_not_of('\\') + 1);
    return path.find('\\') != std::string::npos ? path : std::string();
}

std::string columnKeyName(int column) {
    char name[24];
    std::snprintf(name, sizeof name, "Col_%.03d", column);
    return name;
}

LayoutPlan planLayout(const std::vector<std::optional<StoredColumn>>& stored,
                      const std::vector<ShownColumn>& shown, int flags) {
    Planner planner(shown, flags);
    for (std::size_t index = 0; index < stored.size(); ++index) {
        if (stored[index]) planner.restore(static_cast<int>(index), *stored[index]);
    }
    return planner.finish();
}

}  // namespace controls
