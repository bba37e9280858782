#include <kestra/project/conversions/coordinate_operation.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include <dorsel/settings.h>
#include <platform/cstring.h>

namespace kestra {

namespace {

constexpr const char* settingsSource = "projections";
constexpr const char* altitudeSection = "ALTITUDES";

template <class... Values>
std::string format(const char* pattern, Values... values) {
    std::array<char, 600> text;
    std::snprintf(text.data(), text.size(), pattern, values...);
    return text.data();
}

std::string readSetting(const char* mode, const char* key) {
    std::string text(65'536, '\0');
    const long length =
        DOS::Gets_ini(settingsSource, altitudeSection, mode, key, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(std::max(length, 0L)));
    return text;
}

bool differ(const Ellipsoide& a, const Ellipsoide& b) {
    return !a.isSameDatum(b);
}

std::string datumName(const CtesProj& projection) {
    const std::string& name = projection.Constants().datumName;
    return name.empty() ? "système de " + projection.Constants().name : name;
}

std::string projectionStep(const CtesProj& projection, bool inverse) {
    using geodesy::ProjectionKind;
    const auto& constants = projection.Constants();
    if (constants.kind == ProjectionKind::geographic)
        return constants.name + " longitude et latitude en degrés (" + constants.source + ")";
    return format("%s Lambert conique conforme %s, %s (%s)", constants.name.c_str(),
                  constants.kind == ProjectionKind::oneParallel ? "tangente" : "sécante",
                  inverse ? "vers géographiques" : "depuis géographiques", constants.source.c_str());
}

std::string shiftOf(const CtesProj& projection, bool backwards) {
    const Ellipsoide& datum = *projection.GetEllipsoide();
    const double sign = backwards ? -1 : 1;
    const std::string values =
        format("translation géocentrique DX %+g DY %+g DZ %+g m", sign * datum.shift(0) + 0.0,
               sign * datum.shift(1) + 0.0, sign * datum.shift(2) + 0.0);
    switch (datum.gridState()) {
        case Ellipsoide::GridState::loaded:
            return "grille nationale " + datum.gridName();
        case Ellipsoide::GridState::missing:
            return "grille " + datum.gridName() + " INTROUVABLE OU ILLISIBLE, remplacée par " + values;
        case Ellipsoide::GridState::none:
            break;
    }
    return values;
}

bool isShifted(const CtesProj& projection) {
    const Ellipsoide& datum = *projection.GetEllipsoide();
    return datum.shift(0) != 0 || datum.shift(1) != 0 || datum.shift(2) != 0;
}

/// Of one datum's way to RGF93; negative when nothing is known.
double accuracyOf(const CtesProj& projection, const double geo[2]) {
    const Ellipsoide& datum = *projection.GetEllipsoide();
    if (!isShifted(projection)) return 0;
    if (datum.grid() != nullptr) return geo != nullptr ? datum.grid()->accuracyAt(geo) : 0;
    return projection.Constants().accuracy;
}

std::string heightStep(const AltiConvert& grid, bool toEllipsoid) {
    if (grid.grid() == nullptr) return "grille " + grid.name() + " INUTILISABLE : " + grid.fault();
    const std::string about =
        grid.grid()->description().empty() ? "" : " (" + grid.grid()->description() + ")";
    return (toEllipsoid ? "altitude vers hauteur ellipsoïdale" : "hauteur ellipsoïdale vers altitude") +
           (" par la grille " + grid.name()) + about;
}

}  // namespace

bool CoordinateOperation::transform(const double in[3], double out[3], double geo[3]) const {
    if (from == nullptr || to == nullptr || from->GetEllipsoide() == nullptr) return false;
    double height = in[2];
    double point[3] = {0, 0, height};
    if (from->XyToGeo(in, point) == 0) return false;
    if (from->GetEllipsoide()->DatumShift(point, to->GetEllipsoide()) == 0) return false;
    if (altiFrom != altiTo) {
        if (altiFrom != nullptr) height = altiFrom->Convert(height, point, 1);
        if (altiTo != nullptr) height = altiTo->Convert(height, point, 0);
        if (std::isnan(height)) return false;
    }
    point[2] = height;
    std::copy_n(point, 3, geo);
    double plane[2] = {in[0], in[1]};
    if (from != to && to->GeoToXy(point, plane) == 0) return false;
    out[0] = plane[0];
    out[1] = plane[1];
    out[2] = height + dz;
    return true;
}

bool CoordinateOperation::changesDatum() const {
    return from != nullptr && to != nullptr && from->GetEllipsoide() != nullptr &&
           to->GetEllipsoide() != nullptr && differ(*from->GetEllipsoide(), *to->GetEllipsoide());
}

bool CoordinateOperation::missesGrid() const {
    const auto misses = [](const CtesProj* projection) {
        return projection->GetEllipsoide()->gridState() == Ellipsoide::GridState::missing;
    };
    if (changesDatum() && (misses(from) || misses(to))) return true;
    return altiFrom != altiTo && ((altiFrom != nullptr && altiFrom->grid() == nullptr) ||
                                  (altiTo != nullptr && altiTo->grid() == nullptr));
}

double CoordinateOperation::accuracyAt(const double geo[2]) const {
    if (!changesDatum()) return 0;
    const double source = accuracyOf(*from, geo), target = accuracyOf(*to, geo);
    return source < 0 || target < 0 ? -1 : source + target;
}

std::string accuracyText(double metres) {
    if (metres < 0) return "inconnue (pas de PRECISION dans les réglages)";
    return metres < 1 ? format("%g cm", metres * 100) : format("%g m", metres);
}

std::vector<std::string> CoordinateOperation::report() const {
    if (from == nullptr || to == nullptr) return {"Opération : projection absente"};
    std::vector<std::string> steps, grids;
    if (from != to) steps.push_back(projectionStep(*from, true));
    if (changesDatum()) {
        for (const CtesProj* side : {from, to}) {
            if (!isShifted(*side)) continue;
            const std::string name = datumName(*side);
            steps.push_back((side == from ? name + " -> RGF93 : " : "RGF93 -> " + name + " : ") +
                            shiftOf(*side, side == to));
            if (side->GetEllipsoide()->grid() != nullptr) grids.push_back(side->GetEllipsoide()->gridName());
        }
    }
    const bool datumByGrid = !grids.empty();
    if (altiFrom != altiTo) {
        for (const AltiConvert* grid : {altiFrom, altiTo}) {
            if (grid == nullptr) continue;
            steps.push_back(heightStep(*grid, grid == altiFrom));
            if (grid->grid() != nullptr) grids.push_back(grid->name());
        }
    }
    if (from != to) steps.push_back(projectionStep(*to, false));
    if (dz != 0) steps.push_back(format("constante ajoutée aux hauteurs : %+g m", dz));

    std::vector<std::string> lines = {"Opération : " + from->Constants().name + " -> " +
                                      to->Constants().name};
    for (std::size_t i = 0; i < steps.size(); ++i)
        lines.push_back("  " + std::to_string(i + 1) + ". " + steps[i]);
    std::string used = grids.empty() ? " aucune" : "";
    for (const std::string& grid : grids) used += ' ' + grid;
    lines.push_back("Grilles :" + used);
    lines.push_back("Précision : " + precision(datumByGrid));
    return lines;
}

std::string CoordinateOperation::precision(bool byGrid) const {
    if (!changesDatum()) return "celle du calcul, meilleure que 0,1 mm";
    const double accuracy = accuracyAt(nullptr);
    if (!byGrid) return accuracyText(accuracy);
    return "celle de la grille au point, 5 cm à plus de 1 m" +
           (accuracy != 0 ? ", et " + accuracyText(accuracy) : std::string());
}

std::vector<std::string> altitudeChoices() {
    const char* mode = "LR";
    std::string keys = readSetting(mode, nullptr);
    if (keys.size() < 2) keys = readSetting(mode = "PLR", nullptr);
    if (keys.size() < 2)
        return {"Altitudes NGF(RAF2009) =RAF09.MNT", "Altitudes ED50(EGM08)  =EGM08fr.MNT",
                "Altitudes ED50(EGM96) =egm96fr.MNT"};
    std::vector<std::string> choices;
    for (std::size_t start = 0; start < keys.size();) {
        const std::size_t end = std::min(keys.find(';', start), keys.size());
        const std::string key = keys.substr(start, end - start);
        start = end + 1;
        if (key.empty()) continue;
        const std::string value = readSetting(mode, key.c_str());
        if (!value.empty()) choices.push_back(key + '=' + value);
    }
    return choices;
}

AltiConvert* gridOfChoice(const char* choice) {
    CString text(choice);
    text.Trim();
    if (text.IsEmpty() || text[0] == '$') return nullptr;
    const int equals = text.Find('=');
    if (equals >= 0) text = text.Mid(equals + 1);
    text.Trim();
    AltiConvert* grid = AltiConvert::FindAltiConvert(text, 1);
    // Kept: a grid that cannot be loaded is said to nobody and its converter used all the same; hosts rely on
    // the dialog closing.
    if (grid != nullptr) grid->LoadGRID();
    return grid;
}

std::vector<std::string> projectionChoices(const char* selection) {
    // A conversion loads the projections it needs: a list that is not empty may still lack the others.
    CtesProj::GetProjection("*");
    std::vector<std::string> choices;
    if (selection != nullptr && selection[0] == '*' && selection[1] == 'A')
        choices.emplace_back("_AUTO (Lambert)");
    choices.insert(choices.end(), {"_Non Définie", "_Locale"});
    for (const CtesProj* loaded = CtesProj::g_pFirstCtesProj; loaded != nullptr; loaded = loaded->Next())
        choices.emplace_back(loaded->Name());
    return choices;
}

}  // namespace kestra
