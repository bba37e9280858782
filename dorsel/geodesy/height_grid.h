#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <dorsel/geodesy/grid_text.h>
#include <platform/export.h>

namespace geodesy {

/// A height grid: at each node the height of the altitude's zero surface above the ellipsoid (m).
///
/// Two published text forms are read, told apart by their content:
/// - ".MNT" (IGN, "Format des grilles de conversion altimétrique MNT et TXT"): a line with west, east, south,
///   north, step in longitude, step in latitude (degrees), order of the nodes (1 column by column from the
///   south-west, each northwards; 2 row by row from the north-west; 3 column by column from the north-west,
///   each southwards; 4 row by row from the south-west), 1 when each node has its coordinates, number of
///   values a node (1), 1 when each node has a precision code, constant to add (0), description; then for
///   each node its coordinates if any, its value, its precision code if any.
/// - ".GRA" (Gravsoft): south, north, west, east, step in latitude, step in longitude, then the values row by
///   row from the north-west; 9999 stands where there is none.
/// The numbers may be broken into lines anywhere. Values from 9999 up or -9999 down stand for none.
class DORSEL_API HeightGrid {
  public:
    /// Empty, with a message in `fault`, when the text is not one whole grid.
    static std::optional<HeightGrid> parse(std::string_view text, std::string& fault);

    /// Height of the zero surface at a place. False, with `height` untouched, outside the grid and in a cell
    /// with a corner that has no value.
    bool heightAt(const double geo[2], double& height) const;
    /// Worst precision code of the four nodes around a place; -1 when the grid has none and outside it.
    int precisionAt(const double geo[2]) const;

    const GridFrame& frame() const { return m_frame; }
    /// Description from the header; empty for none.
    const std::string& description() const { return m_description; }

  private:
    struct Layout;
    bool readNodes(NumberReader& reader, const Layout& layout, std::string& fault);

    GridFrame m_frame;
    std::vector<float> m_values;  ///< row by row from the south-west; not a number where there is none
    std::vector<signed char> m_precisions;
    std::string m_description;
};

}  // namespace geodesy
