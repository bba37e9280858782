#include "table_writers.h"

#include <algorithm>
#include <array>

#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <kestra/controls/listing.h>
#include <kestra/project/chantier.h>
#include <kestra/text/current_date.h>
#include <platform/cp1252.h>
#include <platform/files.h>
#include <platform/machine.h>

namespace {

constexpr int sampledRows = 200;
constexpr std::size_t outputBlock = 1 << 18;
constexpr int linesPerPage = 60;
/// Tells browsers how the page is encoded.
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

/// Hands texts to the terminal in large blocks.
class Output {
  public:
    explicit Output(Terminal& terminal) : m_terminal(terminal) { m_text.reserve(outputBlock * 2); }
    std::string& text() { return m_text; }
    void endLine() {
        m_text += '\n';
        if (m_text.size() >= outputBlock) flush();
    }
    void flush() {
        m_terminal.output(m_text);
        m_text.clear();
    }

  private:
    Terminal& m_terminal;
    std::string m_text;
};

void appendCell(std::string& line, std::string_view value, std::size_t width, bool toTheRight) {
    const std::size_t padding = width - std::min(width, value.size());
    if (toTheRight) line.append(padding, ' ');
    const std::size_t start = line.size();
    line += value;
    std::replace_if(
        line.begin() + static_cast<std::ptrdiff_t>(start), line.end(),
        [](char c) { return c == '\r' || c == '\n' || c == '\t'; }, ' ');
    if (!toTheRight) line.append(padding, ' ');
}

void appendLine(Output& out, const std::vector<TableRows::Column>& columns, auto&& cellOf) {
    constexpr std::size_t widest = 40;
    std::string& line = out.text();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (i > 0) line += "  ";
        appendCell(line, cellOf(i), std::min(columns[i].width, widest), columns[i].isNumber);
    }
    line.resize(line.find_last_not_of(' ') + 1);
    out.endLine();
}

constexpr std::array<bool, 256> wantsQuotes = [] {
    std::array<bool, 256> table{};
    for (const char c : {';', '"', '\r', '\n'}) table[static_cast<unsigned char>(c)] = true;
    return table;
}();

void appendCsvValue(std::string& line, std::string_view value) {
    const bool isPlain = std::none_of(value.begin(), value.end(),
                                      [](char c) { return wantsQuotes[static_cast<unsigned char>(c)]; });
    if (isPlain) {
        line += value;
        return;
    }
    line += '"';
    for (const char c : value) line.append(c == '"' ? 2 : 1, c);
    line += '"';
}

std::string escaped(std::string_view text) {
    std::string html;
    for (const char c : text) {
        if (c == '&')
            html += "&amp;";
        else if (c == '<')
            html += "&lt;";
        else if (c == '>')
            html += "&gt;";
        else if (c == '\n')
            html += "<br>";
        else
            html += c;
    }
    return html;
}

/// The rows as a listing asks for them: once, in order.
class ListingRows : public listing::Rows {
  public:
    ListingRows(TableRows& rows, const RowDone& onRow) : m_rows(rows), m_onRow(onRow) {}
    int count() override { return static_cast<int>(std::min<std::int64_t>(m_rows.count(), INT32_MAX)); }
    listing::RowState state(int row) override {
        m_onRow(row);
        return m_rows.next() ? listing::RowState::exported : listing::RowState::gone;
    }
    listing::Cell cell(int, int column) override {
        m_cell = escaped(m_rows.text(static_cast<std::size_t>(column)));
        return {m_cell, listing::cellHasText};
    }

  private:
    TableRows& m_rows;
    const RowDone& m_onRow;
    std::string m_cell;
};

std::vector<listing::Column> listingColumns(const std::vector<TableRows::Column>& columns) {
    constexpr int characterWidth = 9, margin = 8;
    constexpr std::size_t widest = 50;
    std::vector<listing::Column> shown;
    for (const TableRows::Column& column : columns) {
        const int width = static_cast<int>(std::min(column.width, widest)) * characterWidth + margin;
        shown.push_back({static_cast<int>(shown.size()),
                         escaped(std::string_view(column.name).substr(0, listing::captionLimit)), width,
                         column.isNumber ? 'R' : 'L'});
    }
    return shown;
}

CString listingHeader(const std::string& title) {
    listing::PageValues values;
    values.date = GetCurDate().view();
    values.society = escaped(vfVar.society);
    values.affair = DOS::GetPName(chtdef.m_cheminCht, "N");
    values.computer = platform::theMachine().computerName();
    return listing::pageHeader(listing::convertedFreeText(CString(std::string_view(escaped(title)))), values);
}

}  // namespace

void writeColumns(TableRows& rows, Terminal& terminal, const RowDone& onRow) {
    rows.sample(sampledRows);
    Output out(terminal);
    const auto& columns = rows.columns();
    appendLine(out, columns, [&](std::size_t i) -> std::string_view { return columns[i].name; });
    for (std::int64_t row = 0; rows.next(); onRow(++row))
        appendLine(out, columns, [&](std::size_t i) { return rows.text(i); });
    out.flush();
}

void writeCsv(TableRows& rows, Terminal& terminal, const RowDone& onRow) {
    Output out(terminal);
    const std::size_t count = rows.columns().size();
    const auto appendValues = [&](auto&& valueOf) {
        for (std::size_t i = 0; i < count; ++i) {
            if (i > 0) out.text() += ';';
            appendCsvValue(out.text(), valueOf(i));
        }
        out.endLine();
    };
    appendValues([&](std::size_t i) -> std::string_view { return rows.columns()[i].name; });
    for (std::int64_t row = 0; rows.next(); onRow(++row))
        appendValues([&](std::size_t i) { return rows.text(i); });
    out.flush();
}

bool writeHtml(TableRows& rows, const std::string& title, const std::string& file, const RowDone& onRow) {
    rows.sample(sampledRows);
    platform::FileReplacement page(file.c_str());
    ListingRows listed(rows, onRow);
    page.append(utf8Mark);
    listing::writeDocument([&page](std::string_view block) { page.append(platform::utf8From1252(block)); },
                           listingColumns(rows.columns()), listed, listingHeader(title), linesPerPage);
    return page.commit(platform::FileReplacement::Existing::replaced);
}
