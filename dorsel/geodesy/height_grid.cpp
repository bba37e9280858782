#include <dorsel/geodesy/height_grid.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace geodesy {

namespace {

constexpr double noValue = 9999;

}  // namespace

/// How the nodes of a file follow one another and what each consists of.
struct HeightGrid::Layout {
    int order = 2;
    bool hasCoordinates = false, hasPrecision = false;

    std::size_t wordsPerNode() const { return 1U + (hasCoordinates ? 2U : 0U) + (hasPrecision ? 1U : 0U); }

    /// Index, row by row from the south-west, of the file's node number `number`.
    std::size_t place(std::size_t number, const GridFrame& frame) const {
        const bool byColumn = order == 1 || order == 3, southward = order == 2 || order == 3;
        const std::size_t column = byColumn ? number / frame.rows : number % frame.columns;
        const std::size_t row = byColumn ? number % frame.rows : number / frame.columns;
        return (southward ? frame.rows - 1 - row : row) * frame.columns + column;
    }

    bool readMnt(NumberReader& reader, GridFrame& frame, std::string& description, std::string& fault);
    static bool readGra(NumberReader& reader, GridFrame& frame, std::string& fault);
};

bool HeightGrid::Layout::readMnt(NumberReader& reader, GridFrame& frame, std::string& description,
                                 std::string& fault) {
    NumberReader line(reader.restOfLine());
    double values[11] = {};
    for (double& value : values) {
        if (!line.number(value)) {
            fault = "en-tête incomplet";
            return false;
        }
    }
    frame = {values[0], values[1], values[2], values[3], values[4], values[5], 0, 0};
    const bool isKnown = (values[6] == 1 || values[6] == 2 || values[6] == 3 || values[6] == 4) &&
                         (values[7] == 0 || values[7] == 1) && values[8] == 1 &&
                         (values[9] == 0 || values[9] == 1) && values[10] == 0;
    if (!isKnown) {
        fault = "en-tête : ordre, valeurs par noeud ou code de précision inconnus";
        return false;
    }
    order = static_cast<int>(values[6]);
    hasCoordinates = values[7] == 1;
    hasPrecision = values[9] == 1;
    description = line.restOfLine();
    description.erase(0, description.find_first_not_of(" \t"));
    while (!description.empty() && (description.back() == '\r' || description.back() == ' '))
        description.pop_back();
    return true;
}

bool HeightGrid::Layout::readGra(NumberReader& reader, GridFrame& frame, std::string& fault) {
    double* const values[] = {&frame.south, &frame.north,        &frame.west,
                              &frame.east,  &frame.stepLatitude, &frame.stepLongitude};
    for (double* value : values) {
        if (!reader.number(*value)) {
            fault = "en-tête incomplet";
            return false;
        }
    }
    return true;
}

bool HeightGrid::readNodes(NumberReader& reader, const Layout& layout, std::string& fault) {
    // Each word takes two bytes at least: a header that announces more is not believed.
    if (m_frame.nodes() > (reader.rest().size() + 1) / 2 / layout.wordsPerNode()) {
        fault = "moins de valeurs que de noeuds annoncés";
        return false;
    }
    m_values.resize(m_frame.nodes());
    if (layout.hasPrecision) m_precisions.resize(m_frame.nodes());
    for (std::size_t number = 0; number < m_values.size(); ++number) {
        double longitude = 0, latitude = 0, value = 0, precision = 0;
        const bool isWhole =
            (!layout.hasCoordinates || (reader.number(longitude) && reader.number(latitude))) &&
            reader.number(value) && (!layout.hasPrecision || reader.number(precision));
        if (!isWhole || !(precision >= 0 && precision <= 99)) {
            fault = "noeud " + std::to_string(number + 1) + " absent ou invalide";
            return false;
        }
        const std::size_t place = layout.place(number, m_frame);
        const bool hasValue = value > -noValue && value < noValue;
        m_values[place] = hasValue ? static_cast<float>(value) : std::numeric_limits<float>::quiet_NaN();
        if (layout.hasPrecision) m_precisions[place] = static_cast<signed char>(precision);
    }
    if (reader.word().empty()) return true;
    fault = "plus de valeurs que de noeuds annoncés";
    return false;
}

std::optional<HeightGrid> HeightGrid::parse(std::string_view text, std::string& fault) {
    HeightGrid grid;
    Layout layout;
    NumberReader reader(text), firstLine(NumberReader(text).restOfLine());
    int words = 0;
    while (words < 11 && !firstLine.word().empty()) ++words;
    const bool isRead = words == 11 ? layout.readMnt(reader, grid.m_frame, grid.m_description, fault)
                                    : Layout::readGra(reader, grid.m_frame, fault);
    if (!isRead || !grid.m_frame.complete(fault) || !grid.readNodes(reader, layout, fault))
        return std::nullopt;
    return grid;
}

bool HeightGrid::heightAt(const double geo[2], double& height) const {
    GridFrame::Cell cell{};
    if (!m_frame.find(geo[0], geo[1], cell)) return false;
    const float* south = &m_values[cell.row * m_frame.columns + cell.column];
    const float* north = south + m_frame.columns;
    const double found = bilinear(cell, static_cast<double>(south[0]), static_cast<double>(south[1]),
                                  static_cast<double>(north[0]), static_cast<double>(north[1]));
    if (std::isnan(found)) return false;
    height = found;
    return true;
}

int HeightGrid::precisionAt(const double geo[2]) const {
    GridFrame::Cell cell{};
    if (m_precisions.empty() || !m_frame.find(geo[0], geo[1], cell)) return -1;
    const signed char* south = &m_precisions[cell.row * m_frame.columns + cell.column];
    const signed char* north = south + m_frame.columns;
    return std::max({south[0], south[1], north[0], north[1]});
}

}  // namespace geodesy
