#pragma once
#include <memory>
#include <string>

#include <platform/export.h>

namespace geodesy {
class DatumGrid;
}

/// A datum: an ellipsoid and the three values that lead from its geocentric frame to that of WGS84 and RGF93
/// (for our purposes the same frame).
///
/// Points are arrays of three numbers: longitude and latitude in decimal degrees, longitude counted from
/// Greenwich, and the height above the ellipsoid in metres.
///
/// Source of the formulas: IGN, "Changement de système géodésique, algorithmes" (NT/G 80, 1995), ALG0009 and
/// ALG0013; the way back from geocentric coordinates is B. R. Bowring's (Survey Review 23, 1976), repeated
/// once, which is exact to the last digits for heights up to 10,000 km.
class DORSEL_API Ellipsoide {
  public:
    /// Equatorial radius (m), first eccentricity, and the shift to WGS84 (m): X(WGS84) = X + `dx`, and so on.
    Ellipsoide(double radius, double eccentricity, double dx, double dy, double dz);
    ~Ellipsoide();

    double radius() const { return m_radius; }
    double eccentricity() const { return m_eccentricity; }
    /// The shift along axis 0, 1 or 2.
    double shift(int axis) const { return m_shift[axis]; }

    /// Moves a point from this datum to the target's, in place: longitude and latitude change, the height is
    /// used and left as it is. (Because it is left, there and back again may differ by a millimetre or two
    /// between datums whose ellipsoids lie fifty metres apart.) 1 on success, also when both are the same
    /// datum, the point then being untouched. 0, with the point untouched, without a point or a target; for
    /// poles and beyond, longitudes outside ]-180, 180[ before or after, heights beyond 10,000 km, and what
    /// is not a finite number; and outside the national grid where one is used (`useGrid`).
    int DatumShift(double* point, const Ellipsoide* target) const;

    /// Geographic to geocentric (m). False, with `xyz` untouched, where `DatumShift` fails.
    bool toGeocentric(const double geo[3], double xyz[3]) const;
    /// Geocentric to geographic. False, with `geo` untouched, on the polar axis, on the antimeridian and in
    /// the inner 1,000 km.
    bool toGeographic(const double xyz[3], double geo[3]) const;

    /// Replaces the three values by a national grid: between this datum and RGF93 the parameters of the
    /// point's place are used. `grid` is null when the grid that was asked for could not be had; the three
    /// values are then used, and `gridState` tells.
    void useGrid(const std::string& name, std::shared_ptr<const geodesy::DatumGrid> grid);
    enum class GridState { none, loaded, missing };
    GridState gridState() const;
    /// Name of the grid asked for; empty for none.
    const std::string& gridName() const { return m_gridName; }
    const geodesy::DatumGrid* grid() const { return m_grid.get(); }

    /// True when no shift separates the two: same radius, eccentricity and three values.
    bool isSameDatum(const Ellipsoide& other) const;

  private:
    bool shiftBy(const double shift[3], const Ellipsoide& target, double* point) const;
    bool shiftWithGrid(double* point, const Ellipsoide& reference) const;
    bool shiftThroughRgf93(double* point, const Ellipsoide& target) const;

    double m_radius, m_eccentricity, m_e2;
    double m_axis;  ///< polar radius by equatorial radius
    double m_shift[3];
    std::string m_gridName;
    std::shared_ptr<const geodesy::DatumGrid> m_grid;
};
