#include <dorsel/geodesy/projection.h>

#include <cmath>
#include <cstring>
#include <map>
#include <memory>
#include <optional>

#include <dorsel/geodesy/datum_grid.h>
#include <dorsel/paths.h>
#include <dorsel/settings.h>
#include <dorsel/trace.h>
#include <platform/cp1252.h>

using geodesy::ProjectionDefinition;
using geodesy::ProjectionKind;

CtesProj* CtesProj::g_pFirstCtesProj = nullptr;

namespace geodesy {

std::size_t comparableName(const char* name, char (&out)[comparableRoom]) {
    std::size_t length = 0;
    for (; name != nullptr && *name != '\0'; ++name) {
        if (*name == ' ' || *name == '\t' || *name == '\xA0') continue;
        if (length == comparableRoom) return 0;
        out[length++] = static_cast<char>(platform::upperCase1252[static_cast<unsigned char>(*name)]);
    }
    if (length > 0 && out[length - 1] == ':') --length;
    return length;
}

bool isSameName(const char* first, const char* second) {
    char a[comparableRoom], b[comparableRoom];
    const std::size_t length = comparableName(first, a);
    return length != 0 && length == comparableName(second, b) && std::memcmp(a, b, length) == 0;
}

}  // namespace geodesy

namespace {

constexpr const char* source = "projections";
constexpr const char* section = "PROJECTIONS";
constexpr const char* folders[] = {"L", "R", "P"};  // one at a time: a file must not hide the next one's keys

constexpr double southernmost = 40.5, northernmost = 51.5;  // degrees, of the zones' points

std::string readSetting(const char* mode, const char* key) {
    std::string text(4096, '\0');
    for (;;) {
        const int length = gets_ini(source, section, mode, key, text.data(), static_cast<int>(text.size()));
        if (length < static_cast<int>(text.size()) - 1 || text.size() > 1'000'000) {
            text.resize(static_cast<std::size_t>(std::max(length, 0)));
            return text;
        }
        text.resize(text.size() * 4);
    }
}

/// Names that the settings of a folder define; read once a process, so that asking for names costs no
/// reading.
const std::vector<std::string>& namesIn(const char* mode, const std::string& folder) {
    static std::map<std::string, std::vector<std::string>> known;
    const auto [place, isNew] = known.try_emplace(folder);
    if (!isNew) return place->second;
    const std::string keys = readSetting(mode, nullptr);
    for (std::size_t start = 0; start < keys.size();) {
        const std::size_t end = std::min(keys.find(';', start), keys.size());
        if (end > start) place->second.push_back(keys.substr(start, end - start));
        start = end + 1;
    }
    return place->second;
}

/// Calls `visit(key, mode)` for each projection of the settings until it answers false.
void eachSetting(auto&& visit) {
    std::string before;
    for (const char* mode : folders) {
        // Without folders of their own the three are one.
        const std::string folder = standardFolder(*mode);
        if (folder == before) continue;
        before = folder;
        for (const std::string& key : namesIn(mode, folder))
            if (!visit(key, mode)) return;
    }
}

/// The definition of a name in the settings, if there is a sound one.
std::optional<ProjectionDefinition> fromSettings(const char* name, std::vector<std::string>& faults) {
    std::optional<ProjectionDefinition> found;
    eachSetting([&](const std::string& key, const char* mode) {
        if (!geodesy::isSameName(key.c_str(), name)) return true;
        found = geodesy::readProjection(key, readSetting(mode, key.c_str()), faults);
        for (std::string& fault : faults) fault.insert(0, key + " : ");
        return false;
    });
    return found;
}

void trace(const std::vector<std::string>& faults) {
    for (const std::string& fault : faults) mprintf("$G$Projection %s", fault.c_str());
}

bool isOffRgf93(const ProjectionDefinition& definition) {
    return definition.hasDatum &&
           (definition.shift[0] != 0 || definition.shift[1] != 0 || definition.shift[2] != 0);
}

enum class Zones { none, conformal, ntf };

Zones zonesAskedFor(const char* comparable, std::size_t length) {
    const std::string_view name(comparable, length);
    if (name == "*" || name == "LZ93-*" || name == "LZ93-CC*") return Zones::conformal;
    if (name == "L-*" || name.starts_with("*A") || name == "_AUTO(LAMBERT)") return Zones::ntf;
    return Zones::none;
}

bool isGeographic(const double* point) {
    return std::fabs(point[0]) <= 180 && std::fabs(point[1]) <= 90;
}

const char* conformalZone(const double* point) {
    static constexpr const char* names[] = {"LZ93-CC42", "LZ93-CC43", "LZ93-CC44", "LZ93-CC45", "LZ93-CC46",
                                            "LZ93-CC47", "LZ93-CC48", "LZ93-CC49", "LZ93-CC50"};
    double zone = 0;
    if (isGeographic(point)) {
        if (!(point[1] >= southernmost && point[1] < northernmost)) return nullptr;
        zone = std::fmin(std::fmax(std::floor(point[1] + 0.5), 42), 50);
    } else {
        if (!(std::fabs(point[0] - 1'700'000) <= 1'000'000)) return nullptr;
        zone = std::floor((point[1] - 200'000) / 1'000'000 + 0.5) + 41;
    }
    return zone >= 42 && zone <= 50 ? names[static_cast<int>(zone) - 42] : nullptr;
}

const char* ntfZone(const double* point) {
    // 53.5, 50.5, 47 and 47.8 grads.
    constexpr double firstFrom = 48.15, secondFrom = 45.45, thirdFrom = 42.3, corsicaTo = 43.02;
    const double longitude = point[0], latitude = point[1];
    if (!isGeographic(point) || !(latitude >= southernmost && latitude < northernmost)) return nullptr;
    if (latitude >= firstFrom) return "L-I";
    if (latitude >= secondFrom) return "L-II";
    const bool isCorsica = latitude < thirdFrom || (latitude < corsicaTo && longitude >= 8);
    return isCorsica ? "L-IV" : "L-III";
}

geodesy::LambertConic conicOf(const ProjectionDefinition& d) {
    return d.kind == ProjectionKind::oneParallel
               ? geodesy::LambertConic::oneParallel(d.radius, d.eccentricity, d.phi0, d.k0, d.lambda0, d.x0,
                                                    d.y0)
               : geodesy::LambertConic::twoParallels(d.radius, d.eccentricity, d.phi0, d.phi1, d.phi2,
                                                     d.lambda0, d.x0, d.y0);
}

}  // namespace

CtesProj::CtesProj(ProjectionDefinition definition)
    : m_definition(std::move(definition)), m_conic(conicOf(m_definition)) {
    m_comparableLength = geodesy::comparableName(m_definition.name.c_str(), m_comparable);
}

CtesProj* CtesProj::findLoaded(const char* comparable, std::size_t length) {
    for (CtesProj* loaded = g_pFirstCtesProj; loaded != nullptr; loaded = loaded->m_next)
        if (length == loaded->m_comparableLength &&
            std::memcmp(comparable, loaded->m_comparable, length) == 0)
            return loaded;
    return nullptr;
}

/// Projections of one datum and one grid share their ellipsoid.
void CtesProj::findEllipsoid() {
    static std::vector<std::unique_ptr<Ellipsoide>> known;
    const ProjectionDefinition& d = m_definition;
    if (!d.hasDatum) return;
    auto made = std::make_unique<Ellipsoide>(d.radius, d.eccentricity, d.shift[0], d.shift[1], d.shift[2]);
    for (const auto& ellipsoid : known)
        if (ellipsoid->isSameDatum(*made) && ellipsoid->gridName() == d.grid) {
            m_ellipsoide = ellipsoid.get();
            return;
        }
    if (!d.grid.empty()) {
        std::string fault;
        auto grid = geodesy::DatumGrid::load(d.grid, fault);
        if (grid == nullptr)
            mprintf("$G$Projection %s : grille '%s' : %s; translation à trois paramètres employée", Name(),
                    d.grid.c_str(), fault.c_str());
        made->useGrid(d.grid, std::move(grid));
    }
    m_ellipsoide = made.get();
    known.push_back(std::move(made));
}

/// Loaded projections live until the process ends.
CtesProj* CtesProj::add(ProjectionDefinition definition) {
    static std::vector<std::unique_ptr<CtesProj>> loaded;
    loaded.push_back(std::make_unique<CtesProj>(std::move(definition)));
    CtesProj* made = loaded.back().get();
    made->findEllipsoid();
    const auto& published = geodesy::publishedProjections();
    while (made->m_rank < published.size() && published[made->m_rank].name != made->m_definition.name)
        ++made->m_rank;
    CtesProj** place = &g_pFirstCtesProj;
    while (*place != nullptr && (*place)->m_rank <= made->m_rank) place = &(*place)->m_next;
    made->m_next = *place;
    *place = made;
    return made;
}

CtesProj* CtesProj::GetProjection(const char* name) {
    return GetProjection(name, nullptr);
}

CtesProj* CtesProj::GetProjection(const char* name, const double* point) {
    char comparable[geodesy::comparableRoom];
    std::size_t length = geodesy::comparableName(name, comparable);
    if (length == 0) return nullptr;
    if (const Zones zones = zonesAskedFor(comparable, length); zones != Zones::none) {
        if (length == 1) LoadAll();
        if (point == nullptr) return nullptr;
        name = zones == Zones::conformal ? conformalZone(point) : ntfZone(point);
        if (name == nullptr) return nullptr;
        length = geodesy::comparableName(name, comparable);
    }
    if (CtesProj* loaded = findLoaded(comparable, length)) return loaded;

    std::vector<std::string> faults;
    CtesProj* made = load(name, faults);
    trace(faults);
    return made;
}

CtesProj* CtesProj::load(const char* name, std::vector<std::string>& faults) {
    for (const ProjectionDefinition& published : geodesy::publishedProjections()) {
        if (!geodesy::isSameName(published.name.c_str(), name)) continue;
        // A system that lies off RGF93 may have been given the national grid.
        auto withGrid = isOffRgf93(published) ? fromSettings(name, faults) : std::nullopt;
        return add(withGrid ? *withGrid : published);
    }
    auto defined = fromSettings(name, faults);
    return defined ? add(std::move(*defined)) : nullptr;
}

bool CtesProj::asksForZone(const char* name) {
    char comparable[geodesy::comparableRoom];
    const std::size_t length = geodesy::comparableName(name, comparable);
    return length != 0 && zonesAskedFor(comparable, length) != Zones::none;
}

const std::vector<std::string>& CtesProj::LoadAll() {
    static std::vector<std::string> allFaults;
    static bool isDone = false;
    if (isDone) return allFaults;
    isDone = true;
    for (const ProjectionDefinition& published : geodesy::publishedProjections())
        if (published.kind != ProjectionKind::geographic) GetProjection(published.name.c_str());
    std::vector<std::string> names;
    eachSetting([&](const std::string& key, const char*) {
        names.push_back(key);
        return true;
    });
    for (const std::string& name : names) {
        std::vector<std::string> faults;
        char comparable[geodesy::comparableRoom];
        if (findLoaded(comparable, geodesy::comparableName(name.c_str(), comparable)) != nullptr)
            fromSettings(name.c_str(), faults);
        else
            load(name.c_str(), faults);
        allFaults.insert(allFaults.end(), faults.begin(), faults.end());
    }
    trace(allFaults);
    return allFaults;
}

int CtesProj::GeoToXy(const double* geo, double* xy) const {
    if (geo == nullptr || xy == nullptr) return 0;
    if (m_definition.kind != ProjectionKind::geographic) return m_conic.forward(geo, xy) ? 1 : 0;
    if (!(std::fabs(geo[0]) < 180 && std::fabs(geo[1]) < 90)) return 0;
    xy[0] = geo[0];
    xy[1] = geo[1];
    return 1;
}

int CtesProj::XyToGeo(const double* xy, double* geo) const {
    if (m_definition.kind == ProjectionKind::geographic) return GeoToXy(xy, geo);
    return xy != nullptr && geo != nullptr && m_conic.inverse(xy, geo) ? 1 : 0;
}

double CtesProj::ProjScale(const double* xy, const double* geo) const {
    double found[2];
    if (geo == nullptr) {
        if (XyToGeo(xy, found) == 0) return 0;
        geo = found;
    }
    if (m_definition.kind == ProjectionKind::geographic) return std::fabs(geo[1]) < 90 ? 1 : 0;
    return m_conic.scale(geo[1]);
}
