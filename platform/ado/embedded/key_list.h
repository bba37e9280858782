#pragma once
#include <cstdint>
#include <vector>

namespace ado20::embedded {

/// The keys of a recordset's records in their order, eight bytes each: positions are 0-based. Kept in blocks,
/// so that a key in the middle of a million can go without moving all the others.
class KeyList {
  public:
    std::int64_t size() const { return m_size; }
    void clear();
    void append(std::int64_t key);
    /// `position` below `size()`.
    std::int64_t at(std::int64_t position) const;
    void erase(std::int64_t position);
    void replace(std::int64_t position, std::int64_t key);
    /// Position of a key, -1 when it is not there. Quick as long as keys were appended in ascending order.
    std::int64_t find(std::int64_t key) const;

  private:
    struct Place {
        std::size_t block;
        std::size_t offset;
    };
    Place placeOf(std::int64_t position) const;

    std::vector<std::vector<std::int64_t>> m_blocks;
    std::int64_t m_size = 0;
    bool m_ascending = true;
    // The block that was asked for last, and the position of its first key.
    mutable std::size_t m_lastBlock = 0;
    mutable std::int64_t m_lastStart = 0;
};

}  // namespace ado20::embedded
