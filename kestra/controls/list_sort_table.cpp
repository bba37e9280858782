#include <kestra/controls/list_sort_table.h>

#include <algorithm>
#include <bit>
#include <numeric>

namespace {

/// The first eight bytes of a text as a number that orders like them.
std::uint64_t prefixOf(std::string_view text) {
    std::uint64_t prefix = 0;
    for (std::size_t i = 0; i < sizeof prefix; ++i) {
        prefix = prefix << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0u);
    }
    return prefix;
}

struct Key {
    std::uint64_t prefix;
    std::string_view text;
    std::size_t row;
};

std::vector<Key> sortedKeys(const std::vector<ListSortTable::Row>& rows) {
    std::vector<Key> keys(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        keys[row] = {prefixOf(rows[row].text), rows[row].text, row};
    }
    std::sort(keys.begin(), keys.end(), [](const Key& first, const Key& second) {
        return first.prefix != second.prefix ? first.prefix < second.prefix : first.text < second.text;
    });
    return keys;
}

/// Rank of each row's text; equal texts have equal ranks.
std::vector<std::int32_t> ranksOf(const std::vector<ListSortTable::Row>& rows) {
    const std::vector<Key> keys = sortedKeys(rows);
    std::vector<std::int32_t> ranks(rows.size());
    std::int32_t rank = 0;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (i > 0 && keys[i].text != keys[i - 1].text) ++rank;
        ranks[keys[i].row] = rank;
    }
    return ranks;
}

}  // namespace

ListSortTable::ListSortTable(const std::vector<Row>& rows) {
    const std::size_t size = std::bit_ceil(2 * rows.size() + 2);
    m_slots.resize(size);
    m_shift = 64 - static_cast<unsigned>(std::countr_zero(size));
    const std::vector<std::int32_t> ranks = ranksOf(rows);
    if (!ranks.empty()) m_firstRank = ranks.front();
    for (std::size_t row = 0; row < rows.size(); ++row) slotOf(rows[row].data) = {rows[row].data, ranks[row]};
}

std::size_t ListSortTable::home(std::uint64_t data) const {
    // Fibonacci hashing: addresses and small numbers alike spread over the upper bits.
    return static_cast<std::size_t>((data * 0x9E3779B97F4A7C15u) >> m_shift);
}

ListSortTable::Slot& ListSortTable::slotOf(std::uint64_t data) {
    std::size_t place = home(data);
    while (m_slots[place].rank != free && m_slots[place].data != data)
        place = (place + 1) & (m_slots.size() - 1);
    return m_slots[place];
}

std::int32_t ListSortTable::rankOf(std::uint64_t data) const {
    std::size_t place = home(data);
    while (m_slots[place].rank != free) {
        if (m_slots[place].data == data) return m_slots[place].rank;
        place = (place + 1) & (m_slots.size() - 1);
    }
    return m_firstRank;
}
