#pragma once
#include <kestra/containers/comparisons.h>

/// The sorted collection: element pointers in the order of one comparison, equal ones allowed.
///
/// What differs from what a reader may expect:
/// - It never owns, copies or frees an element. An element's key must not change while it is held, and a held
///   element must not be freed before it is erased.
/// - It has one cursor (leaf, index, current element) that every operation moves, searches included.
/// - Equal elements keep the places their insertions asked for.
/// - Nodes are never rebalanced; only empty ones disappear.
/// - Copying copies the header: both collections then share their nodes, and only one of them may be cleared,
///   changed or destroyed.
///
/// It is a B+ tree of nodes of 128 entries, leaves chained both ways. Nodes and headers come zero-filled from
/// the C heap. One thread at a time.
///
/// A comparison that throws ends the operation as if nothing had been found (a search: none; an insertion:
/// nothing is inserted; an erasure: 0) and leaves no current element. A comparison that contradicts itself
/// can misplace elements and hide them from searches; every element stays reachable by a walk.

#pragma pack(push, 1)

/// A node. Behind its last entry in use it repeats the end guard and `next`, so that a reader may walk the
/// leaves by pointers alone; with 127 entries in use the second of these two words is `endGuard` itself,
/// which then holds `next`.
struct TriNode {
    static constexpr int capacity = 128;
    static constexpr char leaf = 'Y';
    static constexpr char inner = 'V';

    char kind;
    std::uint8_t mark;         ///< 0xFE
    TriNode* parent;           ///< inner node above; null for the root
    std::int16_t count;        ///< entries in use, 1 to 128
    TriNode* previous;         ///< leaf to the left (leaves only)
    std::uint64_t frontGuard;  ///< CTri::frontGuard
    void* entries[capacity];   ///< elements (leaf) or child nodes (inner), in order
    std::uint64_t endGuard;    ///< CTri::endGuard
    TriNode* next;             ///< leaf to the right (leaves only)
};
static_assert(sizeof(TriNode) == 1068);
static_assert(offsetof(TriNode, parent) == 2 && offsetof(TriNode, count) == 10);
static_assert(offsetof(TriNode, previous) == 12 && offsetof(TriNode, frontGuard) == 20);
static_assert(offsetof(TriNode, entries) == 28 && offsetof(TriNode, endGuard) == 1052);
static_assert(offsetof(TriNode, next) == 1060);

class KESTRA_API CTri {
  public:
    /// Reserved values, never elements: as `from` they restart a walk.
    static constexpr std::uint64_t frontGuard = 0xFFFDFBF9;
    static constexpr std::uint64_t endGuard = 0xFEFCFAF8;
    static void* FrontGuard() { return reinterpret_cast<void*>(std::uintptr_t{frontGuard}); }
    static void* EndGuard() { return reinterpret_cast<void*>(std::uintptr_t{endGuard}); }

    /// Empty; ordered by `compare`, `triFctTexte` when it is null.
    CTri(Comparaison compare = nullptr);
    CTri(const CTri& other) = default;
    CTri& operator=(const CTri& other) = default;
    /// Frees the nodes, once: a header that was torn down has lost its mark.
    ~CTri();

