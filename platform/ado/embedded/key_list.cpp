#include <algorithm>

#include <platform/ado/embedded/key_list.h>

namespace ado20::embedded {

namespace {

constexpr std::size_t blockSize = 8192;

}  // namespace

void KeyList::clear() {
    *this = KeyList();
}

void KeyList::append(std::int64_t key) {
    if (m_size > 0 && key <= m_blocks.back().back()) m_ascending = false;
    if (m_blocks.empty() || m_blocks.back().size() == blockSize) {
        m_blocks.emplace_back();
        if (m_blocks.size() > 1) m_blocks.back().reserve(blockSize);
    }
    m_blocks.back().push_back(key);
    ++m_size;
}

KeyList::Place KeyList::placeOf(std::int64_t position) const {
    if (position < m_lastStart) m_lastBlock = 0, m_lastStart = 0;
    while (position >= m_lastStart + static_cast<std::int64_t>(m_blocks[m_lastBlock].size()))
        m_lastStart += static_cast<std::int64_t>(m_blocks[m_lastBlock++].size());
    return {m_lastBlock, static_cast<std::size_t>(position - m_lastStart)};
}

std::int64_t KeyList::at(std::int64_t position) const {
    const Place place = placeOf(position);
    return m_blocks[place.block][place.offset];
}

void KeyList::erase(std::int64_t position) {
    const Place place = placeOf(position);
    auto& block = m_blocks[place.block];
    block.erase(block.begin() + static_cast<std::ptrdiff_t>(place.offset));
    if (block.empty()) m_blocks.erase(m_blocks.begin() + static_cast<std::ptrdiff_t>(place.block));
    --m_size;
    m_lastBlock = 0;
    m_lastStart = 0;
}

void KeyList::replace(std::int64_t position, std::int64_t key) {
    const Place place = placeOf(position);
    m_blocks[place.block][place.offset] = key;
    m_ascending = false;
}

std::int64_t KeyList::find(std::int64_t key) const {
    std::int64_t start = 0;
    for (const auto& block : m_blocks) {
        const bool mayHold = !m_ascending || key <= block.back();
        if (mayHold) {
            const auto found = m_ascending ? std::lower_bound(block.begin(), block.end(), key)
                                           : std::find(block.begin(), block.end(), key);
            if (found != block.end() && *found == key) return start + (found - block.begin());
            if (m_ascending) return -1;
        }
        start += static_cast<std::int64_t>(block.size());
    }
    return -1;
}

}  // namespace ado20::embedded
