#pragma once
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The page of a report, without files: what `TxtToHtml` writes.
namespace report {

/// What the first lines of a report say.
struct Head {
    int width = 80;  ///< characters of the longest of the first text lines, less one
    std::string title;
    std::string normalStyle;  ///< further CSS declarations
    std::string emphasisStyle;
    std::string scripts;
    std::size_t bodyStart = 0;  ///< offset of the first byte behind the last directive
    bool complete = false;      ///< all lines that count were there
};

/// Reads the first lines of a report, of which `text` is the start. A form feed that begins one of the first
/// two text lines becomes a blank in `text`.
Head readHead(std::span<char> text);

/// How the page sets normal text.
struct Font {
    int points;
    int spacing;
    int width;  ///< as the page tells it: negative when the text was condensed
};
Font fontFor(int width);

/// The page up to the first character of the body.
std::string pageHead(const Head& head);

using Sink = std::function<void(std::string_view)>;

/// Turns the body into its part of the page, piece by piece, and gives that to a sink in larger pieces. What
/// stands behind the report's last CR is the caller's to leave out.
class BodyWriter {
  public:
    explicit BodyWriter(Sink sink);
    void write(std::string_view text);
    /// Gives the sink what is still held back.
    void finish();

  private:
    Sink m_sink;
    std::vector<char> m_buffer;
    char* m_end;                ///< of what the buffer holds
    bool m_emphasised = false;  ///< the mark that a line end looks at
};

}  // namespace report