    static void* operator new(std::size_t size) noexcept;
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* header);
    static void operator delete(void*, void*) {}

    /// Orders by the function that `table` (usually `FonctionsTriGeneral`) lists under `name`, in any case:
    /// 1. A name that is not listed is shown to the user and gives 0; a missing or empty name or a missing
    /// table gives 0. To be called while the collection is empty.
    int SetFunc(const char* name, TableFminmax* table);
    /// The third argument of every comparison; kept by address.
    void SetParam(void* param) { m_param = param; }

    /// Puts an element in its place and the cursor on it; returns it, or null when it was not inserted.
    /// Among equal ones: `unique` not 0 refuses it (the cursor is then on the first equal one); otherwise
    /// `where` above 0 puts it behind the last, 0 just behind the first, below 0 before the first. A missing
    /// element and the guard values are refused and change nothing.
    void* Insert(void* element, int unique, int where);

    /// Searches, and puts the cursor on the result; without result there is no current element, and `Next`
    /// and `Back` go on from where the key belongs. A missing key and the guard values change nothing.
    ///   mode 0    the first equal element
    ///   mode 1    the last equal element, else the smallest greater one
    ///   mode -1   the first equal element, else the greatest smaller one
    ///   above 1   the last equal element
    ///   below -1  the first equal element
    void* Find(void* key, int mode);
    /// This very element, found by address among those equal to it; null when it is not held.
    void* FindPtr(void* element);

    /// Steps the cursor and returns the element it comes to. Without argument from the cursor, or from before
    /// the first element when there is no cursor; with an element from there (null when it is not held); with
    /// `FrontGuard()` from before the first. Past the end: null, and a step back gives the last element.
    void* Next(void* from = nullptr) {
        if ((from == nullptr || from == m_current) && m_cursorNode != nullptr &&
            m_index + 1 < m_cursorNode->count)
            return m_current = m_cursorNode->entries[++m_index];
        return nextSlowly(from);
    }
    /// The mirror of `Next`; `EndGuard()` starts behind the last element.
    void* Back(void* from = nullptr) {
        if ((from == nullptr || from == m_current) && m_cursorNode != nullptr && m_index > 0)
            return m_current = m_cursorNode->entries[--m_index];
        return backSlowly(from);
    }
    /// Leaves no cursor and no current element.
    void Rewind();

    /// Removes this very element, which is not freed: 1, or 0 when it is not held. The cursor steps back to
    /// the element before it, so that a loop of `Next` and `Erase` visits everything.
    int Erase(void* element);
    /// Removes everything; returns how many elements there were.
    int Clear();

    int GetCount() const { return m_count; }
    /// Element at the cursor, or null.
    void* GetCurrent() const { return m_current; }
    Comparaison GetFunc() const { return m_compare; }

    /// For tests: null when every invariant of the nodes and the cursor holds, else the one that does not.
    const char* verify() const;
    const TriNode* root() const { return m_root; }

  private:
    friend class CTbl;
    /// Which of several equal elements a search stops at.
    enum class Among { first, last };
    /// Where a key belongs: at an equal element, else at the last smaller one; -1 when all are greater.
    struct Place {
        TriNode* leaf;
        int index;
        bool equal;
    };

    template <Among among>
    Place descend(void* wanted) const;
    bool search(void* key, Among among, Place& place);
    bool searchEnds(void* key, Place& place) const;
    bool placeForInsertion(void* element, int unique, int where, Place& place);
    bool locate(void* element);
    bool walkToAddress(void* element);
    int eraseByAddress(void* element);
    void eraseAtCursor();
    void standAt(const Place& place);
    void* nextSlowly(void* from);
    void* backSlowly(void* from);
    void* stepForward();
    void* stepBack();
    TriNode* edgeLeaf(bool last) const;

    TriNode* insertAfter(TriNode* node, int& position, void* entry, void* maximum);
    TriNode* split(TriNode* node, int position);
    bool hangBeside(TriNode* node, TriNode* right);
    void removeEntry(TriNode* node, int position);
    void unlink(TriNode* node);

    char m_tag = 'U';
    std::uint8_t m_mark = 0xFE;
    Comparaison m_compare;
    void* m_param = nullptr;
    TriNode* m_root = nullptr;        ///< null when empty
    TriNode* m_cursorNode = nullptr;  ///< leaf of the cursor; null: not positioned
    std::int16_t m_index = -1;        ///< -1 before the leaf's first entry, its count behind the last
    void* m_current = nullptr;
    std::int32_t m_count = 0;
};
static_assert(sizeof(CTri) == 48);

#pragma pack(pop)
