#include <dorsel/geodesy/ellipsoid.h>

#include <cmath>

#include <dorsel/geodesy/datum_grid.h>
#include <dorsel/geodesy/lambert_conic.h>
#include <dorsel/geodesy/reference_ellipsoids.h>

using geodesy::degree;
using geodesy::radian;

namespace {

constexpr double highest = 1e7;       // metres above or below the ellipsoid
constexpr double innermost = 1e6;     // metres from the centre
constexpr double smallSine = 1.0e-3;  // up to here four terms of the arc sine are exact

bool isPoint(const double geo[3]) {
    return std::fabs(geo[0]) < 180 && std::fabs(geo[1]) < 90 && std::fabs(geo[2]) <= highest;
}

/// The angle whose sine is `sine` (and whose cosine has the sign of `cosine`).
double angleOf(double sine, double cosine) {
    const double s2 = sine * sine;
    if (s2 < smallSine * smallSine && cosine > 0)
        return sine * (1 + s2 * (1.0 / 6 + s2 * (3.0 / 40 + s2 * (15.0 / 336))));
    return std::atan2(sine, cosine);
}

struct Angle {
    double sine, cosine;
    explicit Angle(double degrees) : sine(std::sin(degrees * degree)), cosine(std::cos(degrees * degree)) {}
};

/// Sine and cosine of a latitude up to their common factor.
struct Direction {
    double up, out;
    double length() const { return std::sqrt(up * up + out * out); }
};

/// Latitude of a point of the meridian plane at `p` from the axis and `z` above the equator: Bowring's step,
/// twice, from the reduced latitude that the point would have on the ellipsoid. `axis` is the polar radius by
/// the equatorial one.
Direction latitudeOf(double radius, double e2, double axis, double p, double z) {
    Direction reduced{z, p * axis}, latitude{};
    const double upward = e2 / axis * radius, outward = e2 * radius;
    for (int step = 0; step < 2; ++step) {
        const double inverse = 1 / reduced.length();
        const double sine = reduced.up * inverse, cosine = reduced.out * inverse;
        latitude = {z + upward * sine * sine * sine, p - outward * cosine * cosine * cosine};
        reduced = {latitude.up * axis, latitude.out};
    }
    return latitude;
}

}  // namespace

Ellipsoide::Ellipsoide(double radius, double eccentricity, double dx, double dy, double dz)
    : m_radius(radius),
      m_eccentricity(eccentricity),
      m_e2(eccentricity * eccentricity),
      m_axis(std::sqrt(1 - m_e2)),
      m_shift{dx, dy, dz} {}

Ellipsoide::~Ellipsoide() = default;

bool Ellipsoide::isSameDatum(const Ellipsoide& other) const {
    return m_radius == other.m_radius && m_eccentricity == other.m_eccentricity &&
           m_shift[0] == other.m_shift[0] && m_shift[1] == other.m_shift[1] && m_shift[2] == other.m_shift[2];
}

void Ellipsoide::useGrid(const std::string& name, std::shared_ptr<const geodesy::DatumGrid> grid) {
    m_gridName = name;
    m_grid = std::move(grid);
}

Ellipsoide::GridState Ellipsoide::gridState() const {
    if (m_gridName.empty()) return GridState::none;
    return m_grid != nullptr ? GridState::loaded : GridState::missing;
}

bool Ellipsoide::toGeocentric(const double geo[3], double xyz[3]) const {
    if (!isPoint(geo)) return false;
    const Angle lambda(geo[0]), phi(geo[1]);
    const double height = geo[2];
    const double normal = m_radius / std::sqrt(1 - m_e2 * phi.sine * phi.sine);
    const double p = (normal + height) * phi.cosine;
    xyz[0] = p * lambda.cosine;
    xyz[1] = p * lambda.sine;
    xyz[2] = (normal * (1 - m_e2) + height) * phi.sine;
    return true;
}

