#include <dorsel/geodesy/projection_definition.h>

#include <array>
#include <cmath>
#include <cstdio>

#include <dorsel/geodesy/decimal.h>
#include <dorsel/geodesy/lambert_conic.h>
#include <dorsel/geodesy/reference_ellipsoids.h>
#include <platform/cp1252.h>

namespace geodesy {

namespace {

constexpr double grade = 0.9;  // degrees

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n\xA0";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// One projection's parameters while they are read, checked and put together.
class Reader {
  public:
    Reader(std::string_view name, std::vector<std::string>& faults) : m_faults(faults) { m_made.name = name; }

    void split(std::string_view list);
    std::optional<ProjectionDefinition> make();

  private:
    enum Parameter {
        type,
        phi0,
        phi1,
        phi2,
        k0,
        lambda0,
        x0,
        y0,
        meridien,
        unite,
        datum,
        ellipsoide,
        a,
        f,
        e,
        dx,
        dy,
        dz,
        precision,
        grille,
        comme,
        parameterCount
    };
    static constexpr std::array<std::string_view, parameterCount> names = {
        "TYPE", "PHI0",     "PHI1",  "PHI2",  "K0",         "LAMBDA0", "X0",
        "Y0",   "MERIDIEN", "UNITE", "DATUM", "ELLIPSOIDE", "A",       "F",
        "E",    "DX",       "DY",    "DZ",    "PRECISION",  "GRILLE",  "COMME"};

    void fault(Parameter parameter, std::string_view text) {
        m_faults.push_back(std::string(names[parameter]) + " : " + std::string(text));
    }
    bool has(Parameter parameter) const { return !m_values[parameter].empty(); }
    bool is(Parameter parameter, std::string_view word) const {
        return platform::equalNoCase1252(m_values[parameter], word);
    }
    bool number(Parameter parameter, double low, double high, double& value);
    void needed(Parameter parameter, double low, double high, double& value);
    void refuse(std::initializer_list<Parameter> parameters, std::string_view why);

    bool addGridOnly(const ProjectionDefinition& published);
    void copyLike();
    void readType();
    void readOrigin();
    void readParallels();
    void readEllipsoid();
    void readShift();
    void checkCone();

