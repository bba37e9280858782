#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestra {

/// One change of a file's bytes: `text` stands in the place of the first `replaced` bytes of `before`, and
/// the rest of `before` behind it. Where the two lengths differ, `before` goes on to the end of the file.
struct ByteChange {
    std::int64_t offset = 0;
    std::string before;
    std::size_t replaced = 0;
    std::string text;

    /// What the file holds at `offset` and behind it afterwards.
    std::string after() const { return text + before.substr(replaced); }
    bool moves() const { return text.size() != replaced; }
};

/// How a file was before it was changed in place: what must be written back to undo that.
///
/// As bytes (numbers little-endian):
///
///     8  "KESTRA~1"
///     8  size of the file before
///     8  number of changes; then for each of them, in ascending order of their offsets:
///          8  offset
///          8  length b of `before`
///          8  `replaced`
///          8  length t of `text`
///          b  `before`
///          t  `text`
///     8  FNV-1a (64 bits) of all that stands before
struct UndoRecord {
    static constexpr std::string_view mark = "KESTRA~1";

    std::int64_t sizeBefore = 0;
    std::vector<ByteChange> changes;

    std::string toBytes() const;
    /// Nothing unless the bytes are a record, whole and unharmed.
    static std::optional<UndoRecord> fromBytes(std::string_view bytes);
    /// Whether bytes that are no whole record can be the start of one, or the empty room of one: what is left
    /// when the machine stops while it is written.
    static bool isUnfinished(std::string_view bytes);
};

}  // namespace kestra
