#pragma once
#include <cstddef>
#include <vector>

#include <kestra/variables/name_key.h>

class CVariable;

/// Array of pointers to variables (not owned), ascending by name, with insertion and removal anywhere.
///
/// It is cut into pieces of at most 128 entries, so that an insertion moves one piece's entries and not the
/// whole array's; each entry carries its name's key, so that a search stays within one table of first keys
/// and one piece.
class VariableArray {
  public:
    /// A slot of the array; good until the next insertion or removal. `slot` may be its piece's size.
    struct Place {
        std::size_t piece = 0;
        std::size_t slot = 0;
    };

    int size() const { return m_size; }
    /// Place of the entry with this index, which must be within the array.
    Place place(int index) const;
    int index(Place place) const;
    /// The variable at a place that holds one.
    CVariable*& at(Place place) { return m_pieces[place.piece][place.slot].variable; }
    CVariable* at(Place place) const { return m_pieces[place.piece][place.slot].variable; }

    /// Place of the first entry that is not less than the key, behind the last entry when all are less.
    Place lowerBound(const NameKey& key) const;
    bool holds(Place place, const NameKey& key) const;

    /// The place must be the key's lower bound.
    void insert(Place place, const NameKey& key, CVariable* variable);
    void remove(Place place);

  private:
    struct Entry {
        NameKey key;
        CVariable* variable;
    };
    using Piece = std::vector<Entry>;
    void addPiece(std::size_t piece, Piece entries, const NameKey& first, int start);
    void splitPiece(std::size_t piece);

    static constexpr std::size_t pieceRoom = 128;
    std::vector<Piece> m_pieces;    ///< none is empty
    std::vector<NameKey> m_firsts;  ///< key of each piece's first entry
    std::vector<int> m_starts;      ///< index of each piece's first entry
    int m_size = 0;
};
