#include <dorsel/geodesy/projection_definition.h>

#include <dorsel/geodesy/reference_ellipsoids.h>

namespace geodesy {

namespace {

constexpr double grade = 0.9;  // degrees

ProjectionDefinition withDatum(const char* name, const ReferenceDatum& datum, std::string_view source) {
    ProjectionDefinition made;
    made.name = name;
    made.radius = datum.ellipsoid->radius;
    made.eccentricity = datum.ellipsoid->eccentricity;
    made.hasDatum = true;
    for (int i = 0; i < 3; ++i) made.shift[i] = datum.shift[i];
    made.datumName = datum.name;
    made.accuracy = datum.accuracy;
    made.source = source;
    return made;
}

/// NTF: one standard parallel in grads, on the Paris meridian. The scales are IGN's, which the secant
/// parallels of the definition give (48° 35' 54.682" and 50° 23' 45.282" for zone I); those that EPSG rounds
/// otherwise move points by at most 0.6 mm.
ProjectionDefinition lambertZone(const char* name, double phi0Grades, double k0, double x0, double y0,
                                 std::string_view source) {
    ProjectionDefinition made = withDatum(name, ntf, source);
    made.kind = ProjectionKind::oneParallel;
    made.phi0 = phi0Grades * grade;
    made.k0 = k0;
    made.lambda0 = parisMeridian;
    made.x0 = x0;
    made.y0 = y0;
    return made;
}

ProjectionDefinition onRgf93(const char* name, double phi0, double phi1, double phi2, double x0, double y0,
                             std::string_view source) {
    ProjectionDefinition made = withDatum(name, rgf93, source);
    made.kind = ProjectionKind::twoParallels;
    made.phi0 = phi0;
    made.phi1 = phi1;
    made.phi2 = phi2;
    made.lambda0 = 3;
    made.x0 = x0;
    made.y0 = y0;
    return made;
}

/// Conformal zone of the parallel `zone`: parallels 45' to either side, northing 1,200,000 m in zone 42 and a
/// million more each zone.
ProjectionDefinition conformalZone(const char* name, int zone, std::string_view source) {
    return onRgf93(name, zone, zone - 0.75, zone + 0.75, 1'700'000, (zone - 41) * 1'000'000.0 + 200'000,
                   source);
}

std::vector<ProjectionDefinition> makePublished() {
    constexpr std::string_view zones =
        "arrêté du 23 mars 2000 modifié (projections coniques conformes 9 zones); EPSG 3942 à 3950";
    constexpr std::string_view none =
        "aucune zone officielle n'existe à 41° : constantes déduites de la règle des neuf zones publiées";
    return {
        lambertZone("L-I  :", 55, 0.99987734, 600'000, 200'000,
                    "IGN, NT/G 71 et registre IGN-F LAMB1 (EPSG 27561 : k0 0.999877341)"),
        lambertZone("L-II :", 52, 0.99987742, 600'000, 200'000,
                    "IGN, NT/G 71 et registre IGN-F LAMB2; EPSG 27562"),
        lambertZone("L-III:", 49, 0.9998775, 600'000, 200'000,
                    "IGN, NT/G 71 et registre IGN-F LAMB3 (EPSG 27563 : k0 0.999877499)"),
        lambertZone("L-IV :", 46.85, 0.99994471, 234.358, 185'861.369,
                    "IGN, NT/G 71 et registre IGN-F LAMB4; EPSG 27564"),
        lambertZone("L-IIE:", 52, 0.99987742, 600'000, 2'200'000,
                    "IGN, NT/G 71 et registre IGN-F LAMBE; EPSG 27572"),
        onRgf93("L-93 :", 46.5, 44, 49, 700'000, 6'600'000,
                "IGN, NT/G 71 et registre IGN-F LAMB93; décret 2000-1276; EPSG 2154"),
        conformalZone("LZ93-CC41:", 41, none),
        conformalZone("LZ93-CC42:", 42, zones),
        conformalZone("LZ93-CC43:", 43, zones),
        conformalZone("LZ93-CC44:", 44, zones),
        conformalZone("LZ93-CC45:", 45, zones),
        conformalZone("LZ93-CC46:", 46, zones),
        conformalZone("LZ93-CC47:", 47, zones),
        conformalZone("LZ93-CC48:", 48, zones),
        conformalZone("LZ93-CC49:", 49, zones),
        conformalZone("LZ93-CC50:", 50, zones),
        withDatum("GEO-RGF93:", rgf93, rgf93.source),
        withDatum("GEO-NTF:", ntf, ntf.source),
    };
}

}  // namespace

const std::vector<ProjectionDefinition>& publishedProjections() {
    static const std::vector<ProjectionDefinition> published = makePublished();
    return published;
}

}  // namespace geodesy
