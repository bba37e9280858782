#include <kestra/controls/listing.h>

#include <cstdio>

#include <kestra/controls/listing_writer.h>
#include <platform/files.h>

namespace listing {

namespace {

constexpr std::string_view documentStart =
    "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0 Transitional//EN\">\n<html><head>"
    "\n</head>\n<body>"
    // Kept: the style stands inside the body; readers of these pages look for it there.
    "\n<style>\n"
    "table{ TABLE-LAYOUT:fixed;white-space:nowrap;overflow:hidden;line-height:15px;padding:0px;"
    "border:black 2px solid; margin: 0px;text-align:right; word-spacing: 0;BORDER-COLLAPSE:collapse;}"
    "\nTR {height:18px;}"
    "\nTR.rose {background-color:#ffd8d8;height:18px;}"
    "\nTR.jaune {background-color:#d8d864;height:18px;}"
    "\nTD {white-space:nowrap;overflow:hidden;font-family:Courier New;font-size:14px;"
    "border:black 1px solid;border-top-width:0px;vertical-align:top;padding:2px;}\n</style>";
constexpr std::string_view documentEnd = "</body></html>";

constexpr const char* headerTemplate =
    "<DIV CONTENTEDITABLE='true' style='font-family:Times New Roman;font-size:16px' border='0'>"
    "<table width='98%' style='border:black 0px solid'><tr>"
    "<td  align='left' style='border:black 0px solid;font-family:Times New Roman;font-size:12px'>"
    "#SOCIETY#</td><td width='110' align='right' style='border:black 0px solid;'> Page:#PAGE#</td>"
    "</tr></table>"
    "\nListé le :#DATE# ;Poste:#COMPUTER#</DIV>";
constexpr const char* freeTextStart =
    "<DIV CONTENTEDITABLE='true' style='font-family:Courier New;font-size:14px;'>";
constexpr const char* freeTextEnd = "</DIV>";

constexpr std::string_view pageMark = "#PAGE#";
constexpr std::string_view pageBreak =
    "\n<DIV clear='all' style='page-break-before:always;height:0px;line-height:0px'> </DIV>";
constexpr std::string_view tableEnd = "</table></DIV>\n";

/// Lines of a page that its header takes.
constexpr int headerLines = 6;

/// The table's opening with its two rows of widths and captions, which every page repeats.
std::string tableStart(std::span<const Column> columns) {
    std::string html =
        "\n<DIV CONTENTEDITABLE='true' >\n<table id='tableTOPO' CONTENTEDITABLE='true'>\n"
        "<tr border=0 style='height:0px;line-height:0px;'>\n";
    // Kept: the cells of the width row are not closed; browsers close them, and the bytes are relied upon.
    for (const Column& column : columns) {
        html += "<TD style=\"padding:0px;\" width='" + std::to_string(column.width) + "'>";
    }
    html += "</tr>\n<tr style='height:36px;'>\n";
    for (const Column& column : columns) html += "<TD align=center>" + column.caption + "</td>\n";
    return html += "</tr>\n";
}

std::string_view alignmentOf(char alignment, bool spans) {
    if (alignment == 'C') return "align='center'";
    if (alignment == 'R' && !spans) return "";
    return "align='Left'";
}

std::string_view backgroundOf(int attributes) {
    if (attributes & cellRed) return "BGCOLOR='#F06464' ";
    if (attributes & cellPink) return "BGCOLOR='#F0b4b4' ";
    if (attributes & cellYellow) return "BGCOLOR='#F0F064' ";
    return "";
}

/// Everything of a cell that stands in front of its text, by the column and the cell's attributes.
/// Kept: the attribute pieces follow each other without a separator ("align='Left'BGCOLOR=...").
std::string cellStart(const Column& column, std::size_t columnCount, int attributes) {
    const bool spans = (attributes & cellSpans) != 0;
    std::string html = "<td ";
    html += alignmentOf(column.alignment, spans);
    html += backgroundOf(attributes);
    // Kept: the span is the number of exported columns less the column's index in the header, hidden columns
    // counted, so it may come out as 0 or negative; browsers then span nothing.
    if (spans) html += "COLSPAN='" + std::to_string(static_cast<int>(columnCount) - column.index) + "' ";
    return html += '>';
}

constexpr int shownAttributes = cellPink | cellRed | cellYellow | cellSpans;

/// Writes the rows with their pages.
class Document {
  public:
    Document(Writer& out, std::span<const Column> columns, std::string_view header, int linesPerPage)
        : m_out(out),
          m_columns(columns),
          m_header(header),
          m_tableStart(tableStart(columns)),
          m_linesPerPage(linesPerPage) {
        for (const Column& column : columns) m_plainStarts.push_back(cellStart(column, columns.size(), 0));
    }

    void write(Rows& rows) {
        m_out.put(documentStart);
        const int count = rows.count();
        for (int row = 0; row < count; ++row) {
            const RowState state = rows.state(row);
            if (state == RowState::gone) break;
            if (state == RowState::exported) writeRow(rows, row);
        }
        if (m_rowsWritten > 0) m_out.put(tableEnd);
        m_out.put(documentEnd);
    }

