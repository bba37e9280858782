#pragma once
#include <array>
#include <string>
#include <string_view>

#include <kestra/project/conversions/coordinate_operation.h>
#include <platform/export.h>

namespace kestra {

/// Converts the points of a text line by line, keeping everything but the coordinates as it is.
///
/// Fields are separated by ";", else by tabs, else by runs of blanks: the first line that is not empty
/// decides (or `Options::separator`). A field between double quotes may hold separators. Numbers have a
/// decimal point or comma; the result takes the mark of the field it replaces. Which columns hold the point:
/// those that the options name, else those that the first line names (X, Y, Z; E, N, H; EST, NORD, ALTITUDE;
/// LON, LAT; LONGITUDE, LATITUDE; in any case), else the first three. A first line whose coordinates are no
/// numbers is a header and copied, as are empty lines and those that begin with "#".
///
/// The height is read from its column when that holds a number, and replaced when the operation changes
/// heights; a missing one counts as 0 unless it is to be replaced.
class KESTRA_API PointLines {
  public:
    struct Options {
        std::array<int, 3> columns = {0, 0, 0};  ///< of X, Y, height, from 1; 0: not named
        char separator = 0;                      ///< 0: found out
        int decimals = -1;                       ///< -1: 4 for metres, 9 for degrees
        bool roundTrip = false;                  ///< converts each point back and compares
    };

    /// `from` and `to` are names of projections; one that asks for a zone gets that of the first good point,
    /// for all points. `isSound` tells whether the others are known.
    PointLines(const std::string& from, const std::string& to, const CoordinateOperation& heights,
               const Options& options);

    bool isSound() const { return m_fault.empty(); }
    const std::string& fault() const { return m_fault; }

    /// Converts one line (without its line feed) and appends the result and a line feed to `out`. A line that
    /// cannot be converted is appended as "# ligne N : reason : line", so that nothing is lost and nothing
    /// unconverted passes for a result (ASCII, whatever encoding the line has). Returns the reason, null when
    /// there is none.
    const char* convert(std::string_view line, std::string& out);

    long lines() const { return m_lines; }
    long points() const { return m_points; }
    long badLines() const { return m_badLines; }
    /// With its projections, once a point has been converted.
    const CoordinateOperation& operation() const { return m_operation; }
    /// Columns in use, from 1.
    const std::array<int, 3>& columns() const { return m_columns; }
    /// Worst accuracy (m) at the points converted: see `CoordinateOperation::accuracyAt`.
    double worstAccuracy() const { return m_worstAccuracy; }
    /// Largest difference between a point and what came back (m, degrees for geographic systems), in the
    /// plane and in height.
    double roundTripPlane() const { return m_roundTripPlane; }
    double roundTripHeight() const { return m_roundTripHeight; }

  private:
    struct Field {
        std::size_t start = 0, length = 0;
    };
    using Fields = std::array<Field, 3>;

    const char* convertPoint(std::string_view line, std::string& out);
    void chooseSeparator(std::string_view line);
    bool chooseColumns(std::string_view line);
    Field fieldAt(std::string_view line, std::size_t& position) const;
    bool findFields(std::string_view line, Fields& fields) const;
    bool chooseZones(const double point[3]);
    void checkRoundTrip(const double in[3], const double out[3]);
    void append(std::string_view line, const Fields& fields, const double point[3], std::string& out) const;

    std::string m_from, m_to, m_fault;
    CoordinateOperation m_operation;
    Options m_options;
    std::array<int, 3> m_columns{};
    char m_separator = 0;
    bool m_started = false, m_tracksAccuracy = false;
    std::array<int, 3> m_decimals{};
    long m_lines = 0, m_points = 0, m_badLines = 0;
    double m_worstAccuracy = 0, m_roundTripPlane = 0, m_roundTripHeight = 0;
};

}  // namespace kestra
