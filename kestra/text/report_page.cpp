#include <kestra/text/report_page.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <utility>

#include <platform/cp1252.h>

namespace report {
namespace {

constexpr char emphasisOn = 14, emphasisOff = 15, pageBreak = '\f';

// ---- Head

constexpr int headLines = 10;
constexpr std::string_view normalPrefix = "StyleNo=", emphasisPrefix = "StyleEp=", scriptPrefix = "MEPDOC(";

/// A directive line changes `head`; false for any other line.
bool readDirective(std::string_view line, Head& head) {
    if (line.starts_with(normalPrefix)) {
        head.normalStyle = line.substr(normalPrefix.size());
    } else if (line.starts_with(emphasisPrefix)) {
        head.emphasisStyle = line.substr(emphasisPrefix.size());
    } else if (platform::equalNoCase1252(line.substr(0, scriptPrefix.size()), scriptPrefix)) {
        head.scripts += "<script>\nvar torelHtml = new ActiveXObject('torel.Html');\ntorelHtml.";
        head.scripts += line;
        head.scripts += "\n</script>\n";
    } else {
        return false;
    }
    return true;
}

/// The title that an emphasised line gives; `title` stays when the line gives none.
void readTitle(std::string_view line, std::string& title) {
    const std::size_t mark = line.substr(0, 4).find(emphasisOn);
    if (title.size() >= 2 || line.size() < 6 || mark == std::string_view::npos || mark + 5 > line.size())
        return;
    title = line.substr(mark + 1);
    // Kept: accented letters of the title become blanks, as the codes above 127 count as negative here.
    std::replace_if(
        title.begin(), title.end(), [](char c) { return static_cast<signed char>(c) < 32; }, ' ');
}

}  // namespace

Head readHead(std::span<char> text) {
    Head head;
    std::size_t start = 0;
    int lines = 0;
    while (lines < headLines) {
        const std::string_view rest(text.data() + start, text.size() - start);
        const std::size_t end = rest.find('\r');
        if (end == std::string_view::npos) break;
        if (lines < 2 && rest[0] == pageBreak) text[start] = ' ';
        const std::string_view line = rest.substr(0, end);
        start += end + 1;
        if (start < text.size() && text[start] == '\n') ++start;
        if (readDirective(line, head)) {
            head.bodyStart = start;
            continue;
        }
        ++lines;
        head.width = static_cast<int>(std::clamp<std::int64_t>(std::ssize(line) - 1, head.width, INT_MAX));
        readTitle(line, head.title);
    }
    head.complete = lines == headLines;
    return head;
}

Font fontFor(int width) {
    Font font{936 / width, 0, width};
    if (font.points < 7) font = {std::max(1330 / width, 7), 0, -width};
    if (font.points < 8) {
        ++font.points;
        font.spacing = -1;
    }
    font.points = std::min(font.points, 10);
    return font;
}

std::string pageHead(const Head& head) {
    const Font font = fontFor(head.width);
    std::string page = "<B2c LenLigne=" + std::to_string(font.width) + ">\n<HTML>\n<HEAD>\n<title>" +
                       head.title + "</title>\n</HEAD>\n<BODY>\n";
    page += "<style>\nspan.No{font-size:" + std::to_string(font.points) +
            ".0pt;font-family:Courier New;letter-spacing:" + std::to_string(font.spacing) +
            ";font-weight:normal;margin:0;" + head.normalStyle + "}";
    page +=
        "\nspan.Ep{font-size:11pt;font-family:Times New Roman;letter-spacing:0;font-weight: bold;margin:0;" +
        head.emphasisStyle + "}\n</style>\n<span>\n";
    return page + head.scripts + "</span>\n<span class='No'>";
}

// ---- Body

namespace {

constexpr std::string_view normalSpan = "</span>\n<span class='No'>",
                           emphasisSpan = "</span>\n<span class='Ep'>", lineEnd = "<br>\n",
                           pageBreakDiv =
                               "<DIV clear='all' style='page-break-before:always;height:0px;line-height:"
                               "0px'> </DIV>";
constexpr std::size_t longestMarkup = pageBreakDiv.size();

/// What a byte becomes: at most 8 characters, copied all at once. Bytes with longer or changing markup have a
/// length of `markup`.
struct Character {
    char text[8];
    std::uint8_t length;
};
constexpr std::uint8_t markup = 0xFF;

constexpr std::array<Character, 256> characterTable() {
    std::array<Character, 256> table{};
    const auto set = [&table](unsigned char code, std::string_view text) {
        for (std::size_t i = 0; i < text.size(); ++i) table[code].text[i] = text[i];
        table[code].length = static_cast<std::uint8_t>(text.size());
    };
    for (unsigned code = 0; code < 256; ++code) {
        const char itself[] = {static_cast<char>(code)};
        set(static_cast<unsigned char>(code), {itself, 1});
    }
    set(' ', "&nbsp;");
    set('&', "&amp;");
    set('<', "&lt;");
    set('>', "&gt;");
    set(3, "");
    set('\n', "");
    for (const char code : {'\r', pageBreak, emphasisOn, emphasisOff})
        table[static_cast<unsigned char>(code)].length = markup;
    return table;
}
constexpr std::array<Character, 256> characters = characterTable();

/// The markup of CR, form feed, and the emphasis codes; `emphasised` is the mark that a line end looks at.
char* putMarkup(char code, bool& emphasised, char* out) {
    const auto put = [&out](std::string_view text) { out = std::copy(text.begin(), text.end(), out); };
    if (code == pageBreak) put(pageBreakDiv);
    if (code == emphasisOn) put(emphasisSpan);
    // Kept: code 15 leaves the mark set, so the line's end opens the normal span once more.
    if (code == emphasisOff || (code == '\r' && emphasised)) put(normalSpan);
    if (code == '\r') put(lineEnd);
    emphasised = code == emphasisOn || (emphasised && code != '\r');
    return out;
}

char* translate(std::string_view text, bool& emphasised, char* out) {
    for (const char code : text) {
        const Character& character = characters[static_cast<unsigned char>(code)];
        if (character.length == markup) [[unlikely]] {
            out = putMarkup(code, emphasised, out);
        } else {
            std::memcpy(out, character.text, sizeof character.text);
            out += character.length;
        }
    }
    return out;
}

/// The body is translated in chunks; behind a chunk there is always room for what the next one may become.
constexpr std::size_t chunkSize = 256, chunkRoom = chunkSize * longestMarkup + sizeof(Character::text),
                      bufferSize = std::size_t{256} * 1024;

}  // namespace

BodyWriter::BodyWriter(Sink sink) : m_sink(std::move(sink)), m_buffer(bufferSize), m_end(m_buffer.data()) {}

void BodyWriter::write(std::string_view text) {
    const char* const full = m_buffer.data() + m_buffer.size() - chunkRoom;
    while (!text.empty()) {
        const std::string_view chunk = text.substr(0, chunkSize);
        text.remove_prefix(chunk.size());
        m_end = translate(chunk, m_emphasised, m_end);
        if (m_end > full) finish();
    }
}

void BodyWriter::finish() {
    m_sink({m_buffer.data(), static_cast<std::size_t>(m_end - m_buffer.data())});
    m_end = m_buffer.data();
}

}  // namespace report
