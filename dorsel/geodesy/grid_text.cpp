#include <dorsel/geodesy/grid_text.h>

#include <algorithm>
#include <cmath>

#include <dorsel/geodesy/decimal.h>
#include <dorsel/paths.h>
#include <platform/files.h>

namespace geodesy {

namespace {

constexpr std::int64_t largestFile = 1'000'000'000;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// Number of steps between two bounds, 0 when it is no whole number between 1 and the limit. Steps are
/// published with few digits (0.0333 for a thirtieth), so a fiftieth of a step may be missing at the end.
std::size_t stepsBetween(double low, double high, double step) {
    const double steps = (high - low) / step;
    const double whole = std::floor(steps + 0.5);
    const bool fits = whole >= 1 && whole < static_cast<double>(mostNodesAlong) &&
                      std::fabs(steps - whole) < std::fmax(0.02, steps * 0.001) &&
                      std::fabs(steps - whole) < 0.5;
    return fits ? static_cast<std::size_t>(whole) : 0;
}

}  // namespace

bool GridFrame::complete(std::string& fault) {
    const bool isFrame = west >= -180 && west < east && east <= 360 && south >= -90 && south < north &&
                         north <= 90 && stepLongitude > 0 && stepLatitude > 0;
    if (!isFrame) {
        fault = "limites ou pas invalides";
        return false;
    }
    const std::size_t eastward = stepsBetween(west, east, stepLongitude);
    const std::size_t northward = stepsBetween(south, north, stepLatitude);
    if (eastward == 0 || northward == 0) {
        fault = "les limites ne sont pas distantes d'un nombre entier de pas";
        return false;
    }
    columns = eastward + 1;
    rows = northward + 1;
    if (nodes() > mostNodes) {
        fault = "trop de noeuds";
        return false;
    }
    stepLongitude = (east - west) / static_cast<double>(eastward);
    stepLatitude = (north - south) / static_cast<double>(northward);
    return true;
}

bool GridFrame::find(double longitude, double latitude, Cell& cell) const {
    if (longitude < west) longitude += 360;
    if (!(longitude >= west && longitude <= east && latitude >= south && latitude <= north)) return false;
    const double fromWest = (longitude - west) / stepLongitude, fromSouth = (latitude - south) / stepLatitude;
    cell.column = std::min(static_cast<std::size_t>(fromWest), columns - 2);
    cell.row = std::min(static_cast<std::size_t>(fromSouth), rows - 2);
    cell.east = fromWest - static_cast<double>(cell.column);
    cell.north = fromSouth - static_cast<double>(cell.row);
    return true;
}

std::string_view NumberReader::word() {
    std::size_t start = 0;
    while (start < m_text.size() && isBlank(m_text[start])) ++start;
    std::size_t end = start;
    while (end < m_text.size() && !isBlank(m_text[end])) ++end;
    const std::string_view found = m_text.substr(start, end - start);
    m_text.remove_prefix(end);
    return found;
}

bool NumberReader::number(double& value) {
    return readDecimal(word(), value);
}

std::string_view NumberReader::restOfLine() {
    const std::size_t end = m_text.find('\n');
    const std::string_view line = m_text.substr(0, end);
    m_text.remove_prefix(end == std::string_view::npos ? m_text.size() : end + 1);
    return line;
}

bool readGridFile(const char* name, std::string& content, std::string& fault) {
    std::string folders;
    for (const char letter : {'L', 'N', 'P'}) {
        const std::string folder = standardFolder(letter);
        if (!folder.empty()) folders.append(folder).append("ini\\;").append(folder).append(";");
    }
    char path[DOS::pathSize];
    if (name == nullptr || *name == '\0' ||
        DOS::Localise_fichier(path, name, folders.c_str(), 0) == nullptr) {
        fault = "fichier introuvable";
        return false;
    }
    if (!platform::readWholeFile(path, content, largestFile)) {
        fault = "fichier illisible ou trop grand";
        return false;
    }
    return true;
}

}  // namespace geodesy
