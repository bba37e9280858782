#pragma once
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include <kestra/controls/listing.h>

namespace listing {

/// Collects the many small pieces of a document and hands them on a block at a time: a piece costs a copy
/// inside the processor's cache instead of a call that may have to grow the document.
class Writer {
  public:
    Writer(BlockTaker take, LineEnds lineEnds) : m_take(std::move(take)), m_lineEnds(lineEnds) {}
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void put(std::string_view piece) {
        if (piece.size() > m_block.size() - m_used) return putLarge(piece);
        std::memcpy(m_block.data() + m_used, piece.data(), piece.size());
        m_used += piece.size();
    }
    /// Must follow the last piece.
    void flush();

  private:
    void putLarge(std::string_view piece);
    void handOver(std::string_view bytes);

    BlockTaker m_take;
    LineEnds m_lineEnds;
    std::size_t m_used = 0;
    std::array<char, 32768> m_block;
};

}  // namespace listing