bool Ellipsoide::toGeographic(const double xyz[3], double geo[3]) const {
    const double p = std::hypot(xyz[0], xyz[1]), z = xyz[2];
    if (!(p > 0) || !(std::hypot(p, z) > innermost) || !std::isfinite(p) || !std::isfinite(z)) return false;
    const Direction at = latitudeOf(m_radius, m_e2, m_axis, p, z);
    const double sine = at.up / at.length(), cosine = at.out / at.length();
    const double longitude = std::atan2(xyz[1], xyz[0]) * radian;
    const double latitude = std::atan2(at.up, at.out) * radian;
    if (!(std::fabs(longitude) < 180 && std::fabs(latitude) < 90)) return false;
    geo[0] = longitude;
    geo[1] = latitude;
    geo[2] = p * cosine + z * sine - m_radius * std::sqrt(1 - m_e2 * sine * sine);
    return true;
}

/// The change is computed as small angles beside the point's own longitude and latitude: that keeps all
/// digits and spares two arc tangents.
bool Ellipsoide::shiftBy(const double shift[3], const Ellipsoide& target, double* point) const {
    if (!isPoint(point)) return false;
    const Angle lambda(point[0]), phi(point[1]);
    const double normal = m_radius / std::sqrt(1 - m_e2 * phi.sine * phi.sine);
    const double out = (normal + point[2]) * phi.cosine + lambda.cosine * shift[0] + lambda.sine * shift[1];
    const double east = lambda.cosine * shift[1] - lambda.sine * shift[0];
    const double p = std::sqrt(out * out + east * east);
    const double z = (normal * (1 - m_e2) + point[2]) * phi.sine + shift[2];
    if (!(p > 0 && p * p + z * z > innermost * innermost)) return false;

    const Direction at = latitudeOf(target.m_radius, target.m_e2, target.m_axis, p, z);
    const double inverse = 1 / at.length();
    const double turned = angleOf(east / p, out / p);
    const double raised = angleOf((at.up * phi.cosine - at.out * phi.sine) * inverse,
                                  (at.out * phi.cosine + at.up * phi.sine) * inverse);
    const double longitude = point[0] + turned * radian, latitude = point[1] + raised * radian;
    if (!(std::fabs(longitude) < 180 && std::fabs(latitude) < 90)) return false;
    point[0] = longitude;
    point[1] = latitude;
    return true;
}

/// The grid's parameters stand at places given in RGF93. That of this point is found from the three mean
/// values first and then from the grid's; as the parameters change by decimetres over ten kilometres, the
/// place is good to a hundredth of a millimetre when the last parameters are taken.
bool Ellipsoide::shiftWithGrid(double* point, const Ellipsoide& reference) const {
    double shift[3] = {m_shift[0], m_shift[1], m_shift[2]};
    double moved[3];
    for (int pass = 0; pass < 3; ++pass) {
        for (int i = 0; i < 3; ++i) moved[i] = point[i];
        if (!shiftBy(shift, reference, moved)) return false;
        if (pass < 2 && !m_grid->parametersAt(moved, shift)) return false;
    }
    point[0] = moved[0];
    point[1] = moved[1];
    return true;
}

int Ellipsoide::DatumShift(double* point, const Ellipsoide* target) const {
    if (point == nullptr || target == nullptr || !isPoint(point)) return 0;
    if (this == target || isSameDatum(*target)) return 1;
    if (m_grid == nullptr && target->m_grid == nullptr) {
        const double shift[3] = {m_shift[0] - target->m_shift[0], m_shift[1] - target->m_shift[1],
                                 m_shift[2] - target->m_shift[2]};
        return shiftBy(shift, *target, point) ? 1 : 0;
    }
    return shiftThroughRgf93(point, *target) ? 1 : 0;
}

/// With a grid the way leads through RGF93.
bool Ellipsoide::shiftThroughRgf93(double* point, const Ellipsoide& target) const {
    static const Ellipsoide rgf93(geodesy::grs80.radius, geodesy::grs80.eccentricity, 0, 0, 0);
    double moved[3] = {point[0], point[1], point[2]};
    const bool there = isSameDatum(rgf93) ||
                       (m_grid != nullptr ? shiftWithGrid(moved, rgf93) : shiftBy(m_shift, rgf93, moved));
    if (!there) return false;
    if (!target.isSameDatum(rgf93)) {
        double shift[3] = {target.m_shift[0], target.m_shift[1], target.m_shift[2]};
        if (target.m_grid != nullptr && !target.m_grid->parametersAt(moved, shift)) return false;
        for (double& value : shift) value = -value;
        if (!rgf93.shiftBy(shift, target, moved)) return false;
    }
    point[0] = moved[0];
    point[1] = moved[1];
    return true;
}
