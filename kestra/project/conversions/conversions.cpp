#include <cmath>
#include <limits>

#include <dorsel/geodesy/projection.h>
#include <kestra/project/chantier.h>

namespace {

/// GRS80 without a shift: stands in for a missing ellipsoid.
const Ellipsoide defaultEllipsoid(6378137.0, 0.08181919104280767, 0.0, 0.0, 0.0);

bool fits(double value) {
    return value > static_cast<double>(std::numeric_limits<std::int32_t>::min()) - 1 &&
           value < static_cast<double>(std::numeric_limits<std::int32_t>::max()) + 1;
}

}  // namespace

int Cchantier::GeoToXYZ(double* point, const CtesProj* projection, double* scale) const {
    if (projection == nullptr) projection = CtesProj::GetProjection(m_projection);
    if (projection == nullptr || point == nullptr) return 0;
    double plane[2];
    if (projection->GeoToXy(point, plane) == 0) return 0;
    if (scale != nullptr) *scale = projection->ProjScale(plane, point);
    point[0] = plane[0];
    point[1] = plane[1];
    return 1;
}

int Cchantier::XYZToGeo(double* point, const CtesProj* projection, double* scale) const {
    if (projection == nullptr) projection = CtesProj::GetProjection(m_projection, point);
    if (projection == nullptr || point == nullptr) return 0;
    double geo[2];
    if (projection->XyToGeo(point, geo) == 0) return 0;
    if (scale != nullptr) *scale = projection->ProjScale(point, geo);
    point[0] = geo[0];
    point[1] = geo[1];
    return 1;
}

int Cchantier::Lambert(double* point, const CtesProj* from, const CtesProj* to, double* scale) const {
    if (point == nullptr) return 0;
    // Kept: with both missing only the source is filled in, and the call fails.
    if (from == nullptr)
        from = CtesProj::GetProjection(m_projection, point);
    else if (to == nullptr)
        to = CtesProj::GetProjection(m_projection);
    if (from == nullptr || to == nullptr || from->GetEllipsoide() == nullptr) return 0;
    if (from == to) return 1;
    double geo[3] = {0, 0, point[2]}, plane[2];
    if (from->XyToGeo(point, geo) == 0 || from->GetEllipsoide()->DatumShift(geo, to->GetEllipsoide()) == 0 ||
        to->GeoToXy(geo, plane) == 0)
        return 0;
    point[0] = plane[0];
    point[1] = plane[1];
    if (scale != nullptr) *scale = to->ProjScale(point, geo);
    return 1;
}

int Cchantier::Lambert(std::int32_t* point, const CtesProj* from, const CtesProj* to, double* scale) const {
    if (point == nullptr) return 0;
    // Kept: the zone of a project whose projection asks for one is not looked for here, unlike above.
    if (from == nullptr)
        from = CtesProj::GetProjection(m_projection);
    else if (to == nullptr)
        to = CtesProj::GetProjection(m_projection);
    if (from == nullptr || to == nullptr) return 0;
    double converted[3] = {static_cast<double>(point[0]), static_cast<double>(point[1]), 0}, found = 0;
    if (Lambert(converted, from, to, scale != nullptr ? &found : nullptr) == 0) return 0;
    if (!fits(converted[0]) || !fits(converted[1])) return 0;
    point[0] = static_cast<std::int32_t>(converted[0]);
    point[1] = static_cast<std::int32_t>(converted[1]);
    if (scale != nullptr && from != to) *scale = found;
    return 1;
}

int Cchantier::DatumShift(double* point, const Ellipsoide* from, const Ellipsoide* to) const {
    if (from == nullptr) from = &defaultEllipsoid;
    if (to == nullptr) to = &defaultEllipsoid;
    return from != to ? from->DatumShift(point, to) : 0;
}

double Cchantier::LambertScale(const double* point, const CtesProj* projection) {
    return projection != nullptr ? projection->ProjScale(point, nullptr) : 0.0;
}
