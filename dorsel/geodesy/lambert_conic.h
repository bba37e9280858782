#pragma once
#include <array>

#include <platform/export.h>

/// The Lambert conformal conic projection of the ellipsoid.
///
/// Sources of the formulas: IGN, Service de géodésie, "Projection cartographique conique conforme de Lambert,
/// algorithmes" (NT/G 71, 1995), algorithms ALG0001 to ALG0004, ALG0019 and ALG0054, which write X = Xs + R
/// sin(gamma), Y = Ys - R cos(gamma) with R = C exp(-n L) and gamma = n (lambda - lambda0); the series of the
/// inverse isometric latitude: C. F. F. Karney, "Transverse Mercator with an accuracy of a few nanometers"
/// (Journal of Geodesy 85, 2011), equation 36. What differs from ALG0002: the series stands in place of its
/// loop; its error is below 1e-15 radians for every eccentricity that is admitted.
namespace geodesy {

constexpr double degree = 3.14159265358979323846 / 180;  ///< in radians
constexpr double radian = 180 / 3.14159265358979323846;  ///< in degrees

/// Largest first eccentricity that the series are made for (that of the Earth's ellipsoids is below 0.084).
constexpr double largestEccentricity = 0.1;

/// One projection, ready for points. Angles are decimal degrees, lengths metres.
class DORSEL_API LambertConic {
  public:
    /// With two standard parallels (EPSG method 9802): at (`lambda0`, `phi0`) lies (`x0`, `y0`). Equal
    /// parallels are one standard parallel with scale 1. `isValid` is false afterwards for parallels that
    /// make no cone (both zero, or opposite), for a parallel on a pole and for an ellipsoid without radius.
    static LambertConic twoParallels(double radius, double eccentricity, double phi0, double phi1,
                                     double phi2, double lambda0, double x0, double y0);
    /// With one standard parallel `phi0` and scale `k0` on it (EPSG method 9801).
    static LambertConic oneParallel(double radius, double eccentricity, double phi0, double k0,
                                    double lambda0, double x0, double y0);

    bool isValid() const { return m_valid; }

    /// Longitude and latitude to X and Y. False, with `xy` untouched, at and beyond the poles, for longitudes
    /// outside ]-180, 180[, on the meridian opposite the central one and for what is not a finite number.
    /// `geo` and `xy` may be the same array.
    bool forward(const double geo[2], double xy[2]) const;

    /// X and Y to longitude and latitude. False, with `geo` untouched, for what `forward` gives for no point.
    bool inverse(const double xy[2], double geo[2]) const;

    /// Scale at a latitude: length on the plane by length on the ellipsoid. 0 at and beyond the poles.
    double scale(double latitude) const;

    /// n, C and the pole's coordinates Xs, Ys, as the tables of NT/G 71 give them.
    double exponent() const { return m_n; }
    double constant() const { return m_c; }
    double poleX() const { return m_poleX; }
    double poleY() const { return m_poleY; }

  private:
    LambertConic(double radius, double eccentricity, double lambda0);
    void setCone(double n, double c, double phi0, double x0, double y0);
    double isometricLatitude(double sinPhi) const;

    double m_radius = 0, m_e2 = 0;
    double m_lambda0 = 0;  ///< degrees
    double m_n = 0, m_c = 0, m_poleX = 0, m_poleY = 0;
    double m_inverseN = 0, m_inverseC2 = 0, m_side = 1;  ///< side: -1 for a cone open to the north
    std::array<double, 6> m_latitudeSeries{};            ///< from conformal to geographic latitude
    bool m_valid = false;
};

}  // namespace geodesy
