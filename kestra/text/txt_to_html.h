#pragma once
#include <platform/export.h>

/// Flags of `TxtToHtml`.
enum TxtToHtmlFlags : int {
    txtToHtmlOpen = 1,  ///< open the page afterwards: "explorer" on Windows, the default browser elsewhere
    txtToHtmlDeleteText = 2,  ///< delete the text file
};

/// Turns a printable report (fixed-width lines, Windows-1252) into an HTML page that keeps the columns
/// aligned, beside the report, with its name and the extension ".htm".
///
/// Report. Lines end in CR LF. In the body a form feed is a page break, code 14 begins emphasised text, code
/// 15 goes back to normal text (a line end does too), codes 3 and 10 are ignored, blanks are hard blanks,
/// "&", "<" and ">" are escaped, everything else is copied. The first ten text lines decide the font size:
/// the longest of them, of L + 1 characters, and at least L = 80. A line among them that begins with code 14
/// (or has it in its first four bytes) gives the title, its codes below 32 and above 127 as blanks; a form
/// feed that begins one of the first two lines makes no page break. Between them may stand directive lines,
/// each a whole line: "StyleNo=" and "StyleEp=" with more CSS declarations for normal and emphasised text,
/// and "MepDoc(...)", in any case, a call on the page's "torel.Html" object. The body begins behind the last
/// directive.
///
/// What differs from what a reader may expect: text behind the last CR is not shown; neither the last span
/// nor the page's HTML element is closed; the page begins with a line "<B2c LenLigne=...>", negative when the
/// text had to be condensed.
///
/// `file` is a name or a pattern ('*', '?'); of several files that match the first by name counts. Returns
/// the page's path, a module-wide text that is valid until the next call. Null when no file matches or it
/// cannot be read. For a file of 2 bytes or fewer nothing is written and the text is returned as it stands:
/// the path of the page before, "" when there was none. A page that cannot be written is not reported; the
/// text file is then not deleted. Takes the file's size and less than a megabyte of memory. Not thread-safe.
extern "C" KESTRA_API const char* TxtToHtml(const char* file, int flags);
