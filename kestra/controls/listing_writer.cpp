#include <kestra/controls/listing_writer.h>

namespace listing {

void Writer::flush() {
    handOver({m_block.data(), m_used});
    m_used = 0;
}

void Writer::putLarge(std::string_view piece) {
    flush();
    if (piece.size() > m_block.size()) return handOver(piece);
    put(piece);
}

void Writer::handOver(std::string_view bytes) {
    if (m_lineEnds == LineEnds::crlf) {
        for (std::size_t end; (end = bytes.find('\n')) != std::string_view::npos;
             bytes.remove_prefix(end + 1)) {
            m_take(bytes.substr(0, end));
            m_take("\r\n");
        }
    }
    m_take(bytes);
}

}  // namespace listing
