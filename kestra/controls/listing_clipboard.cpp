#include <kestra/controls/listing_clipboard.h>

#include <algorithm>
#include <cstdio>

#include <kestra/controls/listing_writer.h>

namespace listing {

namespace {

/// Puts what `cellOf` gives for each column, joined by tabs, and ends the line.
void putLine(Writer& out, std::span<const Column> columns, auto&& cellOf) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (i > 0) out.put("\t");
        out.put(cellOf(columns[i]));
    }
    out.put("\r\n");
}

/// Appends the UTF-8 of a Latin-1 text to `out`, which has room for it.
// Kept: codes 128 to 159 become control characters instead of what Windows-1252 shows there (the euro sign,
// the oe ligature): programs that paste these lists expect Latin-1.
void appendUtf8(std::string& out, std::string_view text) {
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 128) {
            out += c;
        } else {
            out += static_cast<char>(byte < 192 ? 194 : 195);
            out += static_cast<char>(byte < 192 ? byte : byte - 64);
        }
    }
}

std::size_t utf8Size(std::string_view text) {
    return text.size() + static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
               return static_cast<unsigned char>(c) >= 128;
           }));
}

std::string nineDigits(std::size_t number) {
    char digits[24];
    std::snprintf(digits, sizeof digits, "%09zu", number);
    return digits;
}

}  // namespace

int appendTabbedText(CString& text, std::span<const Column> columns, Rows& rows) {
    Writer out([&text](std::string_view block) { text += block; }, LineEnds::lf);
    putLine(out, columns, [](const Column& column) { return std::string_view(column.caption); });
    int written = 0;
    const int count = rows.count();
    for (int row = 0; row < count; ++row) {
        const RowState state = rows.state(row);
        if (state == RowState::gone) break;
        if (state == RowState::passedOver) continue;
        putLine(out, columns, [&](const Column& column) {
            const std::string_view cell = rows.cell(row, column.index).text;
            return cell.empty() ? std::string_view(" ") : cell;
        });
        ++written;
    }
    out.flush();
    return written;
}

std::string clipboardHeader(std::size_t documentLength) {
    CString header(
        "Version:1.0;StartHTML:$_START_$;EndHTML:$__END__$;StartFragment:$_START_$;EndFragment:$__END__$;");
    header.Replace(";", "\r\n");
    // The placeholders are as wide as the numbers, so the length holds for the finished header.
    const std::size_t length = header.view().size();
    header.Replace("$_START_$", nineDigits(length).c_str());
    header.Replace("$__END__$", nineDigits(length + documentLength).c_str());
    return std::string(header.view());
}

std::string clipboardHtml(std::string_view document) {
    // Kept: the offsets are those before the conversion, so the end falls short by one byte for each
    // character of 128 or more; the programs that paste these lists read on to the end of the text.
    const std::string header = clipboardHeader(document.size());
    std::string out;
    out.reserve(header.size() + utf8Size(document));
    out += header;
    appendUtf8(out, document);
    return out;
}

std::string utf8FromLatin1(std::string_view text) {
    std::string out;
    out.reserve(utf8Size(text));
    appendUtf8(out, text);
    return out;
}

}  // namespace listing
