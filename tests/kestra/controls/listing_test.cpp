#include <gtest/gtest.h>

#include <kestra/controls/listing.h>
#include <kestra/controls/listing_clipboard.h>
#include <platform/faulty_files.h>
#include <platform/replaceable.h>

#include "tests/support/temporary_folder.h"

namespace {

using namespace listing;

const std::string start =
    "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0 "
    "Transitional//EN\">\n<html><head>\n</head>\n<body>\n<style>\n"
    "table{ TABLE-LAYOUT:fixed;white-space:nowrap;overflow:hidden;line-height:15px;padding:0px;border:black "
    "2px "
    "solid; margin: 0px;text-align:right; word-spacing: 0;BORDER-COLLAPSE:collapse;}\nTR {height:18px;}\n"
    "TR.rose {background-color:#ffd8d8;height:18px;}\nTR.jaune {background-color:#d8d864;height:18px;}\n"
    "TD {white-space:nowrap;overflow:hidden;font-family:Courier New;font-size:14px;border:black 1px solid;"
    "border-top-width:0px;vertical-align:top;padding:2px;}\n</style>";
const std::string end = "</body></html>";
const std::string tableEnd = "</table></DIV>\n";
const std::string pageBreak =
    "\n<DIV clear='all' style='page-break-before:always;height:0px;line-height:0px'> </DIV>";
const std::string tableStart =
    "\n<DIV CONTENTEDITABLE='true' >\n<table id='tableTOPO' CONTENTEDITABLE='true'>\n"
    "<tr border=0 style='height:0px;line-height:0px;'>\n";

/// Rows of made-up cells: a row's state and its cells by header index.
struct TableRows : Rows {
    std::vector<std::vector<Cell>> cells;
    std::vector<RowState> states;  // exported where there is none