    int rowsWritten() const { return m_rowsWritten; }

  private:
    void writeRow(Rows& rows, int row) {
        if (m_rowsWritten == 0 || (m_linesPerPage != 0 && m_lines >= m_linesPerPage)) beginPage();
        // Kept: the blank behind "tr" is where a class of the row once stood.
        m_out.put("<tr >");
        for (std::size_t i = 0; i < m_columns.size(); ++i) writeCell(i, rows.cell(row, m_columns[i].index));
        m_out.put("</tr>\n");
        ++m_rowsWritten;
        ++m_lines;
    }

    // Kept: a spanning cell does not suppress the cells behind it.
    void writeCell(std::size_t column, const Cell& cell) {
        if ((cell.attributes & shownAttributes) == 0) {
            m_out.put(m_plainStarts[column]);
        } else {
            m_out.put(cellStart(m_columns[column], m_columns.size(), cell.attributes));
        }
        m_out.put(cell.text.empty() ? std::string_view("&nbsp;") : cell.text);
        m_out.put("</td>");
    }

    void beginPage() {
        if (m_rowsWritten > 0) {
            m_out.put(tableEnd);
            m_out.put(pageBreak);
        }
        writeHeader(std::to_string(++m_page));
        m_out.put(m_tableStart);
        m_lines = headerLines;
    }

    void writeHeader(std::string_view page) {
        std::string_view rest = m_header;
        for (std::size_t mark; (mark = rest.find(pageMark)) != std::string_view::npos;
             rest.remove_prefix(mark + pageMark.size())) {
            m_out.put(rest.substr(0, mark));
            m_out.put(page);
        }
        m_out.put(rest);
    }

    Writer& m_out;
    std::span<const Column> m_columns;
    std::string_view m_header;
    std::string m_tableStart;
    std::vector<std::string> m_plainStarts;  // of each column, for cells without attributes: nearly all
    int m_linesPerPage;
    int m_lines = 0;
    int m_page = 0;
    int m_rowsWritten = 0;
};

bool isBlank(std::string_view caption) {
    return caption.find_first_not_of(" \t\n\v\f\r\xA0") == std::string_view::npos;
}

char alignmentLetter(int format) {
    constexpr int right = 1, centred = 2;
    if (format & centred) return 'C';
    return format & right ? 'R' : 'L';
}

}  // namespace

Rows::~Rows() = default;

std::vector<Column> exportedColumns(std::span<const HeaderItem> itemsInDisplayOrder) {
    std::vector<Column> columns;
    for (const HeaderItem& item : itemsInDisplayOrder) {
        const bool marksRows = &item == itemsInDisplayOrder.data() && isBlank(item.caption);
        if (marksRows || item.width <= 1 || !item.hasRecord) continue;
        columns.push_back({item.index, std::string(item.caption.substr(0, captionLimit)), item.width,
                           alignmentLetter(item.format)});
    }
    return columns;
}

CString convertedFreeText(const CString& text) {
    CString converted(text);
    converted.Replace("\n", "<br>");
    converted.Replace("  ", " &nbsp;");
    return converted;
}

CString pageHeader(const CString& convertedText, const PageValues& values) {
    CString header(headerTemplate);
    if (!convertedText.IsEmpty()) {
        header += freeTextStart;
        header += convertedText;
        header += freeTextEnd;
    }
    header.Replace("#DATE#", values.date.c_str());
    header.Replace("#SOCIETY#", values.society.c_str());
    header.Replace("#AFFAIRE#", values.affair.c_str());
    header.Replace("#SERVICE#", values.service.c_str());
    header.Replace("#COMPUTER#", values.computer.c_str());
    return header;
}

int appendDocument(CString& html, std::span<const Column> columns, Rows& rows, const CString& header,
                   int linesPerPage, LineEnds lineEnds) {
    return writeDocument([&html](std::string_view block) { html += block; }, columns, rows, header,
                         linesPerPage, lineEnds);
}

int writeDocument(const BlockTaker& take, std::span<const Column> columns, Rows& rows, const CString& header,
                  int linesPerPage, LineEnds lineEnds) {
    Writer out(take, lineEnds);
    Document document(out, columns, header.view(), linesPerPage);
    document.write(rows);
    out.flush();
    return document.rowsWritten();
}

std::string documentPath(std::string_view fileName, std::string_view layoutName, unsigned long threadId) {
    if (!fileName.empty()) return std::string(fileName);
    if (layoutName.empty()) layoutName = "LraListCtrl";
    layoutName.remove_prefix(layoutName.find_last_of("\\/") + 1);
    char suffix[32];
    std::snprintf(suffix, sizeof suffix, "_%04lx.HTM", threadId);
    return "C:\\TEMP\\" + std::string(layoutName) + suffix;
}

bool saveDocument(const std::string& path, std::string_view html) {
    const std::size_t separator = path.find_last_of("\\/");
    if (separator != std::string::npos) {
        platform::theFiles().createFolder(path.substr(0, separator + 1).c_str());
    }
    return platform::replaceWholeFile(path.c_str(), html);
}

}  // namespace listing
