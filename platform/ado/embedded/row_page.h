#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include <platform/ado/embedded/key_list.h>
#include <platform/ado/embedded/row_source.h>

namespace ado20::embedded {

/// A window on the rows of a source: neighbouring rows, with those of their columns that were asked for.
/// Values are read anew when the window moves; no lock is held in between.
class RowPage {
  public:
    /// The source must outlive the page.
    explicit RowPage(const RowSource& source);

    /// Value of a row's column, valid until the page moves. Throws hrDeletedRow for a record that is no
    /// longer in the database.
    VariantView value(const KeyList& keys, std::int64_t position, std::size_t column) {
        const auto row = static_cast<std::size_t>(position - m_first);
        const int slot = m_slots[column];
        // A row before the first one is an enormous number.
        if (slot < 0 || row >= static_cast<std::size_t>(m_count) || m_present[row] == 0)
            return slowValue(keys, position, column);
        const Cell& cell = m_cells[row * m_wanted.size() + static_cast<std::size_t>(slot)];
        return viewOf(m_source.columns[column], cell, m_buffer, m_scratch);
    }
    /// Reads rows of a plain source beyond the keys known so far, and appends their keys; false when there
    /// were none.
    bool readOn(KeyList& keys);
    /// Drops the rows, as they may have changed.
    void forget() { m_count = 0; }
    /// Reads one row of the page anew.
    void refresh(const KeyList& keys, std::int64_t position);

  private:
    bool holds(std::int64_t position) const { return position >= m_first && position < m_first + m_count; }
    /// A record that is no longer in the database, or a window that is elsewhere.
    VariantView slowValue(const KeyList& keys, std::int64_t position, std::size_t column);
    void want(std::size_t column);
    void moveTo(const KeyList& keys, std::int64_t position);
    void load(const KeyList& keys, std::int64_t first, std::int64_t count);
    void loadRange(const KeyList& keys);
    void loadEach(const KeyList& keys);
    void readOne(const KeyList& keys, std::int64_t position);
    bool isDense(const KeyList& keys) const;
    void begin(std::int64_t first, std::int64_t count);
    void readRow(Statement& statement, std::int64_t row, std::int64_t key);
    bool isFull() const;
    Statement statement(const char* condition) const;
    Cell* cellsOf(std::int64_t row) {
        return m_cells.data() + static_cast<std::size_t>(row) * m_wanted.size();
    }

    const RowSource& m_source;
    std::vector<std::size_t> m_wanted;  ///< columns that were asked for
    std::vector<int> m_slots;           ///< by column: where it stands in `m_wanted`, or -1
    std::int64_t m_first = 0;
    std::int64_t m_count = 0;
    std::int64_t m_step = 0;  ///< rows to read next, growing while reading goes on in one direction
    std::vector<Cell> m_cells;
    std::vector<char> m_present;
    std::string m_buffer;
    std::string m_scratch;
    Statement m_range, m_next, m_single;
};

}  // namespace ado20::embedded
