#pragma once
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

/// The lines of a file sort and their order.
namespace line_order {

/// A line of a buffer in which every line ends in a line feed, and the eight bytes of its text that decide
/// next, as a number of the same order. Once sorted, `key` is one of the two values below.
struct Line {
    static constexpr std::uint64_t equalToPrevious = 0;
    static constexpr std::uint64_t differs = 1;

    std::uint64_t key;
    const char* text;
};

/// Bytes behind a line feed that may be read.
constexpr std::size_t slack = 16;

/// The highest bit of the first zero byte is the lowest bit set in the result.
inline std::uint64_t zeroBytes(std::uint64_t bytes) {
    return (bytes - 0x0101010101010101u) & ~bytes & 0x8080808080808080u;
}

/// The eight bytes from `text` on as `Line::key`; zeros from its first NUL or line feed on.
inline std::uint64_t keyAt(const char* text) {
    constexpr std::uint64_t lineFeeds = 0x0A0A0A0A0A0A0A0Au;
    std::uint64_t bytes;
    std::memcpy(&bytes, text, sizeof bytes);
    static_assert(std::endian::native == std::endian::little);
    const std::uint64_t ends = zeroBytes(bytes) | zeroBytes(bytes ^ lineFeeds);
    if (ends != 0) bytes &= (std::uint64_t{1} << (std::countr_zero(ends) - 7)) - 1;
    return __builtin_bswap64(bytes);
}

/// Ascending order of the texts, each up to its first NUL, as unsigned codes; equal ones by their addresses.
/// The keys must be those of the texts' beginnings.
void sort(std::vector<Line>& lines);

}  // namespace line_order
