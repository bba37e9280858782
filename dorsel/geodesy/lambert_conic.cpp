#include <dorsel/geodesy/lambert_conic.h>

#include <cmath>
#include <numbers>

namespace geodesy {

namespace {

/// Coefficients of sin(2j chi) in phi - chi, powers of the third flattening n up to the sixth.
std::array<double, 6> latitudeSeries(double e2) {
    const double root = std::sqrt(1 - e2);
    const double n = (1 - root) / (1 + root);
    const double n2 = n * n, n3 = n2 * n, n4 = n2 * n2, n5 = n4 * n, n6 = n3 * n3;
    return {2 * n - 2.0 / 3 * n2 - 2 * n3 + 116.0 / 45 * n4 + 26.0 / 45 * n5 - 2854.0 / 675 * n6,
            7.0 / 3 * n2 - 8.0 / 5 * n3 - 227.0 / 45 * n4 + 2704.0 / 315 * n5 + 2323.0 / 945 * n6,
            56.0 / 15 * n3 - 136.0 / 35 * n4 - 1262.0 / 105 * n5 + 73814.0 / 2835 * n6,
            4279.0 / 630 * n4 - 332.0 / 35 * n5 - 399572.0 / 14175 * n6,
            4174.0 / 315 * n5 - 144838.0 / 6237 * n6,
            601676.0 / 22275 * n6};
}

/// Sum of series[j] sin(2(j+1) chi), by Clenshaw's recurrence.
double sineSum(const std::array<double, 6>& series, double sin2, double cos2) {
    const double twice = 2 * cos2;
    double next = 0, sum = 0;
    for (int j = 5; j >= 0; --j) {
        const double now = twice * sum - next + series[static_cast<std::size_t>(j)];
        next = sum;
        sum = now;
    }
    return sum * sin2;
}

/// Sine and cosine; the angles at the apex are small in use, and their power series then end soon.
void sineAndCosine(double angle, double& sine, double& cosine) {
    constexpr double small = 0.25;
    if (!(std::fabs(angle) < small)) {
        sine = std::sin(angle);
        cosine = std::cos(angle);
        return;
    }
    const double t = angle * angle;
    sine = angle -
           angle * t * (1.0 / 6 - t * (1.0 / 120 - t * (1.0 / 5040 - t * (1.0 / 362880 - t / 39916800))));
    cosine = 1 - t * (0.5 - t * (1.0 / 24 -
                                 t * (1.0 / 720 - t * (1.0 / 40320 - t * (1.0 / 3628800 - t / 479001600)))));
}

bool isLatitude(double latitude) {
    return latitude > -90 && latitude < 90;
}

}  // namespace

LambertConic::LambertConic(double radius, double eccentricity, double lambda0)
    : m_radius(radius),
      m_e2(eccentricity * eccentricity),
      m_lambda0(lambda0),
      m_latitudeSeries(latitudeSeries(m_e2)) {
    m_valid = radius > 0 && radius < 1e12 && eccentricity >= 0 && eccentricity < largestEccentricity &&
              std::fabs(lambda0) <= 180;
}

LambertConic LambertConic::oneParallel(double radius, double eccentricity, double phi0, double k0,
                                       double lambda0, double x0, double y0) {
    LambertConic conic(radius, eccentricity, lambda0);
    const double n = std::sin(phi0 * degree);
    if (!conic.m_valid || !isLatitude(phi0) || std::fabs(n) < 1e-6 || !(k0 > 0)) {
        conic.m_valid = false;
        return conic;
    }
    const double normal = radius / std::sqrt(1 - conic.m_e2 * n * n);
    const double onParallel = k0 * normal * std::cos(phi0 * degree) / n;
    conic.setCone(n, onParallel * std::exp(n * conic.isometricLatitude(n)), phi0, x0, y0);
    return conic;
}

LambertConic LambertConic::twoParallels(double radius, double eccentricity, double phi0, double phi1,
                                        double phi2, double lambda0, double x0, double y0) {
    if (phi1 == phi2 && phi0 == phi1) return oneParallel(radius, eccentricity, phi0, 1, lambda0, x0, y0);
    LambertConic conic(radius, eccentricity, lambda0);
    const double sin1 = std::sin(phi1 * degree), sin2 = std::sin(phi2 * degree);
    const double parallel1 = std::cos(phi1 * degree) / std::sqrt(1 - conic.m_e2 * sin1 * sin1);
    const double parallel2 = std::cos(phi2 * degree) / std::sqrt(1 - conic.m_e2 * sin2 * sin2);
    const double l1 = conic.isometricLatitude(sin1);
    const double n =
        phi1 == phi2 ? sin1 : std::log(parallel2 / parallel1) / (l1 - conic.isometricLatitude(sin2));
    if (!conic.m_valid || !isLatitude(phi1) || !isLatitude(phi2) || !(std::fabs(phi0) <= 90) ||
        !(std::fabs(n) >= 1e-6)) {
        conic.m_valid = false;
        return conic;
    }
    conic.setCone(n, radius * parallel1 / n * std::exp(n * l1), phi0, x0, y0);
    return conic;
}

void LambertConic::setCone(double n, double c, double phi0, double x0, double y0) {
    m_n = n;
    m_c = c;
    m_inverseN = 1 / n;
    m_inverseC2 = 1 / (c * c);
    m_side = n > 0 ? 1 : -1;
    m_poleX = x0;
    const bool atApex = phi0 * m_side >= 90;
    m_poleY = y0 + (atApex ? 0 : c * std::exp(-n * isometricLatitude(std::sin(phi0 * degree))));
    m_valid = std::isfinite(m_c) && std::isfinite(m_poleX) && std::isfinite(m_poleY) && m_inverseC2 > 0;
}

/// atanh(s) - e atanh(e s); the second term as its power series, which ends below the last bit.
double LambertConic::isometricLatitude(double s) const {
    const double t = m_e2 * s * s;
    const double series =
        1 + t * (1.0 / 3 + t * (1.0 / 5 + t * (1.0 / 7 + t * (1.0 / 9 + t * (1.0 / 11 + t * (1.0 / 13))))));
    return 0.5 * std::log((1 + s) / (1 - s)) - m_e2 * s * series;
}

bool LambertConic::forward(const double geo[2], double xy[2]) const {
    const double longitude = geo[0], latitude = geo[1];
    if (!(m_valid && isLatitude(latitude) && longitude > -180 && longitude < 180)) return false;
    double difference = longitude - m_lambda0;
    if (difference > 180) difference -= 360;
    if (difference < -180) difference += 360;
    if (std::fabs(difference) == 180) return false;

    const double gamma = m_n * (difference * degree);
    const double r = m_c * std::exp(-m_n * isometricLatitude(std::sin(latitude * degree)));
    double sine = 0, cosine = 0;
    sineAndCosine(gamma, sine, cosine);
    const double x = m_poleX + r * sine, y = m_poleY - r * cosine;
    if (!std::isfinite(x) || !std::isfinite(y)) return false;
    xy[0] = x;
    xy[1] = y;
    return true;
}

bool LambertConic::inverse(const double xy[2], double geo[2]) const {
    const double east = (xy[0] - m_poleX) * m_side, south = (m_poleY - xy[1]) * m_side;
    const double ratio = (east * east + south * south) * m_inverseC2;  // exp(-2 n L)
    if (!(m_valid && ratio > 0 && std::isfinite(ratio))) return false;

    const double gamma = std::atan2(east, south);
    const double difference = gamma * m_inverseN * radian;
    double longitude = m_lambda0 + difference;
    if (longitude > 180) longitude -= 360;
    if (longitude < -180) longitude += 360;

    const double u = std::exp(m_inverseN * std::log(ratio));  // exp(-2 L)
    const double root = std::sqrt(u), inverse = 1 / (1 + u);
    const double sinChi = (1 - u) * inverse, cosChi = 2 * root * inverse;
    const double sin2 = 2 * sinChi * cosChi, cos2 = 1 - 2 * sinChi * sinChi;
    const double phi = std::atan2(1 - u, 2 * root) + sineSum(m_latitudeSeries, sin2, cos2);
    const double latitude = phi * radian;
    if (!(std::fabs(difference) < 180 && std::fabs(longitude) < 180 && isLatitude(latitude))) return false;
    geo[0] = longitude;
    geo[1] = latitude;
    return true;
}

double LambertConic::scale(double latitude) const {
    if (!m_valid || !isLatitude(latitude)) return 0;
    const double s = std::sin(latitude * degree);
    const double r = m_c * std::exp(-m_n * isometricLatitude(s));
    return m_n * r * std::sqrt(1 - m_e2 * s * s) / (m_radius * std::cos(latitude * degree));
}

}  // namespace geodesy
