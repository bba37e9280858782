#include <algorithm>

#include <platform/ado/embedded/row_page.h>

namespace ado20::embedded {

namespace {

constexpr std::int64_t firstStep = 16;
constexpr std::int64_t largestStep = 2048;
/// A page ends early when its texts reach this size.
constexpr std::size_t bufferLimit = 1 << 20;

Cell keyCell(std::int64_t key) {
    Cell cell;
    cell.kind = SQLITE_INTEGER;
    cell.integer = key;
    return cell;
}

}  // namespace

RowPage::RowPage(const RowSource& source)
    : m_source(source), m_slots(source.columns.size(), -1), m_step(firstStep) {}

VariantView RowPage::slowValue(const KeyList& keys, std::int64_t position, std::size_t column) {
    if (m_slots[column] < 0) want(column);
    if (!holds(position)) moveTo(keys, position);
    const std::int64_t row = position - m_first;
    if (m_present[static_cast<std::size_t>(row)] == 0) throw _com_error(hrDeletedRow);
    return viewOf(m_source.columns[column], cellsOf(row)[m_slots[column]], m_buffer, m_scratch);
}

/// The statements name the columns they read, so another column makes other statements.
void RowPage::want(std::size_t column) {
    m_slots[column] = static_cast<int>(m_wanted.size());
    m_wanted.push_back(column);
    for (Statement* statement : {&m_range, &m_next, &m_single}) *statement = Statement();
    forget();
}

Statement RowPage::statement(const char* condition) const {
    std::string sql = "SELECT " + m_source.key;
    for (const std::size_t column : m_wanted) {
        // A column that is the key is there already.
        if (!m_source.columns[column].isKey) sql += ", " + m_source.qualified(m_source.columns[column]);
    }
    sql += " FROM " + m_source.from + " WHERE " + m_source.key + condition;
    return Statement(*m_source.database, sql);
}

void RowPage::moveTo(const KeyList& keys, std::int64_t position) {
    const std::int64_t end = m_first + m_count;
    const bool forward = position >= end && position < end + firstStep;
    const bool backward = position < m_first && position >= m_first - firstStep;
    m_step = m_count > 0 && (forward || backward) ? std::min(m_step * 4, largestStep)
             : m_count > 0                        ? firstStep
                                                  : m_step;
    const std::int64_t first = backward ? std::max<std::int64_t>(0, position - m_step + 1) : position;
    const std::int64_t last = backward ? position + 1 : std::min(keys.size(), position + m_step);
    load(keys, first, last - first);
    // Large texts may have ended the page before the row it was read for: the next one is to be small.
    if (holds(position)) return;
    m_step = 1;
    load(keys, position, 1);
}

void RowPage::begin(std::int64_t first, std::int64_t count) {
    m_first = first;
    m_count = count;
    m_buffer.clear();
    if (m_buffer.capacity() > 4 * bufferLimit) m_buffer.shrink_to_fit();
    m_cells.clear();
    m_cells.resize(static_cast<std::size_t>(count) * m_wanted.size());
    m_present.assign(static_cast<std::size_t>(count), 0);
}

bool RowPage::isFull() const {
    return m_buffer.size() > bufferLimit;
}

bool RowPage::isDense(const KeyList& keys) const {
    for (std::int64_t i = 1; i < m_count; ++i)
        if (keys.at(m_first + i) <= keys.at(m_first + i - 1)) return false;
    const auto span = static_cast<std::uint64_t>(keys.at(m_first + m_count - 1)) -
                      static_cast<std::uint64_t>(keys.at(m_first));
    return span / 4 <= static_cast<std::uint64_t>(m_count);
}

void RowPage::load(const KeyList& keys, std::int64_t first, std::int64_t count) {
    begin(first, count);
    try {
        if (count > 1 && isDense(keys))
            loadRange(keys);
        else
            loadEach(keys);
    } catch (...) {
        forget();
        throw;
    }
}

void RowPage::readRow(Statement& statement, std::int64_t row, std::int64_t key) {
    Cell* cell = cellsOf(row);
    int next = 1;
    for (const std::size_t column : m_wanted)
        *cell++ = m_source.columns[column].isKey ? keyCell(key) : readCell(statement.get(), next++, m_buffer);
    m_present[static_cast<std::size_t>(row)] = 1;
}

/// Rows that others added between ours are passed over, rows that they deleted stay absent.
void RowPage::loadRange(const KeyList& keys) {
    if (!m_range) m_range = statement((" BETWEEN ?1 AND ?2 ORDER BY " + m_source.key).c_str());
    m_range.bind(1, keys.at(m_first));
    m_range.bind(2, keys.at(m_first + m_count - 1));
    const ResetAtEnd reset(m_range);
    std::int64_t row = 0;
    while (m_range.step()) {
        const std::int64_t key = sqlite3_column_int64(m_range.get(), 0);
        while (row < m_count && keys.at(m_first + row) < key) ++row;
        if (row == m_count) break;
        if (keys.at(m_first + row) != key) continue;
        readRow(m_range, row++, key);
        if (isFull()) {
            m_count = row;
            break;
        }
    }
}

void RowPage::loadEach(const KeyList& keys) {
    for (std::int64_t row = 0; row < m_count; ++row) {
        readOne(keys, m_first + row);
        if (isFull()) m_count = row + 1;
    }
}

/// The texts of the row as it was stay in the buffer: after many changes the window is read anew instead.
void RowPage::refresh(const KeyList& keys, std::int64_t position) {
    if (!holds(position)) return;
    if (isFull()) return forget();
    readOne(keys, position);
}

void RowPage::readOne(const KeyList& keys, std::int64_t position) {
    if (!m_single) m_single = statement(" = ?1");
    m_single.bind(1, keys.at(position));
    const ResetAtEnd reset(m_single);
    m_present[static_cast<std::size_t>(position - m_first)] = 0;
    if (m_single.step()) readRow(m_single, position - m_first, keys.at(position));
}

bool RowPage::readOn(KeyList& keys) {
    const std::int64_t known = keys.size();
    const std::int64_t last = known > 0 ? keys.at(known - 1) : INT64_MIN;
    if (known > 0 && last == INT64_MAX) return false;
    if (!m_next) m_next = statement((" >= ?1 ORDER BY " + m_source.key).c_str());
    m_step = m_count > 0 ? std::min(m_step * 4, largestStep) : firstStep;
    m_next.bind(1, known > 0 ? last + 1 : last);
    const ResetAtEnd reset(m_next);
    begin(known, m_step);
    m_count = 0;
    while (m_count < m_step && m_next.step()) {
        const std::int64_t key = sqlite3_column_int64(m_next.get(), 0);
        keys.append(key);
        readRow(m_next, m_count++, key);
        if (isFull()) break;
    }
    return m_count > 0;
}

}  // namespace ado20::embedded
