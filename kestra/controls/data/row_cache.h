#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// The rows of a data-bound list that were read last. Private to this folder.
namespace controls {

class RowCache {
  public:
    using Texts = std::vector<std::string>;
    /// Reads a row's texts; false when it cannot be read.
    using Read = std::function<bool(int row, Texts& texts)>;

    /// Keeps `rows` rows, at least as many as a screen shows: rows that far apart take each other's place.
    explicit RowCache(Read read, int rows = 256);

    /// Texts of a row until the next call; null when it cannot be read (it is then asked for again).
    const Texts* row(int row);
    void forget(int row);
    void forgetAll();
    /// Rows that were read so far.
    std::int64_t rowsRead() const { return m_read; }

  private:
    struct Slot {
        int row = -1;
        Texts texts;
    };
    Slot& slotOf(int row) { return m_slots[static_cast<std::size_t>(row) % m_slots.size()]; }

    Read m_reader;
    std::vector<Slot> m_slots;
    std::int64_t m_read = 0;
};

}  // namespace controls
