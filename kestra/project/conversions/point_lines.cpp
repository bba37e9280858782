#include <kestra/project/conversions/point_lines.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <dorsel/geodesy/decimal.h>
#include <platform/cp1252.h>

namespace kestra {

namespace {

constexpr int planeDecimals = 4, degreeDecimals = 9;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

/// 0 for X, 1 for Y, 2 for the height, -1 for any other column title.
int coordinateOf(std::string_view title) {
    static constexpr std::string_view titles[3][7] = {
        {"X", "E", "EST", "EASTING", "LON", "LONGITUDE", "LAMBDA"},
        {"Y", "N", "NORD", "NORTHING", "LAT", "LATITUDE", "PHI"},
        {"Z", "H", "ALT", "ALTITUDE", "HAUTEUR", "HEIGHT", "ELEVATION"}};
    for (int coordinate = 0; coordinate < 3; ++coordinate)
        for (const std::string_view known : titles[coordinate])
            if (platform::equalNoCase1252(known, title)) return coordinate;
    return -1;
}

bool isGeographic(const CtesProj& projection) {
    return projection.Constants().kind == geodesy::ProjectionKind::geographic;
}

}  // namespace

PointLines::PointLines(const std::string& from, const std::string& to, const CoordinateOperation& heights,
                       const Options& options)
    : m_from(from), m_to(to), m_operation(heights), m_options(options) {
    for (const bool isSource : {true, false}) {
        const std::string& name = isSource ? from : to;
        if (CtesProj::asksForZone(name.c_str())) continue;
        const CtesProj* found = CtesProj::GetProjection(name.c_str());
        if (found == nullptr) m_fault = "projection inconnue : " + name;
        if (found != nullptr && found->GetEllipsoide() == nullptr)
            m_fault = "projection sans système géodésique : " + name;
        (isSource ? m_operation.from : m_operation.to) = found;
    }
}

/// Next field from `position` on, which moves behind its separator (npos behind the last field).
PointLines::Field PointLines::fieldAt(std::string_view line, std::size_t& position) const {
    const bool byBlanks = m_separator == ' ';
    while (byBlanks && position < line.size() && isBlank(line[position])) ++position;
    Field field{position, 0};
    const bool isQuoted = position < line.size() && line[position] == '"';
    if (isQuoted) {
        position = std::min(line.find('"', ++field.start), line.size());
        field.length = position - field.start;
    }
    const std::size_t end =
        byBlanks ? line.find_first_of(" \t\r", position) : line.find(m_separator, position);
    if (!isQuoted) field.length = std::min(end, line.size()) - field.start;
    position = end == std::string_view::npos ? end : end + 1;
    if (byBlanks && end != std::string_view::npos && trimmed(line.substr(position)).empty())
        position = std::string_view::npos;
    return field;
}

/// False when the line has fewer columns than X and Y need. A missing height has no length and lies behind.
bool PointLines::findFields(std::string_view line, Fields& fields) const {
    const int last = *std::max_element(m_columns.begin(), m_columns.end());
    fields[2] = {line.size(), 0};
    std::size_t position = 0;
    int missing = 2;
    for (int column = 1; column <= last && position != std::string_view::npos; ++column) {
        const Field field = fieldAt(line, position);
        for (std::size_t i = 0; i < 3; ++i) {
            if (m_columns[i] != column) continue;
            fields[i] = field;
            if (i < 2) --missing;
        }
    }
    return missing == 0;
}

void PointLines::chooseSeparator(std::string_view line) {
    m_separator = m_options.separator;
    if (m_separator == 0)
        m_separator = line.find(';') != std::string_view::npos    ? ';'
                      : line.find('\t') != std::string_view::npos ? '\t'
                                                                  : ' ';
}

/// From the first line; true when it is a header.
bool PointLines::chooseColumns(std::string_view line) {
    std::array<int, 3> titled = {0, 0, 0};
    std::size_t position = 0;
    for (int column = 1; position != std::string_view::npos && column < 10'000; ++column) {
        const Field field = fieldAt(line, position);
        const int coordinate = coordinateOf(trimmed(line.substr(field.start, field.length)));
        if (coordinate >= 0 && titled[static_cast<std::size_t>(coordinate)] == 0)
            titled[static_cast<std::size_t>(coordinate)] = column;
    }
    const bool isTitled = titled[0] != 0 && titled[1] != 0;
    m_columns = m_options.columns;
    if (m_columns[0] == 0) m_columns = isTitled ? titled : std::array<int, 3>{1, 2, 3};
    if (isTitled) return true;
    Fields fields;
    double x = 0, y = 0;
    return findFields(line, fields) &&
           !geodesy::readDecimal(line.substr(fields[0].start, fields[0].length), x) &&
           !geodesy::readDecimal(line.substr(fields[1].start, fields[1].length), y);
}

bool PointLines::chooseZones(const double point[3]) {
    double geo[3] = {0, 0, point[2]};
    // As long as no point has been converted, the next one may be a better one to tell the zones.
    if (CtesProj::asksForZone(m_from.c_str())) m_operation.from = nullptr;
    if (CtesProj::asksForZone(m_to.c_str())) m_operation.to = nullptr;
    if (m_operation.from == nullptr) m_operation.from = CtesProj::GetProjection(m_from.c_str(), point);
    if (m_operation.from == nullptr) return false;
    if (m_operation.to == nullptr && m_operation.from->XyToGeo(point, geo) != 0)
        m_operation.to = CtesProj::GetProjection(m_to.c_str(), geo);
    if (m_operation.to == nullptr) return false;
    const int asked = m_options.decimals;
    const int plane = isGeographic(*m_operation.to) ? degreeDecimals : planeDecimals;
    m_decimals = {asked < 0 ? plane : asked, asked < 0 ? plane : asked, asked < 0 ? planeDecimals : asked};
    m_tracksAccuracy = m_operation.changesDatum();
    return true;
}

void PointLines::checkRoundTrip(const double in[3], const double out[3]) {
    double back[3], geo[3];
    if (!m_operation.reversed().transform(out, back, geo)) {
        m_roundTripPlane = m_roundTripHeight = HUGE_VAL;
        return;
    }
    m_roundTripPlane = std::max(m_roundTripPlane, std::hypot(back[0] - in[0], back[1] - in[1]));
    m_roundTripHeight = std::max(m_roundTripHeight, std::fabs(back[2] - in[2]));
}

void PointLines::append(std::string_view line, const Fields& fields, const double point[3],
                        std::string& out) const {
    std::array<std::size_t, 3> order = {0, 1, 2};
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return fields[a].start < fields[b].start; });
    std::size_t copied = 0;
    char number[geodesy::decimalRoom];
    for (const std::size_t i : order) {
        const Field& field = fields[i];
        if (i == 2 && (field.length == 0 || !m_operation.changesHeight())) continue;
        const std::string_view text = line.substr(field.start, field.length);
        const bool hasComma = m_separator != ',' && text.find(',') != std::string_view::npos;
        // Blanks around the number stay where they were.
        const std::string_view old = trimmed(text);
        const auto start = static_cast<std::size_t>(old.data() - line.data());
        out.append(line, copied, start - copied);
        out.append(number, geodesy::printDecimal(number, point[i], m_decimals[i], hasComma ? ',' : '.'));
        copied = start + old.size();
    }
    out.append(line, copied);
}

