#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <kestra/project/chantier.h>
#include <kestra/project/reading/line_reader.h>
#include <kestra/project/writing/write_turn.h>

namespace {

using kestra::LinePlace;

constexpr std::string_view deletedMark = "$.";

std::vector<LinePlace> deletedLines(platform::Stream& stream) {
    std::vector<LinePlace> deleted;
    std::string joined;
    stream.seek(0);
    kestra::LineReader reader(stream, joined);
    const kestra::StartKey key(deletedMark);
    std::string_view line;
    for (;;) {
        reader.passOver([&](const char* start) { return key.agrees(start); });
        if (reader.next(line) == 0) return deleted;
        if (line.starts_with(deletedMark)) deleted.push_back({reader.lineStart(), reader.position()});
    }
}

/// Copies the bytes of a file that stand outside some lines; neighbours are read together.
class KeptBytes {
  public:
    KeptBytes(platform::File& file, platform::FileReplacement& out) : m_file(file), m_out(out) {}

    /// Copies up to `end`.
    bool copyTo(std::int64_t end) {
        while (m_position < end) {
            const std::int64_t count = std::min(end - m_position, m_bufferEnd - m_position);
            if (count <= 0) {
                if (!fill()) return false;
                continue;
            }
            m_kept.append(m_buffer, static_cast<std::size_t>(m_position - m_bufferStart),
                          static_cast<std::size_t>(count));
            m_position += count;
            if (m_kept.size() >= pieceSize && !flush()) return false;
        }
        return true;
    }
    void skipTo(std::int64_t position) { m_position = position; }
    bool flush() {
        const bool done = m_out.append(m_kept);
        m_kept.clear();
        return done;
    }

  private:
    static constexpr std::size_t pieceSize = 1024UL * 1024;

    bool fill() {
        m_buffer.resize(pieceSize);
        const std::int64_t got = m_file.readAt(m_position, m_buffer.data(), m_buffer.size());
        m_bufferStart = m_position;
        m_bufferEnd = m_position + std::max<std::int64_t>(got, 0);
        return got > 0;
    }

    platform::File& m_file;
    platform::FileReplacement& m_out;
    std::int64_t m_position = 0;
    std::string m_buffer;
    std::int64_t m_bufferStart = 0;
    std::int64_t m_bufferEnd = 0;
    std::string m_kept;
};

bool copyWithout(platform::File& file, const std::vector<LinePlace>& lines, platform::FileReplacement& out) {
    const std::int64_t size = file.size();
    if (size < lines.back().end) return false;
    KeptBytes kept(file, out);
    for (const LinePlace& line : lines) {
        if (!kept.copyTo(line.start)) return false;
        kept.skipTo(line.end);
    }
    return kept.copyTo(size) && kept.flush();
}

}  // namespace

int Cchantier::Compresse() {
    kestra::WriteTurn turn(*this);
    if (!turn.isOpen()) return -1;
    const std::vector<LinePlace> deleted = deletedLines(*m_fp);
    if (m_fp->failed()) return -1;
    if (deleted.empty()) return 0;
    platform::FileReplacement compacted(turn.path().c_str());
    if (!copyWithout(turn.file(), deleted, compacted)) return -1;
    Close();  // a file that is open cannot be replaced everywhere
    return compacted.commit(platform::FileReplacement::Existing::replaced) ? static_cast<int>(deleted.size())
                                                                           : -1;
}
