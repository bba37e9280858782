#include <dorsel/geodesy/datum_grid.h>

#include <algorithm>
#include <cmath>
#include <map>

#include <platform/cp1252.h>

namespace geodesy {

namespace {

constexpr signed char unread = -1;        // code of a node whose line has not come yet
constexpr double largestShift = 10'000;   // metres
constexpr std::size_t shortestLine = 14;  // "2 0 0 1 1 1 1" and its end

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool readFrame(NumberReader line, GridFrame& frame, std::string& fault) {
    double* const values[] = {&frame.west,  &frame.east,          &frame.south,
                              &frame.north, &frame.stepLongitude, &frame.stepLatitude};
    for (double* value : values) {
        if (!line.number(*value)) {
            fault = "ligne GR3D1 incomplète";
            return false;
        }
    }
    return frame.complete(fault);
}

double accuracyOf(signed char code) {
    constexpr double metres[] = {1, 0.05, 0.10, 0.20, 0.50};
    return code >= 1 && code <= 4 ? metres[code] : 1;
}

}  // namespace

bool DatumGrid::readNode(NumberReader line) {
    double longitude = 0, latitude = 0, shift[3] = {}, code = 0;
    const bool isWhole = line.number(longitude) && line.number(latitude) && line.number(shift[0]) &&
                         line.number(shift[1]) && line.number(shift[2]) && line.number(code);
    if (!isWhole || !(code >= 0 && code <= 99)) return false;
    for (const double value : shift)
        if (std::fabs(value) > largestShift) return false;

    const double column = (longitude - m_frame.west) / m_frame.stepLongitude;
    const double row = (latitude - m_frame.south) / m_frame.stepLatitude;
    const double wholeColumn = std::floor(column + 0.5), wholeRow = std::floor(row + 0.5);
    if (std::fabs(column - wholeColumn) > 0.01 || std::fabs(row - wholeRow) > 0.01) return false;
    if (!(wholeColumn >= 0 && wholeColumn < static_cast<double>(m_frame.columns) && wholeRow >= 0 &&
          wholeRow < static_cast<double>(m_frame.rows)))
        return false;
    Node& node =
        m_nodes[static_cast<std::size_t>(wholeRow) * m_frame.columns + static_cast<std::size_t>(wholeColumn)];
    if (node.code != unread) return false;
    for (int i = 0; i < 3; ++i) node.shift[i] = static_cast<float>(shift[i]);
    node.code = static_cast<signed char>(code);
    return true;
}

std::shared_ptr<const DatumGrid> DatumGrid::parse(std::string_view text, std::string& fault) {
    const auto grid = std::make_shared<DatumGrid>();
    NumberReader lines(text);
    std::size_t read = 0;
    for (int number = 1; !lines.rest().empty(); ++number) {
        NumberReader line(lines.restOfLine());
        const std::string_view word = line.word();
        if (word.empty() || word.front() == '#') continue;
        if (word == "GR3D1") {
            if (!grid->m_nodes.empty() || !readFrame(line, grid->m_frame, fault)) {
                if (fault.empty()) fault = "deux lignes GR3D1";
                return nullptr;
            }
            if (grid->m_frame.nodes() > text.size() / shortestLine) {
                fault = "moins de lignes que de noeuds annoncés";
                return nullptr;
            }
            grid->m_nodes.assign(grid->m_frame.nodes(), Node{{0, 0, 0}, unread});
        } else if (!startsWith(word, "GR3D")) {
            if (grid->m_nodes.empty() || !grid->readNode(line)) {
                fault = "ligne " + std::to_string(number) + " : noeud invalide";
                return nullptr;
            }
            ++read;
        }
    }
    if (grid->m_nodes.empty() || read != grid->m_nodes.size()) {
        fault = grid->m_nodes.empty() ? "ligne GR3D1 absente"
                                      : std::to_string(read) + " noeuds lus pour " +
                                            std::to_string(grid->m_nodes.size()) + " annoncés";
        return nullptr;
    }
    return grid;
}

std::shared_ptr<const DatumGrid> DatumGrid::load(const std::string& file, std::string& fault) {
    static std::map<std::string, std::shared_ptr<const DatumGrid>> loaded;
    const std::string key = platform::upperCased1252(file);
    if (const auto found = loaded.find(key); found != loaded.end()) return found->second;
    std::string content;
    if (!readGridFile(file.c_str(), content, fault)) return nullptr;
    auto grid = parse(content, fault);
    if (grid != nullptr) loaded.emplace(key, grid);
    return grid;
}

bool DatumGrid::parametersAt(const double geo[2], double shift[3]) const {
    GridFrame::Cell cell{};
    if (!m_frame.find(geo[0], geo[1], cell)) return false;
    const Node* south = &m_nodes[cell.row * m_frame.columns + cell.column];
    const Node* north = south + m_frame.columns;
    for (int i = 0; i < 3; ++i) {
        shift[i] =
            bilinear(cell, static_cast<double>(south[0].shift[i]), static_cast<double>(south[1].shift[i]),
                     static_cast<double>(north[0].shift[i]), static_cast<double>(north[1].shift[i]));
    }
    return true;
}

double DatumGrid::accuracyAt(const double geo[2]) const {
    GridFrame::Cell cell{};
    if (!m_frame.find(geo[0], geo[1], cell)) return 0;
    const Node* south = &m_nodes[cell.row * m_frame.columns + cell.column];
    const Node* north = south + m_frame.columns;
    double worst = 0;
    for (const Node* node : {south, south + 1, north, north + 1})
        worst = std::max(worst, accuracyOf(node->code));
    return worst;
}

}  // namespace geodesy
