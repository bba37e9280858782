#include <fmt/compile.h>
#include <fmt/format.h>

#include <cstdlib>
#include <iterator>

#include <kestra/controls/listing.h>

#include "side_by_side.h"

/// The HTML listing of 100,000 rows by 10 columns, 66 lines a page, beside the same bytes put together with
/// fmt::format_to into a string.
namespace {

using namespace listing;

constexpr int rowCount = 100000;
constexpr int columnCount = 10;
constexpr int linesPerPage = 66;

/// A survey's points: numbers, coordinates, names, an empty cell now and then, one cell in fifty coloured.
class Points : public Rows {
  public:
    Points() {
        for (int i = 0; i < rowCount * columnCount; ++i) {
            const int column = i % columnCount;
            m_texts.push_back(column == 0       ? std::to_string(i / columnCount)
                              : column < 4      ? fmt::format("{:.3f}", 842000 + i * 0.137)
                              : i % 7 == 0      ? std::string()
                              : column % 2 == 0 ? "Borne cadastrale"
                                                : fmt::format("Z{}", i % 1000));
            m_attributes.push_back(i % 50 == 0 ? 1 << (1 + i / 50 % 3) : cellHasText);
        }
    }
    int count() override { return rowCount; }
    RowState state(int) override { return RowState::exported; }
    Cell cell(int row, int column) override { return at(row, column); }

    Cell at(int row, int column) const {
        const auto i = static_cast<std::size_t>(row * columnCount + column);
        return {m_texts[i], m_attributes[i]};
    }

  private:
    std::vector<std::string> m_texts;
    std::vector<int> m_attributes;
};

std::vector<Column> surveyColumns() {
    std::vector<Column> columns;
    for (int i = 0; i < columnCount; ++i) {
        columns.push_back({i, "Colonne " + std::to_string(i), 80 + i, "RRRLLCLLRL"[i]});
    }
    return columns;
}

/// What the peer is given ready made: the document up to the first page, the header as a format of the page
/// number, the table's opening.
struct Frame {
    std::string start, header, tableStart;
};

Frame frameOf(const std::vector<Column>& columns, const CString& header, Rows& rows) {
    CString html;
    appendDocument(html, columns, rows, "\1", 0);
    const std::string_view text = html.view();
    const std::size_t mark = text.find('\1'), row = text.find("<tr >");
    std::string headerFormat(header.view());
    headerFormat.replace(headerFormat.find("#PAGE#"), 6, "{}");
    return {std::string(text.substr(0, mark)), headerFormat,
            std::string(text.substr(mark + 1, row - mark - 1))};
}

void formatCell(fmt::memory_buffer& row, const Column& column, const Cell& cell) {
    const auto out = fmt::appender(row);
    const bool spans = (cell.attributes & cellSpans) != 0;
    const std::string_view align = column.alignment == 'C'             ? "align='center'"
                                   : column.alignment == 'R' && !spans ? ""
                                                                       : "align='Left'";
    const std::string_view background = cell.attributes & cellRed      ? "BGCOLOR='#F06464' "
                                        : cell.attributes & cellPink   ? "BGCOLOR='#F0b4b4' "
                                        : cell.attributes & cellYellow ? "BGCOLOR='#F0F064' "
                                                                       : "";
    const std::string_view text = cell.text.empty() ? "&nbsp;" : cell.text;
    if (spans) {
        fmt::format_to(out, FMT_COMPILE("<td {}{}COLSPAN='{}' >{}</td>"), align, background,
                       columnCount - column.index, text);
    } else {
        fmt::format_to(out, FMT_COMPILE("<td {}{}>{}</td>"), align, background, text);
    }
}

/// The fastest form found with fmt 9: formats compiled, each row into a kept buffer that is appended to the
/// string. Formatting straight into the string through std::back_inserter is slower.
std::string withFmt(const Points& points, const std::vector<Column>& columns, const Frame& frame) {
    std::string html = frame.start;
    fmt::memory_buffer buffer;
    int lines = 0, page = 0;
    for (int row = 0; row < rowCount; ++row) {
        if (row == 0 || lines >= linesPerPage) {
            if (row > 0) {
                html +=
                    "</table></DIV>\n\n<DIV clear='all' style='page-break-before:always;height:0px;"
                    "line-height:0px'> </DIV>";
            }
            fmt::format_to(std::back_inserter(html), fmt::runtime(frame.header), ++page);
            html += frame.tableStart;
            lines = 6;
        }
        buffer.clear();
        fmt::format_to(fmt::appender(buffer), FMT_COMPILE("<tr >"));
        for (const Column& column : columns) formatCell(buffer, column, points.at(row, column.index));
        fmt::format_to(fmt::appender(buffer), FMT_COMPILE("</tr>\n"));
        html.append(buffer.data(), buffer.size());
        ++lines;
    }
    html += "</table></DIV>\n</body></html>";
    return html;
}

}  // namespace

int main() {
    Points points;
    const std::vector<Column> columns = surveyColumns();
    const CString header =
        pageHeader(convertedFreeText("Points  du chantier\n#AFFAIRE#"),
                   {"09/03/2026 07:05:02\n", "Géomètres associés", "LOTISSEMENT", "TOPO", "POSTE7"});
    const Frame frame = frameOf(columns, header, points);
    CString ours;
    const auto build = [&] {
        ours = CString();
        appendDocument(ours, columns, points, header, linesPerPage);
    };
    build();
    if (ours.view() != withFmt(points, columns, frame)) {
        std::fprintf(stderr, "HTML listing: the two documents differ\n");
        return EXIT_FAILURE;
    }
    bench::sideBySide("HTML listing, 100,000 rows by 10 columns", 0.6, build, "fmt::format_to",
                      [&] { bench::keep(withFmt(points, columns, frame)); });
}