    TableRows(std::vector<std::vector<Cell>> table = {}, std::vector<RowState> rowStates = {})
        : cells(std::move(table)), states(std::move(rowStates)) {}
    int count() override { return static_cast<int>(cells.size()); }
    RowState state(int row) override {
        const auto i = static_cast<std::size_t>(row);
        return i < states.size() ? states[i] : RowState::exported;
    }
    Cell cell(int row, int column) override {
        return cells[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    }
};

std::string document(std::span<const Column> columns, Rows& rows, const char* header = "H#PAGE#",
                     int linesPerPage = 0, LineEnds lineEnds = LineEnds::lf) {
    CString html;
    appendDocument(html, columns, rows, header, linesPerPage, lineEnds);
    return std::string(html.view());
}

/// The first row's bytes in a document of these columns and cells.
std::string rowOf(std::span<const Column> columns, std::vector<Cell> cells) {
    TableRows rows({std::move(cells)});
    const std::string html = document(columns, rows);
    const std::size_t from = html.find("<tr >");
    return html.substr(from, html.find("</tr>\n", from) - from);
}

int occurrences(std::string_view text, std::string_view sought) {
    int count = 0;
    for (std::size_t at = 0; (at = text.find(sought, at)) != std::string_view::npos; at += sought.size())
        ++count;
    return count;
}

TEST(ListingColumns, AreTheShownOnesWithoutABlankFirst) {
    const std::string longCaption(100000, 'x');
    const std::vector<HeaderItem> items = {
        {4, " \t\xA0", 20, 0}, {2, "Désignation", 120, 0}, {0, "X", 60, 1},
        {1, "cachée", 1, 0},   {7, "nulle", 0, 0},         {3, "", 30, 2},
        {5, "les deux", 2, 3}, {6, "sans", 50, 0, false},  {8, longCaption, 9, 0x4000}};
    std::string all;
    for (const Column& each : exportedColumns(items))
        all += std::to_string(each.index) + each.alignment + std::to_string(each.width) + each.caption + "|";
    EXPECT_EQ(all, "2L120Désignation|0R60X|3C30|5C2les deux|8L9" + std::string(254, 'x') + "|");
    EXPECT_EQ(exportedColumns(std::span(items).subspan(1)).size(), 5u) << "a first caption with a text";
}

TEST(ListingDocument, WholePageByteForByte) {
    const std::vector<Column> columns = {{0, "N°", 40, 'R'}, {2, "Nom", 150, 'L'}};
    TableRows rows({{{"1"}, {}, {"Église"}}, {{"2"}, {}, {""}}, {{"3"}, {}, {"<b>\"x\"</b>"}}},
                   {RowState::exported, RowState::passedOver, RowState::exported});
    // The style inside the body, the unclosed cells of the width row and cells that are HTML are kept.
    EXPECT_EQ(document(columns, rows),
              start + "H1" + tableStart +
                  "<TD style=\"padding:0px;\" width='40'><TD style=\"padding:0px;\" width='150'></tr>\n"
                  "<tr style='height:36px;'>\n<TD align=center>N°</td>\n<TD align=center>Nom</td>\n</tr>\n"
                  "<tr ><td >1</td><td align='Left'>Église</td></tr>\n"
                  "<tr ><td >3</td><td align='Left'><b>\"x\"</b></td></tr>\n" +
                  tableEnd + end);
}

TEST(ListingDocument, EndsInFrontOfTheFirstRowThatIsGoneAndIsEmptyWithoutRows) {
    const std::vector<Column> columns = {{0, "A", 10, 'L'}};
    TableRows none, unselected({{{"a"}}}, {RowState::passedOver}), lost({{{"a"}}}, {RowState::gone});
    for (Rows* rows : {&none, &unselected, &lost}) EXPECT_EQ(document(columns, *rows), start + end);
    TableRows rows({{{"a"}}, {{"b"}}, {{"c"}}}, {RowState::exported, RowState::gone});
    EXPECT_TRUE(document(columns, rows).ends_with("<td align='Left'>a</td></tr>\n" + tableEnd + end));
    CString text;
    EXPECT_EQ(appendTabbedText(text, columns, rows), 1);
    EXPECT_EQ(text, "A\r\na\r\n");
}

// Kept: attribute pieces follow each other without a separator; a spanning cell does not suppress the cells
// behind it; the span counts from the column's index in the header.
TEST(ListingCell, AttributePiecesFollowWithoutASeparatorAndSpansCountFromTheHeaderIndex) {
    const struct {
        char alignment;
        int attributes;
        const char *text, *html;
    } cases[] = {{'L', 1, "", "<td align='Left'>&nbsp;</td>"},
                 {'R', 1 | 32, "a", "<td >a</td>"},
                 {'C', 1, " ", "<td align='center'> </td>"},
                 {'L', 1 | 2, "a", "<td align='Left'BGCOLOR='#F0b4b4' >a</td>"},
                 {'C', 4 | 8, "a", "<td align='center'BGCOLOR='#F06464' >a</td>"},
                 {'R', 8, "a", "<td BGCOLOR='#F0F064' >a</td>"},
                 {'R', 2 | 8, "a", "<td BGCOLOR='#F0b4b4' >a</td>"},
                 {'R', 16 | 8, "a", "<td align='Left'BGCOLOR='#F0F064' COLSPAN='1' >a</td>"},
                 {'C', 16, "", "<td align='center'COLSPAN='1' >&nbsp;</td>"}};
    for (const auto& c : cases) {
        const std::vector<Column> columns = {{0, "A", 9, 'R'}, {1, "B", 9, c.alignment}};
        EXPECT_EQ(rowOf(columns, {{"x"}, {c.text, c.attributes}}), std::string("<tr ><td >x</td>") + c.html);
    }
    const std::vector<Column> farColumns = {{5, "A", 9, 'L'}, {0, "B", 9, 'C'}};
    EXPECT_EQ(rowOf(farColumns, {{"b", 16}, {}, {}, {}, {}, {"a", 16}}),
              "<tr ><td align='Left'COLSPAN='-3' >a</td><td align='center'COLSPAN='2' >b</td>");
}

TEST(ListingPages, BeginWhenTheirLinesAreReachedAndCountSixForTheHeader) {
    const struct {
        int linesPerPage, rows, pages;
    } cases[] = {{0, 1000, 1}, {26, 20, 1}, {26, 21, 2}, {26, 60, 3}, {6, 3, 3}, {-4, 3, 3}, {8, 3, 2}};
    const std::vector<Column> columns = {{0, "A", 10, 'R'}};
    for (const auto& c : cases) {
        TableRows rows(std::vector<std::vector<Cell>>(static_cast<std::size_t>(c.rows), {{"a"}}));
        const std::string html = document(columns, rows, "<p>#PAGE#,#PAGE#</p>", c.linesPerPage);
        const std::string last = std::to_string(c.pages);
        EXPECT_EQ(occurrences(html, tableStart), c.pages) << c.linesPerPage;
        EXPECT_EQ(occurrences(html, tableEnd), c.pages);
        EXPECT_EQ(occurrences(html, "</tr>\n" + tableEnd + pageBreak + "<p>"), c.pages - 1);
        EXPECT_EQ(occurrences(html, "<p>" + last + "," + last + "</p>"), 1);
    }
}

TEST(ListingHeader, HoldsTheValuesAndTheFreeText) {
    const PageValues values = {"09/03/2026 07:05:02\n", "Géomètres & Cie", "Église#COMPUTER#", "S1",
                               "POSTE7"};
    EXPECT_EQ(
        pageHeader("", values),
        "<DIV CONTENTEDITABLE='true' style='font-family:Times New Roman;font-size:16px' border='0'><table "
        "width='98%' style='border:black 0px solid'><tr><td  align='left' style='border:black 0px "
        "solid;font-family:Times New Roman;font-size:12px'>Géomètres & Cie</td><td width='110' align='right' "
        "style='border:black 0px solid;'> Page:#PAGE#</td></tr></table>\nListé le :09/03/2026 07:05:02\n "
        ";Poste:POSTE7</DIV>");
    const CString text = convertedFreeText("Plan  de#AFFAIRE#/#SERVICE#\nfin   .");
    EXPECT_EQ(text, "Plan &nbsp;de#AFFAIRE#/#SERVICE#<br>fin &nbsp; .");
    const std::string header(pageHeader(text, values).view());
    EXPECT_TRUE(
        header.ends_with("</DIV><DIV CONTENTEDITABLE='true' style='font-family:Courier "
                         "New;font-size:14px;'>Plan &nbsp;deÉglisePOSTE7/S1<br>fin &nbsp; .</DIV>"));
}

TEST(ListingDocument, LineEndsBecomeCrLfEvenInLongCells) {
    const std::string longCell = std::string(100000, 'x') + "\n" + std::string(50000, 'y');
    const std::vector<Column> columns = {{0, "A\nB", 10, 'R'}};
    TableRows rows({{{"1\r\n2"}}, {{longCell}}});
    std::string plain = document(columns, rows);
    EXPECT_NE(plain.find(longCell), std::string::npos);
    for (std::size_t at = 0; (at = plain.find('\n', at)) != std::string::npos; at += 2)
        plain.insert(at, "\r");
    EXPECT_EQ(document(columns, rows, "H#PAGE#", 0, LineEnds::crlf), plain);
}

TEST(ListingClipboard, TabbedTextHasASingleBlankForEmptyCells) {
    const std::vector<Column> columns = {{1, "Clé", 40, 'R'}, {0, "", 150, 'L'}};
    TableRows rows({{{""}, {"é"}}, {{"b"}, {"a"}}, {{"d"}, {""}}},
                   {RowState::exported, RowState::passedOver, RowState::exported});
    CString text;
    EXPECT_EQ(appendTabbedText(text, columns, rows), 2);
    EXPECT_EQ(text, "Clé\t\r\né\t \r\n \td\r\n");
}

TEST(ListingClipboard, OffsetsAreThoseBeforeTheConversion) {
    const std::string document = "<td >été à</td>";
    const std::string html = clipboardHtml(document);
    const std::string header =
        "Version:1.0\r\nStartHTML:000000101\r\nEndHTML:000000116\r\nStartFragment:000000101\r\n"
        "EndFragment:000000116\r\n";
    EXPECT_EQ(header.size(), 101u);
    EXPECT_EQ(html, header + "<td >\xC3\xA9t\xC3\xA9 \xC3\xA0</td>");
    EXPECT_EQ(html.size(), 116u + 3u);
}

TEST(ListingClipboard, ConversionIsLatin1EvenWhereWindows1252Differs) {
    EXPECT_EQ(utf8FromLatin1("A\x7F\x80\x9C\xBF\xC0\xFF"), "A\x7F\xC2\x80\xC2\x9C\xC2\xBF\xC3\x80\xC3\xBF");
}

TEST(ListingFile, PathIsTheCallersOrMadeFromTheLayoutAndTheThread) {
    EXPECT_EQ(documentPath("D:\\x.htm", "Clients", 1), "D:\\x.htm");
    EXPECT_EQ(documentPath("", "", 0x1a), "C:\\TEMP\\LraListCtrl_001a.HTM");
    EXPECT_EQ(documentPath("", "Listes\\Etudes/Clients", 0x12345), "C:\\TEMP\\Clients_12345.HTM");
    EXPECT_EQ(documentPath("", "Listes\\", 0), "C:\\TEMP\\_0000.HTM");
}

TEST(ListingFile, IsWrittenWithItsFolderOrNotAtAll) {
    const TemporaryFolder folder;
    EXPECT_TRUE(saveDocument(folder.path("neuf\\liste.htm"), "é\n\r\n"));
    EXPECT_EQ(folder.read("neuf\\liste.htm"), "é\n\r\n");
    EXPECT_FALSE(saveDocument(folder.path("neuf\\liste.htm\\autre.htm"), "x"));
    platform::FaultyFiles faulty(platform::theFiles());
    faulty.diskFull(true);
    const platform::Replaced inForce(platform::replaceFiles, faulty);
    EXPECT_FALSE(saveDocument(folder.path("neuf\\liste.htm"), "x"));
    EXPECT_EQ(folder.read("neuf\\liste.htm"), "é\n\r\n");
}

}  // namespace
