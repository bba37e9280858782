#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <platform/export.h>

namespace geodesy {

enum class ProjectionKind {
    geographic,    ///< longitude and latitude themselves, in decimal degrees from Greenwich
    oneParallel,   ///< Lambert conformal conic, one standard parallel with a scale (EPSG 9801)
    twoParallels,  ///< Lambert conformal conic, two standard parallels (EPSG 9802)
};

/// Everything that makes a projection. Angles in decimal degrees from Greenwich, lengths in metres.
struct ProjectionDefinition {
    std::string name;  ///< as lists show it
    ProjectionKind kind = ProjectionKind::geographic;
    double phi0 = 0, lambda0 = 0;  ///< origin
    double phi1 = 0, phi2 = 0;     ///< standard parallels, of `twoParallels`
    double k0 = 1;                 ///< scale on the parallel phi0, of `oneParallel`
    double x0 = 0, y0 = 0;         ///< coordinates of the origin
    double radius = 0, eccentricity = 0;
    bool hasDatum = false;  ///< the shift is known; without it there is no way to other datums
    double shift[3] = {};   ///< to WGS84 and RGF93
    std::string datumName;  ///< empty for none of the published ones
    double accuracy = -1;   ///< of the shift (m); 0 exact, negative when nothing is said
    std::string grid;       ///< file name of the national grid that is asked for; empty for none
    std::string source;     ///< where the constants come from
};

/// The published French systems under the names of the project files, in the order of those names, and the
/// two geographic systems. Each with its source.
DORSEL_API const std::vector<ProjectionDefinition>& publishedProjections();

/// Names compare without regard to case, blanks and a ':' at the end: "l-93" is "L-93 :". The comparable form
/// is written to `out` (no NUL) and its length returned; 0 for a null name and one that does not fit.
constexpr std::size_t comparableRoom = 64;
DORSEL_API std::size_t comparableName(const char* name, char (&out)[comparableRoom]);
DORSEL_API bool isSameName(const char* first, const char* second);

/// Reads a projection that the settings define; empty when anything is wrong, with one message for each thing
/// that is (French, Windows-1252).
///
/// `value` is a list of `PARAMETER=value` joined by ';'; names in either case; decimal point or comma:
///
///     TYPE        LAMBERT1 (one standard parallel), LAMBERT2 (two) or GEOGRAPHIQUE
///     PHI0        latitude of the origin; of LAMBERT1 also the standard parallel
///     PHI1, PHI2  standard parallels of LAMBERT2, in either order, on one side of the equator's cone
///     K0          scale on the standard parallel of LAMBERT1; 1 when missing
///     LAMBDA0     longitude of the origin
///     X0, Y0      coordinates of the origin, metres
///     MERIDIEN    what LAMBDA0 counts from: GREENWICH (when missing) or PARIS
///     UNITE       of PHI0, PHI1, PHI2 and LAMBDA0: DEGRE (decimal, when missing) or GRADE
///     DATUM       RGF93 or NTF: ellipsoid and shift in one
///     ELLIPSOIDE  GRS80, WGS84 or CLARKE1880IGN; in place of it A (equatorial radius, metres) with F
///     (inverse
///                 flattening) or E (first eccentricity)
///     DX, DY, DZ  shift to WGS84 and RGF93, metres; without them and without DATUM the projection has no way
///                 to other datums
///     PRECISION   accuracy of the shift, metres
///     GRILLE      file of the national grid that replaces the shift between this datum and RGF93
///     COMME       name of a published projection: its constants hold wherever the list says nothing
///
/// TYPE, PHI0, LAMBDA0, X0, Y0 (but for GEOGRAPHIQUE), the parallels of the type and an ellipsoid are needed,
/// unless COMME gives them. A name that is published takes GRILLE alone: its constants are what they are.
DORSEL_API std::optional<ProjectionDefinition> readProjection(std::string_view name, std::string_view value,
                                                              std::vector<std::string>& faults);

}  // namespace geodesy
