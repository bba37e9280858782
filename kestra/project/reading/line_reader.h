#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include <platform/stream.h>

namespace kestra {

/// Reads the logical lines of a project file (`chantier.h` has the rules) where they stand in the stream's
/// buffer; only a line that goes on in the next physical one is put together in `joined`. No allocation for a
/// line that stands by itself.
class LineReader {
  public:
    /// Longest physical line: what fits beside a NUL in the 4,999 bytes of the format's line buffer.
    static constexpr std::size_t longestPhysical = 4998;

    /// Reads from the stream's position on. The stream must not be used otherwise before the reader is gone;
    /// it then stands behind the last line read.
    LineReader(platform::Stream& stream, std::string& joined) : m_stream(stream), m_joined(joined) {}
    ~LineReader() { m_stream.skip(consumed()); }
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    /// Next logical line; valid until the next call. Returns the number of physical lines that it took, 0 at
    /// the end of the file.
    int next(std::string_view& line);
    /// Passes over the lines ahead that `mayMatter(start)` denies by their first bytes (4,998 are readable at
    /// `start`), and stops at the first one that it does not deny or that needs a closer look: one that
    /// starts or ends with blanks, may go on in the next physical line, holds a NUL or stands at the end of
    /// the file.
    template <class MayMatter>
    void passOver(const MayMatter& mayMatter);
    /// File offset at which the line last read starts.
    std::int64_t lineStart() const { return m_lineStart; }
    /// File offset behind the last line read or passed over.
    std::int64_t position() const { return m_stream.tell() + static_cast<std::int64_t>(consumed()); }

    static bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

  private:
    std::size_t consumed() const { return static_cast<std::size_t>(m_next - m_begin); }
    std::size_t remaining() const { return static_cast<std::size_t>(m_end - m_next); }
    bool nextPiece(std::string_view& piece);
    std::string_view nextPhysical();
    std::string_view upToNul(std::string_view physical);
    int join(std::string_view firstPiece);
    void refill();

    platform::Stream& m_stream;
    std::string& m_joined;
    std::int64_t m_lineStart = 0;
    // The stream's buffer from its position on; its position moves when this is filled again.
    const char* m_begin = nullptr;
    const char* m_next = nullptr;
    const char* m_end = nullptr;
    const char* m_noNulBefore = nullptr;  ///< there is no NUL between `m_next` and here
    std::size_t m_lookAhead = 256;        ///< bytes looked through for a NUL in one go
    bool m_lastBuffer = false;
};

template <class MayMatter>
void LineReader::passOver(const MayMatter& mayMatter) {
    if (remaining() < longestPhysical && !m_lastBuffer) refill();
    while (remaining() >= longestPhysical) {
        const char* const start = m_next;
        const auto* lineFeed = static_cast<const char*>(std::memchr(start, '\n', longestPhysical));
        if (lineFeed == nullptr || lineFeed >= m_noNulBefore || lineFeed - start < 2) return;
        const char last = lineFeed[-1] == '\r' ? lineFeed[-2] : lineFeed[-1];
        if (isBlank(*start) || isBlank(last) || last == '+' || mayMatter(start)) return;
        m_next = lineFeed + 1;
    }
}

}  // namespace kestra
