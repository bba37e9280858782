#pragma once
#include <cstdint>
#include <string_view>
#include <vector>

/// The rows of a list as a sort needs them: each row's item data and the rank of its text, found once, so
/// that a comparison is two look-ups. Private to this folder.
///
/// It answers as a scan of the rows would: of rows with equal data the last one counts, data of no row means
/// row 0. Texts are ordered as unsigned bytes, a text before its continuations.
class ListSortTable {
  public:
    struct Row {
        std::uint64_t data;
        std::string_view text;  ///< must live only during construction
    };
    explicit ListSortTable(const std::vector<Row>& rows);

    /// Negative, 0 or positive as the text of `data1` stands to that of `data2`.
    int compare(std::uint64_t data1, std::uint64_t data2) const { return rankOf(data1) - rankOf(data2); }

  private:
    struct Slot {
        std::uint64_t data = 0;
        std::int32_t rank = free;
    };
    static constexpr std::int32_t free = -1;

    Slot& slotOf(std::uint64_t data);
    std::size_t home(std::uint64_t data) const;
    std::int32_t rankOf(std::uint64_t data) const;

    std::vector<Slot> m_slots;
    unsigned m_shift = 0;
    std::int32_t m_firstRank = 0;  // of row 0
};
