#pragma once
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <platform/cstring.h>
#include <platform/export.h>

/// A list on paper: its columns and rows as a paged HTML document, without a window. A list control feeds
/// these functions and carries out what they answer; a program without windows may feed them just as well.
///
/// What differs from what a reader may expect:
/// - texts are Windows-1252 and go into the document byte for byte, without a character-set declaration;
/// - captions, cells and the free text ARE HTML: nothing is escaped, so "<b>12</b>" prints in bold;
/// - rows are asked for once, in order, and nothing is kept of them: the document grows in one buffer, or is
///   handed on as it is made (`writeDocument`).
/// No function throws but for lack of memory; texts may hold any bytes and be of any length.
namespace listing {

/// What the header of a list tells about one of its columns.
struct HeaderItem {
    int index = 0;  ///< of the column, whatever its place on the screen
    std::string_view caption;
    int width = 0;          ///< of the header rectangle, in pixels
    int format = 0;         ///< header format bits: 1 right-aligned, 2 centred
    bool hasRecord = true;  ///< whether the column has a column record
};

/// An exported column.
struct Column {
    int index = 0;         ///< header index, by which its cells are asked for
    std::string caption;   ///< at most 254 characters
    int width = 0;         ///< in pixels
    char alignment = 'L';  ///< 'L' left, 'C' centred, 'R' right
};

/// Longest caption that is exported; longer ones are cut.
constexpr std::size_t captionLimit = 254;

/// The columns that an export shows, out of the header items in display order: those wider than one pixel
/// that have a record. The item displayed first is left out when its caption is blank (spaces, no-break
/// spaces and control blanks): it marks rows and has no text of its own.
KESTRA_API std::vector<Column> exportedColumns(std::span<const HeaderItem> itemsInDisplayOrder);

/// Attribute bits of a cell, as a list's `GetValue` returns them; others mean nothing here.
enum CellAttribute {
    cellHasText = 1,
    cellPink = 2,
    cellRed = 4,     ///< takes precedence over pink and yellow
    cellYellow = 8,  ///< gives way to pink
    cellSpans = 16,  ///< spans to the end of the row
};

struct Cell {
    std::string_view text;  ///< valid until the next question to the rows
    int attributes = 0;
};

enum class RowState {
    exported,
    passedOver,  ///< not in this export: not selected
    gone,        ///< the list has lost this row and all that follow: the export ends in front of it
};

/// The rows of a list as an export walks them: for each row in order its state, then each of its cells.
///
/// A list may change while it is exported. Rows that came too late are not exported; the first row that is
/// gone ends the export, the rows written until then stay. A cell that is gone in the middle of its row is
/// to be answered with an empty text.
class KESTRA_API Rows {
  public:
    virtual ~Rows();
    /// Number of rows, from 0; asked once, before the first row.
    virtual int count() = 0;
    virtual RowState state(int row) = 0;
    /// `column` is the header index of an exported column.
    virtual Cell cell(int row, int column) = 0;
};

/// Values of the page header's placeholders.
struct PageValues {
    std::string date;      ///< "#DATE#"
    std::string society;   ///< "#SOCIETY#"
    std::string affair;    ///< "#AFFAIRE#"
    std::string service;   ///< "#SERVICE#"
    std::string computer;  ///< "#COMPUTER#"
};

/// A free text as the page header shows it: every line feed becomes "<br>", every pair of blanks " &nbsp;".
/// Printing changes the caller's own text to this.
KESTRA_API CString convertedFreeText(const CString& text);

/// The header that every page repeats, with the converted free text below it when there is one. The
/// placeholders are replaced one after the other in the order of `PageValues`, in the free text as well, and
/// in the values put in before. "#PAGE#" stays for `appendDocument`.
KESTRA_API CString pageHeader(const CString& convertedText, const PageValues& values);

enum class LineEnds {
    lf,
    crlf,  ///< every line feed, those of captions and cells included, is written as CR LF
};

/// Appends the whole document to `html` and returns the number of rows written. Each page shows the header
/// with its page number (from 1) for "#PAGE#", the captions and its rows. The page header counts as six
/// lines of `linesPerPage`; 0 puts everything on one page, and every page holds at least one row however
/// small (or negative) it is. Without any row the document holds neither page header nor table.
KESTRA_API int appendDocument(CString& html, std::span<const Column> columns, Rows& rows,
                              const CString& header, int linesPerPage, LineEnds lineEnds = LineEnds::lf);

/// Takes a document block by block, in order; a block lives during the call only.
using BlockTaker = std::function<void(std::string_view block)>;
/// The same document, handed to `take` while it is made: for more rows than memory holds.
KESTRA_API int writeDocument(const BlockTaker& take, std::span<const Column> columns, Rows& rows,
                             const CString& header, int linesPerPage, LineEnds lineEnds = LineEnds::lf);

/// Path of the document: `fileName` when it is not empty, else "C:\TEMP\NAME_THREAD.HTM" with what follows
/// the last separator of the layout's name ("LraListCtrl" when there is no layout) and the thread's number
/// in at least four hexadecimal digits. A name that no file can have is not mended: `saveDocument` refuses.
KESTRA_API std::string documentPath(std::string_view fileName, std::string_view layoutName,
                                    unsigned long threadId);

/// Writes the document as it is, making its folder when it is missing. False when either fails; a file that
/// was there is then as it was.
KESTRA_API bool saveDocument(const std::string& path, std::string_view html);

}  // namespace listing
