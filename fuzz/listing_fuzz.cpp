#include <cstdint>
#include <cstdlib>

#include <kestra/controls/listing_clipboard.h>

using namespace listing;

/// Overlapping stretches of the input as cells; a byte of each is its attributes.
struct Stretches : Rows {
    std::string_view text;
    int columns = 1;
    int count() override { return static_cast<int>(text.size()) / columns; }
    RowState state(int row) override { return static_cast<RowState>(cell(row, 0).attributes & 1); }
    Cell cell(int row, int column) override {
        const std::string_view rest = text.substr(static_cast<std::size_t>(row * columns + column));
        return {rest.substr(0, static_cast<unsigned char>(rest[0]) % 40), rest[0]};
    }
};

static int count(const CString& text, std::string_view sought) {
    int found = 0;
    for (std::size_t at = 0; (at = text.view().find(sought, at)) != sought.npos; ++at) ++found;
    return found;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || size > 800) return 0;  // the document grows with the square of the input
    CString text(std::string_view(reinterpret_cast<const char*>(data), size)), html, tabbed;
    text.Replace('<', '(');  // so that every tag is the document's own
    Stretches rows;
    rows.text = text.view();
    std::vector<HeaderItem> items;
    for (int i = 0; i <= data[0] % 8; ++i) items.push_back({i, rows.text, 2 + i, i});
    const std::vector<Column> columns = exportedColumns(items);
    rows.columns = static_cast<int>(items.size());
    const CString header = pageHeader(convertedFreeText(text), {"", "#AFFAIRE#", "#SERVICE#", "#PAGE#", "P"});
    const int written = appendDocument(html, columns, rows, header, static_cast<std::int8_t>(data[1]));
    const int pages = count(html, "<table id"), cellsPerRow = static_cast<int>(columns.size());
    const bool balanced = count(html, "<tr >") == written && (pages > 0) == (written > 0) &&
                          count(html, "</td>") == written * cellsPerRow + pages * (2 + cellsPerRow) &&
                          count(html, "<DIV") == count(html, "</DIV>");
    if (!balanced || appendTabbedText(tabbed, columns, rows) != written) std::abort();
    const std::string pasted = clipboardHtml(html.view());
    if (std::strtoul(&pasted[42], nullptr, 10) != 101 + html.view().size()) std::abort();
    return 0;
}
