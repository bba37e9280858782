#include <kestra/controls/data/row_cache.h>

#include <algorithm>

namespace controls {

RowCache::RowCache(Read read, int rows)
    : m_reader(std::move(read)), m_slots(static_cast<std::size_t>(std::max(rows, 1))) {}

const RowCache::Texts* RowCache::row(int row) {
    if (row < 0) return nullptr;
    Slot& slot = slotOf(row);
    if (slot.row != row) {
        slot.row = -1;
        slot.texts.clear();
        ++m_read;
        if (!m_reader(row, slot.texts)) return nullptr;
        slot.row = row;
    }
    return &slot.texts;
}

void RowCache::forget(int row) {
    if (row >= 0 && slotOf(row).row == row) slotOf(row).row = -1;
}

void RowCache::forgetAll() {
    for (Slot& slot : m_slots) slot.row = -1;
}

}  // namespace controls
