#include <kestra/variables/variable_array.h>

#include <utility>

namespace {

auto iteratorAt(auto& entries, std::size_t index) {
    return entries.begin() + static_cast<std::ptrdiff_t>(index);
}

}  // namespace

VariableArray::Place VariableArray::place(int index) const {
    const auto behind = std::upper_bound(m_starts.begin(), m_starts.end(), index);
    const auto piece = static_cast<std::size_t>(behind - m_starts.begin()) - 1;
    return {piece, static_cast<std::size_t>(index - m_starts[piece])};
}

int VariableArray::index(Place place) const {
    return m_pieces.empty() ? 0 : m_starts[place.piece] + static_cast<int>(place.slot);
}

VariableArray::Place VariableArray::lowerBound(const NameKey& key) const {
    if (m_pieces.empty()) return {};
    const auto behind = std::upper_bound(m_firsts.begin() + 1, m_firsts.end(), key);
    const auto piece = static_cast<std::size_t>(behind - m_firsts.begin()) - 1;
    const Piece& entries = m_pieces[piece];
    const auto found =
        std::lower_bound(entries.begin(), entries.end(), key,
                         [](const Entry& entry, const NameKey& wanted) { return entry.key < wanted; });
    return {piece, static_cast<std::size_t>(found - entries.begin())};
}

bool VariableArray::holds(Place place, const NameKey& key) const {
    return place.piece < m_pieces.size() && place.slot < m_pieces[place.piece].size() &&
           m_pieces[place.piece][place.slot].key == key;
}

void VariableArray::insert(Place place, const NameKey& key, CVariable* variable) {
    if (m_pieces.empty()) {
        Piece entries;
        entries.reserve(pieceRoom);
        addPiece(0, std::move(entries), key, 0);
    } else if (m_pieces[place.piece].size() == pieceRoom) {
        splitPiece(place.piece);
        const std::size_t kept = m_pieces[place.piece].size();
        if (place.slot > kept) place = {place.piece + 1, place.slot - kept};
    }
    Piece& entries = m_pieces[place.piece];
    entries.insert(iteratorAt(entries, place.slot), {key, variable});
    m_firsts[place.piece] = entries.front().key;
    for (std::size_t i = place.piece + 1; i < m_starts.size(); ++i) ++m_starts[i];
    ++m_size;
}

/// Leaves the array as it was when memory runs out.
void VariableArray::addPiece(std::size_t piece, Piece entries, const NameKey& first, int start) {
    m_pieces.reserve(m_pieces.size() + 1);
    m_firsts.reserve(m_firsts.size() + 1);
    m_starts.reserve(m_starts.size() + 1);
    m_pieces.insert(iteratorAt(m_pieces, piece), std::move(entries));
    m_firsts.insert(iteratorAt(m_firsts, piece), first);
    m_starts.insert(iteratorAt(m_starts, piece), start);
}

void VariableArray::splitPiece(std::size_t piece) {
    constexpr std::size_t kept = pieceRoom / 2;
    Piece upper;
    upper.reserve(pieceRoom);
    upper.assign(iteratorAt(m_pieces[piece], kept), m_pieces[piece].end());
    const NameKey first = upper.front().key;
    addPiece(piece + 1, std::move(upper), first, m_starts[piece] + static_cast<int>(kept));
    m_pieces[piece].erase(iteratorAt(m_pieces[piece], kept), m_pieces[piece].end());
}

void VariableArray::remove(Place place) {
    Piece& entries = m_pieces[place.piece];
    entries.erase(iteratorAt(entries, place.slot));
    for (std::size_t i = place.piece + 1; i < m_starts.size(); ++i) --m_starts[i];
    --m_size;
    if (!entries.empty()) {
        m_firsts[place.piece] = entries.front().key;
        return;
    }
    m_pieces.erase(iteratorAt(m_pieces, place.piece));
    m_firsts.erase(iteratorAt(m_firsts, place.piece));
    m_starts.erase(iteratorAt(m_starts, place.piece));
}
