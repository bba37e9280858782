#include "line_reader.h"

#include <algorithm>

namespace kestra {
namespace {

std::string_view withoutLeadingBlanks(std::string_view text) {
    while (!text.empty() && LineReader::isBlank(text.front())) text.remove_prefix(1);
    return text;
}

std::string_view withoutTrailingBlanks(std::string_view text) {
    while (!text.empty() && LineReader::isBlank(text.back())) text.remove_suffix(1);
    return text;
}

const char* find(const char* start, const char* end, char wanted) {
    return static_cast<const char*>(std::memchr(start, wanted, static_cast<std::size_t>(end - start)));
}

}  // namespace

int LineReader::next(std::string_view& line) {
    m_lineStart = position();
    line = {};
    if (!nextPiece(line)) return 0;
    line = withoutTrailingBlanks(line);
    if (!line.ends_with('+')) return 1;
    const int pieces = join(line);
    line = m_joined;
    return pieces;
}

int LineReader::join(std::string_view firstPiece) {
    int pieces = 1;
    m_joined.assign(firstPiece);
    while (m_joined.ends_with('+')) {
        m_joined.pop_back();
        std::string_view piece;
        if (!nextPiece(piece)) break;
        ++pieces;
        m_joined.append(piece);
        m_joined.resize(withoutTrailingBlanks(m_joined).size());
    }
    return pieces;
}

bool LineReader::nextPiece(std::string_view& piece) {
    const std::string_view physical = nextPhysical();
    if (physical.empty()) return false;
    piece = withoutLeadingBlanks(upToNul(physical));
    return true;
}

std::string_view LineReader::nextPhysical() {
    for (;;) {
        const char* start = m_next;
        const char* limit = start + std::min(remaining(), longestPhysical);
        const char* lineFeed = start < limit ? find(start, limit, '\n') : nullptr;
        const bool complete =
            lineFeed != nullptr || m_lastBuffer || static_cast<std::size_t>(limit - start) == longestPhysical;
        if (complete) {
            m_next = lineFeed != nullptr ? lineFeed + 1 : limit;
            return {start, static_cast<std::size_t>(m_next - start)};
        }
        refill();
    }
}

void LineReader::refill() {
    m_stream.skip(consumed());
    const std::string_view bytes = m_stream.available(longestPhysical);
    m_lastBuffer = bytes.size() < longestPhysical;
    m_begin = m_next = m_noNulBefore = bytes.data();
    m_end = m_begin + bytes.size();
}

// Looking through each line on its own would cost as much as finding its end: one look covers many lines, and
// more the longer the reader lives.
std::string_view LineReader::upToNul(std::string_view physical) {
    const char* end = physical.data() + physical.size();
    if (end <= m_noNulBefore) return physical;
    const char* start = std::max(m_noNulBefore, physical.data());
    const char* stop = start + std::min(static_cast<std::size_t>(m_end - start), m_lookAhead);
    stop = std::max(stop, end);
    m_lookAhead = std::min(m_lookAhead * 2, platform::Stream::bufferSize);
    const char* nul = find(start, stop, '\0');
    m_noNulBefore = nul != nullptr ? nul : stop;
    return end <= m_noNulBefore
               ? physical
               : physical.substr(0, static_cast<std::size_t>(m_noNulBefore - physical.data()));
}

}  // namespace kestra
