#pragma once
#include <string>
#include <vector>

#include <dorsel/geodesy/datum_grid.h>
#include <dorsel/geodesy/ellipsoid.h>
#include <dorsel/geodesy/lambert_conic.h>
#include <dorsel/geodesy/projection_definition.h>
#include <platform/export.h>

/// A map projection with its constants and its datum.
///
/// Geographic coordinates are decimal degrees counted from Greenwich, longitude first, for every system,
/// those on the Paris meridian included; plane coordinates are metres, X (easting) first. Points are arrays;
/// only the first two numbers are read and written.
///
/// Projections are those published (`geodesy::publishedProjections`) and those that the settings file
/// "projections" defines in its section "PROJECTIONS", one key a projection
/// (`geodesy::readProjection` tells the grammar; lookup mode "LRP"). Each is loaded when first asked for,
/// chained, and kept until the process ends; finding it again does not allocate. The names in a
/// settings file are read once a process. Names compare without regard
/// to case, blanks and a
/// ':' at the end. A definition with a fault is unknown, and each fault is traced as a general warning.
class DORSEL_API CtesProj {
  public:
    /// The projection of a name; null when it is unknown. "*" loads every projection (but the geographic
    /// ones) and gives null, as every name that asks for the zone of a point does here.
    static CtesProj* GetProjection(const char* name);

    /// The same; where the name asks for it, the zone of `point`:
    /// - "*", "LZ93-*", "LZ93-CC*": the conformal zone CC42 to CC50 whose parallel is nearest; a point
    /// half-way
    ///   belongs to the northern one; 40.5 <= latitude < 51.5. A plane point tells its zone by the million of
    ///   its northing (X 700,000 to 2,700,000 m).
    /// - "_AUTO (Lambert)", "*A...", "L-*": Lambert I from 53.5 grads up (48.15 degrees), Lambert II
    /// from 50.5
    ///   (45.45), Lambert III from 47 (42.3), Lambert IV south of that and, east of 8 degrees, south of 47.8
    ///   grads (43.02: Corsica); a border belongs to the northern zone; 40.5 <= latitude < 51.5. A plane
    ///   point gives null: its published coordinates do not tell the zone.
    /// `point` is geographic when |point[0]| <= 180 and |point[1]| <= 90, else plane. Null where there is no
    /// zone. With any other name `point` is not looked at and may be null.
    static CtesProj* GetProjection(const char* name, const double* point);

    /// True when the name asks for the zone of a point.
    static bool asksForZone(const char* name);

    /// Loads all projections, as "*" does, and returns one text for each fault found in the settings, "name :
    /// fault".
    static const std::vector<std::string>& LoadAll();

    /// Geographic to plane; 1 on success. 0, with `xy` untouched, for null arrays, at and beyond the poles,
    /// for longitudes outside ]-180, 180[, opposite the central meridian and for what is not a finite number.
    /// Both arrays may be the same.
    int GeoToXy(const double* geo, double* xy) const;
    /// Plane to geographic; 1 on success, 0 with `geo` untouched where `GeoToXy` gives no such point.
    int XyToGeo(const double* xy, double* geo) const;

    /// Scale factor at a point given by its plane coordinates, its geographic ones, or both (either may be
    /// null; the geographic ones are used when given). 0 where there is none; 1 for a geographic system.
    double ProjScale(const double* xy, const double* geo) const;

    /// The constants. They live as long as the projection.
    const geodesy::ProjectionDefinition& Constants() const { return m_definition; }
    /// Name as lists show it; lives as long as the projection.
    const char* Name() const { return m_definition.name.c_str(); }
    /// The datum; null when its relation to others is not known. Projections of one datum share one object.
    Ellipsoide* GetEllipsoide() const { return m_ellipsoide; }
    /// Next projection loaded, null for the last.
    CtesProj* Next() const { return m_next; }

    /// Head of the chain of projections loaded so far, in the order of the published names, then as loaded.
    static CtesProj* g_pFirstCtesProj;

    explicit CtesProj(geodesy::ProjectionDefinition definition);
    CtesProj(const CtesProj&) = delete;
    CtesProj& operator=(const CtesProj&) = delete;

  private:
    static CtesProj* add(geodesy::ProjectionDefinition definition);
    static CtesProj* load(const char* name, std::vector<std::string>& faults);
    static CtesProj* findLoaded(const char* comparable, std::size_t length);
    void findEllipsoid();

    geodesy::ProjectionDefinition m_definition;
    geodesy::LambertConic m_conic;
    char m_comparable[geodesy::comparableRoom];
    std::size_t m_comparableLength;
    Ellipsoide* m_ellipsoide = nullptr;
    std::size_t m_rank = 0;  ///< among the published names; those of the settings come last
    CtesProj* m_next = nullptr;
};
