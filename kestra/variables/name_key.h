#pragma once
#include <algorithm>
#include <bit>
#include <compare>
#include <cstdint>
#include <cstring>
#include <string_view>

/// The first 20 characters of a name as numbers that are in the order of its bytes: a few comparisons instead
/// of up to twenty, and no way to the variable's own memory.
class NameKey {
  public:
    static constexpr std::size_t room = 20;

    explicit NameKey(std::string_view name) {
        char padded[room] = {};
        std::memcpy(padded, name.data(), std::min(name.size(), room));
        m_head = word(padded);
        m_middle = word(padded + 8);
        m_tail = word(padded + 12);  // what it repeats of the middle changes no order
    }
    auto operator<=>(const NameKey&) const = default;

  private:
    static std::uint64_t word(const char* bytes) {
        static_assert(std::endian::native == std::endian::little);
        std::uint64_t value = 0;
        std::memcpy(&value, bytes, sizeof value);
        return __builtin_bswap64(value);
    }

    std::uint64_t m_head, m_middle, m_tail;
};
