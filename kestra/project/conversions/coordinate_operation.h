#pragma once
#include <string>
#include <utility>
#include <vector>

#include <dorsel/geodesy/alti_convert.h>
#include <dorsel/geodesy/projection.h>
#include <platform/export.h>

namespace kestra {

/// The way of a point from one system to another: what the projection dialog and `kestra convert` do, and the
/// report that says how. The projections and grids are not owned; they live until the process ends.
struct KESTRA_API CoordinateOperation {
    const CtesProj* from = nullptr;
    const CtesProj* to = nullptr;
    const AltiConvert* altiFrom = nullptr;  ///< null: heights of the source are above its ellipsoid
    const AltiConvert* altiTo = nullptr;
    double dz = 0;  ///< added to every height (m)

    /// Converts X, Y and height. `geo` receives the geographic point behind the change of datum with its
    /// height. False, with `out` untouched, when a projection or the datum of one is missing, when a step
    /// fails, and outside a grid. Between a system and itself X and Y stay as they are; with the same grid on
    /// both sides the height changes by `dz` only. `in` and `out` may be the same array.
    bool transform(const double in[3], double out[3], double geo[3]) const;

    /// The same way backwards.
    CoordinateOperation reversed() const {
        CoordinateOperation back = *this;
        std::swap(back.from, back.to);
        std::swap(back.altiFrom, back.altiTo);
        back.dz = -dz;
        return back;
    }

    bool changesDatum() const;
    bool changesHeight() const { return altiFrom != altiTo || dz != 0; }
    /// A grid that was asked for is not there: the three values stand in for a datum grid, heights fail.
    bool missesGrid() const;
    /// Accuracy of the change of datum (m) at a geographic point in RGF93: of the grid there when one is
    /// used, else of the three values. 0 without a change, negative when nothing is known.
    double accuracyAt(const double geo[2]) const;

    /// The steps, the grids and the accuracy, line by line (French, Windows-1252).
    std::vector<std::string> report() const;

  private:
    std::string precision(bool byGrid) const;
};

/// A length for the user: "0,10 m", "5 cm".
KESTRA_API std::string accuracyText(double metres);

/// The altitude choices that the settings file "projections" gives in its section "ALTITUDES", each "key=grid
/// file"; three built-in ones when it gives none.
KESTRA_API std::vector<std::string> altitudeChoices();

/// The grid of an altitude choice: what stands behind its first "=", or all of it, without blanks. Null for
/// an empty choice and one that begins with "$". The grid is loaded; when that fails the converter comes all
/// the same, not loaded: it converts no height.
KESTRA_API AltiConvert* gridOfChoice(const char* choice);

/// The entries of a projection list: "_AUTO (Lambert)" when `selection` begins with "*A", "_Non Définie",
/// "_Locale", then the name of every projection loaded (all are, when none is).
KESTRA_API std::vector<std::string> projectionChoices(const char* selection);

}  // namespace kestra
