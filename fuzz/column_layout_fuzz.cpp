#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <kestra/controls/column_layout.h>

/// Six bytes a saved column: how much of it there is, a caption's letter, its width and position as 16 bits
/// that may stand for 32; every third also makes a column of the list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    std::vector<std::optional<controls::StoredColumn>> stored;
    std::vector<controls::ShownColumn> shown;
    for (const std::uint8_t* at = data + 1; at + 6 <= data + size && stored.size() < 300; at += 6) {
        std::int16_t numbers[2];
        std::memcpy(numbers, at + 2, sizeof numbers);
        const std::int32_t scale = (*at & 1) != 0 ? 65536 : 1;
        stored.push_back(controls::StoredColumn{std::string(at[1] % 3, static_cast<char>(at[1])),
                                                numbers[0] * scale, numbers[1] * scale});
        if ((*at & 2) != 0) stored.back()->width.reset();
        if ((*at & 4) != 0) stored.back().reset();
        if (at[5] % 3 == 0)
            shown.push_back({std::string(1, static_cast<char>(at[5])), numbers[1], numbers[0]});
    }
    controls::LayoutPlan plan = controls::planLayout(stored, shown, data[0] & 7);
    for (const controls::ColumnChange& each : plan.changes) {
        if (each.column < 0 || each.column >= static_cast<int>(shown.size())) std::abort();
        if (each.width && std::abs(*each.width) > controls::widestColumn) std::abort();
    }
    std::sort(plan.display.begin(), plan.display.end());
    for (std::size_t place = 0; place < plan.display.size(); ++place) {
        if (plan.display[place] != static_cast<int>(place)) std::abort();
    }
    return plan.display.empty() || plan.display.size() == shown.size() ? 0 : (std::abort(), 0);
}