const char* PointLines::convertPoint(std::string_view line, std::string& out) {
    Fields fields;
    if (!findFields(line, fields)) return "colonne absente";
    double in[3] = {0, 0, 0}, point[3], geo[3];
    if (!geodesy::readDecimal(line.substr(fields[0].start, fields[0].length), in[0]) ||
        !geodesy::readDecimal(line.substr(fields[1].start, fields[1].length), in[1]))
        return "nombre illisible";
    const bool hasHeight = geodesy::readDecimal(line.substr(fields[2].start, fields[2].length), in[2]);
    if (!hasHeight && m_operation.changesHeight()) return "hauteur absente ou illisible";
    if (m_points == 0 && !chooseZones(in)) return "aucune zone pour ce point";
    if (!m_operation.transform(in, point, geo))
        return "point hors du domaine de la projection ou de la grille";
    if (!(std::fabs(point[0]) < 1e12 && std::fabs(point[1]) < 1e12 && std::fabs(point[2]) < 1e12))
        return "valeur hors limites";
    if (m_tracksAccuracy) {
        const double accuracy = m_operation.accuracyAt(geo);
        if (m_worstAccuracy >= 0)
            m_worstAccuracy = accuracy < 0 ? accuracy : std::max(m_worstAccuracy, accuracy);
    }
    if (m_options.roundTrip) checkRoundTrip(in, point);
    append(line, fields, point, out);
    ++m_points;
    return nullptr;
}

const char* PointLines::convert(std::string_view line, std::string& out) {
    ++m_lines;
    const std::string_view text = trimmed(line);
    const char* reason = nullptr;
    bool isCopied = text.empty() || text.front() == '#';
    if (!isCopied && !m_started) {
        m_started = true;
        chooseSeparator(line);
        isCopied = chooseColumns(line);
    }
    if (isCopied) {
        out.append(line);
    } else if ((reason = convertPoint(line, out)) != nullptr) {
        ++m_badLines;
        out += "# ligne " + std::to_string(m_lines) + " : " + reason + " : ";
        out.append(line);
    }
    out += '\n';
    return reason;
}

}  // namespace kestra
