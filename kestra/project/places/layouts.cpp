#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include <dorsel/globals.h>
#include <kestra/project/chantier.h>
#include <kestra/project/writing/change_file.h>
#include <platform/files.h>

namespace {

constexpr std::string_view layoutTag = "$MEP;";
constexpr std::size_t longestLayout = 500;
constexpr double leastX = 20000.0;

/// A rectangle on the ground: its first corner, the direction of its first side (grads from the north axis,
/// 100 along X) and its sides in paper units.
struct Layout {
    double x, y, angle, width, height, scale;
};

/// Takes a decimal number off the front of a text.
std::optional<double> takeNumber(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\v\f"), text.size()));
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    double number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
    return number;
}

/// Numbers between commas; false when one is missing.
template <std::size_t count>
bool takeNumbers(std::string_view text, std::array<double, count>& numbers) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto number = takeNumber(text);
        if (!number) return false;
        numbers[i] = *number;
        if (i + 1 == count) break;
        if (!text.starts_with(',')) return false;
        text.remove_prefix(1);
    }
    return true;
}

/// Moves behind the next `mark`; false when there is none.
bool skipBehind(std::string_view& text, std::string_view mark) {
    const std::size_t found = text.find(mark);
    if (found == text.npos) return false;
    text.remove_prefix(found + mark.size());
    return true;
}

/// The layout described by what stands behind its tag, which has the line's first ";".
/// Kept: a layout is looked for in the characters behind its tag, on the lines that follow too.
std::optional<Layout> layoutOf(std::string_view text) {
    std::array<double, 5> numbers;
    text = text.substr(0, longestLayout);
    if (!skipBehind(text, ";") || !skipBehind(text, ";") || !skipBehind(text, "INS,")) return std::nullopt;
    if (!takeNumbers(text, numbers) || !skipBehind(text, "ECH,") || !(numbers[0] > leastX))
        return std::nullopt;
    const double scale = takeNumber(text).value_or(0.0);
    const auto isFinite = [](double number) { return std::isfinite(number); };
    if (!std::all_of(numbers.begin(), numbers.end(), isFinite) || !isFinite(scale)) return std::nullopt;
    return Layout{numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], scale};
}

/// Minimum X and Y, maximum X and Y.
using Extent = std::array<double, 4>;

Extent extentOf(const Layout& layout) {
    const double angle = (layout.angle - 100.0) * grade_en_radian;
    const double width = layout.scale * layout.width / 100.0, height = layout.scale * layout.height / 100.0;
    const double steps[][2] = {{0, 0},
                               {width * std::cos(angle), width * std::sin(angle)},
                               {-height * std::sin(angle), height * std::cos(angle)},
                               {-width * std::cos(angle), -width * std::sin(angle)}};
    Extent extent{layout.x, layout.y, layout.x, layout.y};
    double x = layout.x, y = layout.y;
    for (const auto& step : steps) {
        x += step[0];
        y += step[1];
        extent = {std::min(extent[0], x), std::min(extent[1], y), std::max(extent[2], x),
                  std::max(extent[3], y)};
    }
    return extent;
}

bool fits(const Extent& extent) {
    return std::all_of(extent.begin(), extent.end(), [](double value) {
        return value > std::numeric_limits<std::int32_t>::min() - 1.0 &&
               value < std::numeric_limits<std::int32_t>::max() + 1.0;
    });
}

}  // namespace

int Cchantier::GetMinMaxMepCht(const char* project, std::int32_t box[4]) {
    std::fill_n(box, 4, 0);
    const std::string path = project != nullptr ? project : "";
    std::string content;
    if (path.size() < 2 || !kestra::ChangeFile::settle(path) ||
        !platform::readWholeFile(path.c_str(), content))
        return 0;
    int count = 0;
    Extent all{};
    for (std::string_view text = content; skipBehind(text, layoutTag);) {
        const auto layout = layoutOf(text);
        if (!layout) continue;
        const Extent extent = extentOf(*layout);
        if (!fits(extent)) continue;
        if (count++ == 0) all = extent;
        for (std::size_t i = 0; i < 2; ++i) {
            all[i] = std::min(all[i], extent[i]);
            all[i + 2] = std::max(all[i + 2], extent[i + 2]);
        }
    }
    std::transform(all.begin(), all.end(), box,
                   [](double value) { return static_cast<std::int32_t>(value); });
    return count;
}