    std::vector<std::string>& m_faults;
    std::array<std::string, parameterCount> m_values;
    ProjectionDefinition m_made;
    bool m_isCopy = false, m_hasType = false;
    double m_unit = 1;
};

void Reader::split(std::string_view list) {
    while (!list.empty()) {
        const std::size_t end = list.find(';');
        const std::string_view piece = trimmed(list.substr(0, end));
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
        if (piece.empty()) continue;
        const std::size_t equals = piece.find('=');
        const std::string word = platform::upperCased1252(trimmed(piece.substr(0, equals)));
        std::size_t parameter = 0;
        while (parameter < parameterCount && names[parameter] != word) ++parameter;
        if (parameter == parameterCount) {
            m_faults.push_back(word.substr(0, 40) + " : paramètre inconnu");
            continue;
        }
        const std::string_view value =
            equals == std::string_view::npos ? std::string_view() : trimmed(piece.substr(equals + 1));
        if (value.empty())
            fault(static_cast<Parameter>(parameter), "valeur absente");
        else if (has(static_cast<Parameter>(parameter)))
            fault(static_cast<Parameter>(parameter), "donné deux fois");
        else
            m_values[parameter] = value;
    }
}

/// Reads a parameter that may be missing; true when it is there and sound.
bool Reader::number(Parameter parameter, double low, double high, double& value) {
    if (!has(parameter)) return false;
    double read = 0;
    if (!readDecimal(m_values[parameter], read)) {
        fault(parameter, "n'est pas un nombre");
        return false;
    }
    if (!(read >= low && read <= high)) {
        std::array<char, 64> bounds;
        std::snprintf(bounds.data(), bounds.size(), "doit être entre %.10g et %.10g", low, high);
        fault(parameter, bounds.data());
        return false;
    }
    value = read;
    return true;
}

void Reader::needed(Parameter parameter, double low, double high, double& value) {
    if (has(parameter))
        number(parameter, low, high, value);
    else if (!m_isCopy)
        fault(parameter, "absent");
}

void Reader::refuse(std::initializer_list<Parameter> parameters, std::string_view why) {
    for (const Parameter parameter : parameters)
        if (has(parameter)) fault(parameter, why);
}

void Reader::copyLike() {
    if (!has(comme)) return;
    const std::string name = m_made.name;
    for (const ProjectionDefinition& published : publishedProjections()) {
        if (!isSameName(published.name.c_str(), m_values[comme].c_str())) continue;
        m_made = published;
        m_made.name = name;
        m_isCopy = m_hasType = true;
        return;
    }
    fault(comme, "projection inconnue");
}

void Reader::readType() {
    constexpr std::pair<std::string_view, ProjectionKind> kinds[] = {
        {"LAMBERT1", ProjectionKind::oneParallel},
        {"LAMBERT2", ProjectionKind::twoParallels},
        {"GEOGRAPHIQUE", ProjectionKind::geographic}};
    for (const auto& [word, kind] : kinds) {
        if (!is(type, word)) continue;
        if (m_isCopy && kind != m_made.kind) fault(type, "n'est pas celui de COMME");
        m_made.kind = kind;
        m_hasType = true;
        return;
    }
    if (has(type))
        fault(type, "doit être LAMBERT1, LAMBERT2 ou GEOGRAPHIQUE");
    else if (!m_isCopy)
        fault(type, "absent");
}

void Reader::readOrigin() {
    if (is(unite, "GRADE"))
        m_unit = grade;
    else if (has(unite) && !is(unite, "DEGRE"))
        fault(unite, "doit être DEGRE ou GRADE");
    if (has(meridien) && !is(meridien, "PARIS") && !is(meridien, "GREENWICH"))
        fault(meridien, "doit être GREENWICH ou PARIS");
    if (has(meridien) && !has(lambda0)) fault(meridien, "sans LAMBDA0");

    double angle = 0;
    needed(phi0, -90 / m_unit, 90 / m_unit, angle);
    if (has(phi0)) m_made.phi0 = angle * m_unit;
    angle = 0;
    needed(lambda0, -180 / m_unit, 180 / m_unit, angle);
    if (has(lambda0)) m_made.lambda0 = angle * m_unit + (is(meridien, "PARIS") ? parisMeridian : 0);
    needed(x0, -1e8, 1e8, m_made.x0);
    needed(y0, -1e8, 1e8, m_made.y0);
}

void Reader::readParallels() {
    const double pole = 90 / m_unit;
    if (m_made.kind == ProjectionKind::oneParallel) {
        refuse({phi1, phi2}, "ne va pas avec TYPE=LAMBERT1");
        number(k0, 0.5, 2, m_made.k0);
        return;
    }
    refuse({k0}, "ne va pas avec TYPE=LAMBERT2");
    double angle = 0;
    needed(phi1, -pole, pole, angle);
    if (has(phi1)) m_made.phi1 = angle * m_unit;
    angle = 0;
    needed(phi2, -pole, pole, angle);
    if (has(phi2)) m_made.phi2 = angle * m_unit;
}

void Reader::readEllipsoid() {
    const bool byAxes = has(a) || has(f) || has(e);
    if (has(datum) + has(ellipsoide) + byAxes > 1) {
        m_faults.emplace_back("DATUM, ELLIPSOIDE et A : un seul des trois");
        return;
    }
    if (has(datum)) {
        for (const ReferenceDatum& known : referenceDatums) {
            if (!is(datum, known.name)) continue;
            m_made.radius = known.ellipsoid->radius;
            m_made.eccentricity = known.ellipsoid->eccentricity;
            m_made.hasDatum = true;
            for (int i = 0; i < 3; ++i) m_made.shift[i] = known.shift[i];
            m_made.datumName = known.name;
            m_made.accuracy = known.accuracy;
            return;
        }
        fault(datum, "doit être RGF93 ou NTF");
    } else if (has(ellipsoide)) {
        for (const ReferenceEllipsoid& known : referenceEllipsoids) {
            if (!is(ellipsoide, known.name)) continue;
            m_made.radius = known.radius;
            m_made.eccentricity = known.eccentricity;
            m_made.hasDatum = false;
            m_made.datumName.clear();
            return;
        }
        fault(ellipsoide, "doit être GRS80, WGS84 ou CLARKE1880IGN");
    } else if (byAxes) {
        m_made.hasDatum = false;
        m_made.datumName.clear();
        if (!has(a)) fault(a, "absent");
        number(a, 6'300'000, 6'400'000, m_made.radius);
        double inverse = 0;
        if (has(f) == has(e)) m_faults.emplace_back("F, E : il en faut un et un seul");
        if (number(f, 250, 1e9, inverse)) m_made.eccentricity = std::sqrt((2 - 1 / inverse) / inverse);
        number(e, 0, 0.09, m_made.eccentricity);
    } else if (!m_isCopy) {
        fault(ellipsoide, "absent (ELLIPSOIDE, DATUM ou A)");
    }
}

void Reader::readShift() {
    const int given = has(dx) + has(dy) + has(dz);
    if (given != 0 && given != 3) m_faults.emplace_back("DX, DY, DZ : il faut les trois");
    if (given != 0 && has(datum)) m_faults.emplace_back("DX, DY, DZ : ne vont pas avec DATUM");
    constexpr Parameter axes[] = {dx, dy, dz};
    for (int i = 0; i < 3; ++i) number(axes[i], -10'000, 10'000, m_made.shift[i]);
    if (given == 3) {
        m_made.hasDatum = true;
        m_made.datumName.clear();
        m_made.accuracy = -1;
    }
    number(precision, 0, 10'000, m_made.accuracy);
    if (has(precision) && !m_made.hasDatum) fault(precision, "sans DX, DY, DZ");
    m_made.grid = m_values[grille];
    const bool isReference = m_made.shift[0] == 0 && m_made.shift[1] == 0 && m_made.shift[2] == 0;
    if (has(grille) && (!m_made.hasDatum || isReference))
        fault(grille, "ne va qu'avec un système décalé du RGF93 (DATUM=NTF ou DX, DY, DZ)");
}

void Reader::checkCone() {
    const bool one = m_made.kind == ProjectionKind::oneParallel;
    const LambertConic cone =
        one ? LambertConic::oneParallel(m_made.radius, m_made.eccentricity, m_made.phi0, m_made.k0,
                                        m_made.lambda0, m_made.x0, m_made.y0)
            : LambertConic::twoParallels(m_made.radius, m_made.eccentricity, m_made.phi0, m_made.phi1,
                                         m_made.phi2, m_made.lambda0, m_made.x0, m_made.y0);
    if (!cone.isValid())
        m_faults.emplace_back(one ? "PHI0 : sur l'équateur ou un pôle il n'y a pas de cône"
                                  : "PHI1, PHI2 : pas de cône (parallèles opposés, nuls ou sur un pôle)");
}

bool Reader::addGridOnly(const ProjectionDefinition& published) {
    for (int parameter = 0; parameter < parameterCount; ++parameter)
        if (parameter != grille)
            refuse({static_cast<Parameter>(parameter)},
                   "les constantes de " + published.name + " sont celles publiées; seul GRILLE s'y ajoute");
    const std::string name = m_made.name;
    m_made = published;
    m_isCopy = true;
    readShift();
    return m_faults.empty();
}

std::optional<ProjectionDefinition> Reader::make() {
    for (const ProjectionDefinition& published : publishedProjections()) {
        if (!isSameName(published.name.c_str(), m_made.name.c_str())) continue;
        if (!addGridOnly(published)) return std::nullopt;
        return m_made;
    }
    copyLike();
    readType();
    readEllipsoid();
    readShift();
    if (m_hasType && m_made.kind == ProjectionKind::geographic) {
        refuse({phi0, phi1, phi2, k0, lambda0, x0, y0, meridien, unite}, "ne va pas avec TYPE=GEOGRAPHIQUE");
    } else {
        readOrigin();
        if (m_hasType) readParallels();
        if (m_faults.empty()) checkCone();
    }
    if (!m_faults.empty()) return std::nullopt;
    if (m_made.source.empty() || !m_isCopy) m_made.source = "réglages";
    return m_made;
}

}  // namespace

std::optional<ProjectionDefinition> readProjection(std::string_view name, std::string_view value,
                                                   std::vector<std::string>& faults) {
    faults.clear();
    char comparable[comparableRoom];
    const std::string asText(name);
    if (comparableName(asText.c_str(), comparable) == 0 || asText.find_first_of("*;") != std::string::npos) {
        faults.emplace_back("nom vide, trop long ou avec '*' ou ';'");
        return std::nullopt;
    }
    Reader reader(name, faults);
    reader.split(value);
    return reader.make();
}

}  // namespace geodesy
