#pragma once
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include <kestra/controls/listing.h>

/// A list on the clipboard: as tab-separated text and as an HTML fragment.
namespace listing {

/// Name under which the HTML form is registered with the clipboard.
constexpr const char* htmlFormatName = "HTML Format";

/// Appends the captions and the rows to `text`: cells joined by tabs (an empty cell is a single blank), each
/// line ended by CR LF. Returns the number of rows. Cells that hold tabs or line ends are not quoted.
KESTRA_API int appendTabbedText(CString& text, std::span<const Column> columns, Rows& rows);

/// The header in front of a document of `documentLength` bytes: version, then start and end of the document
/// and of the fragment (the whole document) as nine-digit byte offsets, one to a line. Above 999,999,999
/// bytes the numbers, and with them the header, grow longer than the offsets tell.
KESTRA_API std::string clipboardHeader(std::size_t documentLength);

/// Header and document as the clipboard takes them, in UTF-8.
KESTRA_API std::string clipboardHtml(std::string_view document);

/// UTF-8 of a Latin-1 text: each byte is the code point of that number.
KESTRA_API std::string utf8FromLatin1(std::string_view text);

}  // namespace listing
