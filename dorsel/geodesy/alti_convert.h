#pragma once
#include <optional>
#include <string>

#include <dorsel/geodesy/height_grid.h>
#include <platform/export.h>

/// Conversion between heights above the ellipsoid and altitudes, by a published height grid
/// (`geodesy::HeightGrid` tells the forms that are read).
///
/// A grid is found by its file name: a path as it stands, a bare name in the folder `ini` of, then directly
/// in, the local folder, the network folder and the program's folder. It is kept until the process ends.
class DORSEL_API AltiConvert {
  public:
    /// The converter of a grid file, the same one at each call (names are compared without regard to case).
    /// With `create` 0 null when it has not been asked for before; else it is made, without looking at the
    /// file. Null for a null or empty name.
    static AltiConvert* FindAltiConvert(const char* grid, int create);

    /// Reads the grid if that has not been done; 1 when it is there. 0 when the file is missing or is no
    /// whole grid: `fault` tells, and the next call tries again.
    int LoadGRID();

    /// Converts a height at a place: with `direction` 1 an altitude to a height above the ellipsoid, with 0
    /// the reverse. `geo` is longitude and latitude in decimal degrees from Greenwich. The result is not a
    /// number outside the grid's bounds, where the grid has no value, when the grid is not loaded, and for
    /// what is not a finite number.
    double Convert(double height, const double* geo, int direction) const;

    /// File name as first asked for.
    const std::string& name() const { return m_name; }
    /// Null until loaded.
    const geodesy::HeightGrid* grid() const { return m_grid ? &*m_grid : nullptr; }
    /// Why `LoadGRID` failed last; empty when it did not.
    const std::string& fault() const { return m_fault; }

    AltiConvert(const AltiConvert&) = delete;
    AltiConvert& operator=(const AltiConvert&) = delete;

  private:
    explicit AltiConvert(const char* grid) : m_name(grid) {}

    std::string m_name, m_fault;
    std::optional<geodesy::HeightGrid> m_grid;
};
