#pragma once
#include <string_view>

/// The ellipsoids and datums of the catalogue and of the settings, each with its source.
namespace geodesy {

struct ReferenceEllipsoid {
    std::string_view name;
    double radius;        ///< equatorial radius (m)
    double eccentricity;  ///< first eccentricity
    std::string_view source;
};

/// e = sqrt(2f - f2), with 1/f = 298.257222101.
inline constexpr ReferenceEllipsoid grs80 = {
    "GRS80", 6378137.0, 0.081819191042815791,
    "Geodetic Reference System 1980 (UGGI, Canberra 1979); EPSG 7019: a 6378137, 1/f 298.257222101"};
/// e = sqrt(1 - (b/a)2), with b = 6356515.0 m.
inline constexpr ReferenceEllipsoid clarke1880Ign = {
    "CLARKE1880IGN", 6378249.2, 0.082483256763417696,
    "IGN, NT/G 71, ellipsoïde Clarke 1880 IGN; EPSG 7011: a 6378249.2, b 6356515.0"};
inline constexpr ReferenceEllipsoid wgs84 = {
    "WGS84", 6378137.0, 0.081819190842621495,
    "World Geodetic System 1984; EPSG 7030: a 6378137, 1/f 298.257223563"};

inline constexpr ReferenceEllipsoid referenceEllipsoids[] = {grs80, clarke1880Ign, wgs84};

struct ReferenceDatum {
    std::string_view name;
    const ReferenceEllipsoid* ellipsoid;
    double shift[3];  ///< to WGS84 and RGF93 (m)
    double accuracy;  ///< of the shift (m), 0 for exact
    std::string_view source;
};

inline constexpr ReferenceDatum rgf93 = {
    "RGF93", &grs80, {0, 0, 0}, 0, "Réseau géodésique français 1993, décret 2000-1276; EPSG 6171"};
inline constexpr ReferenceDatum ntf = {
    "NTF",
    &clarke1880Ign,
    {-168, -60, 320},
    2,
    "IGN, NT/G 80, NTF vers WGS84; EPSG 1651 (NTF vers ETRS89), exactitude 2 m"};

inline constexpr ReferenceDatum referenceDatums[] = {rgf93, ntf};

/// Longitude of the Paris meridian from Greenwich, in degrees: 2° 20' 14.025" (IGN, NT/G 71; EPSG 8903).
inline constexpr double parisMeridian = 2 + 20 / 60.0 + 14.025 / 3600;

}  // namespace geodesy
