#pragma once
#include <cstddef>
#include <string>
#include <string_view>

/// What the text grids have in common: a frame of nodes at equal steps, and numbers between blanks.
namespace geodesy {

/// Largest number of nodes along one side, and in a grid: more than any national grid has.
constexpr std::size_t mostNodesAlong = 100'000;
constexpr std::size_t mostNodes = 50'000'000;

/// Nodes from west to east and from south to north, in decimal degrees.
struct GridFrame {
    double west = 0, east = 0, south = 0, north = 0, stepLongitude = 0, stepLatitude = 0;
    std::size_t columns = 0, rows = 0;

    /// Counts the nodes from the bounds and steps; false, with a message in `fault`, for a frame that is
    /// none or whose bounds are no whole number of steps apart.
    bool complete(std::string& fault);
    std::size_t nodes() const { return columns * rows; }

    /// The cell that holds a place: its south-west node and the place inside it, 0 to 1 each way.
    struct Cell {
        std::size_t column, row;
        double east, north;
    };
    /// False outside the bounds and for what is no number. The north and east bounds belong to the grid.
    bool find(double longitude, double latitude, Cell& cell) const;
};

/// Bilinear interpolation between the values of a cell's corners.
inline double bilinear(const GridFrame::Cell& cell, double southWest, double southEast, double northWest,
                       double northEast) {
    const double south = southWest + (southEast - southWest) * cell.east;
    const double north = northWest + (northEast - northWest) * cell.east;
    return south + (north - south) * cell.north;
}

/// Reads the numbers of a text one by one.
class NumberReader {
  public:
    explicit NumberReader(std::string_view text) : m_text(text) {}
    /// Next word that lies between blanks and line ends; empty at the end of the text.
    std::string_view word();
    /// Next word as a number; false when there is none or the word is no finite number.
    bool number(double& value);
    /// The rest of the line, its end passed over.
    std::string_view restOfLine();
    /// What has not been read yet.
    std::string_view rest() const { return m_text; }

  private:
    std::string_view m_text;
};

/// Reads a grid file: a path with a separator as it stands, a bare name in the folder `ini` of, and then
/// directly in, the local folder, the network folder and the program's folder. False, with a message in
/// `fault`, when there is none, it cannot be read or it has more than 1 GB.
bool readGridFile(const char* name, std::string& content, std::string& fault);

}  // namespace geodesy
