#pragma once
#include <kestra/containers/elements.h>
#include <kestra/containers/tri.h>

/// A block of the number directory. Four levels of them, one byte of the number a level, most significant
/// byte first; the last level holds the elements. Zero-filled, from the C heap, made on demand.
struct NumberBlock {
    static constexpr int capacity = 256;
    static constexpr int shiftOfLevel = 8;
    static constexpr std::uint32_t byteMask = 0xFF;
    void* entries[capacity];
};
static_assert(sizeof(NumberBlock) == 256 * sizeof(void*));

/// The root block; behind it a short cut to the last-level blocks of numbers that lie densely from 0 on.
struct NumberRoot : NumberBlock {
    const NumberBlock** lastBlocks;  ///< by number / 256; an empty block stands for a missing one
    std::uint32_t lastBlocksKnown;   ///< how many the short cut knows
    std::uint32_t lastBlocksMade;    ///< how many there are in the whole directory
};

/// A table of elements found two ways: by a 32-bit number, in constant time, and by key, through a sorted
/// collection. A table may carry a name, under which any part of the application finds it.
///
/// What differs from what a reader may expect:
/// - A table owns its elements: replacing, erasing, clearing and destroying it delete them through their
///   virtual destructor. An element belongs to one table, under one number.
/// - An element that a unique insertion refused is held by number all the same, and only by number.
/// - `Clear` leaves the count and the hint for free numbers as they were.
/// - Copying copies every member: both tables then share collection, directory and elements, and only one may
///   be changed, cleared or destroyed. The copy is not in the list of named tables; a listed table must not
///   be assigned to.
///
/// Numbers go from 0 to 2147483645. No messages; no operation throws. The list of named tables, like every
/// table, is for one thread.

#pragma pack(push, 1)

class KESTRA_API CTbl {
  public:
    static constexpr long iBOF = -1;           ///< before the first number
    static constexpr long iEOF = -2147483647;  ///< behind the last number
    static constexpr long dernierNumero = 0x7FFFFFFD;
    static constexpr int tailleNom = 283;

    /// Head of the list of named tables.
    static CTbl* PremierCTbl;

    /// An unnamed table, ordered by `compare`; when it is null by `tri_CEDynamique_binaire` for
    /// `typeDynamique` and `triFctTexte` for any other type. The first two fields of `param` (separated by
    /// ',', ' ' or '|'; null: none) are read as integers into the two parameters, 16 bits each.
    CTbl(TypeElement type, Comparaison compare = nullptr, char* param = nullptr);
    CTbl(const CTbl& other);
    CTbl& operator=(const CTbl& other);
    /// Leaves the list, and deletes elements, directory and collection unless that was done before.
    ~CTbl();

    static void* operator new(std::size_t size) noexcept;
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* table);
    static void operator delete(void*, void*) {}

    /// A new table; with a name (null and empty: none) it becomes the head of the list, and a table that was
    /// listed under the same name is destroyed. Names are kept in upper case with `\` for `/`, cut at 282
    /// characters. To be freed with `DeleteCTbl`.
    static CTbl* NewCTbl(const char* name, TypeElement type, Comparaison compare = nullptr,
                         char* param = nullptr);
    /// The first listed table of that name; null when there is none.
    static CTbl* Localise(const char* name);
    /// The first listed table of that type whose name is the part of `name` before its first '='.
    static CTbl* Localise(const char* name, TypeElement type);
    /// Destroys a table with its elements: 1, or 0 when there is none. The caller's pointer is left
    /// unchanged.
    static int DeleteCTbl(CTbl*& table);
    static int DeleteCTbl(const char* name);

    /// Puts an element under a number and into the collection, and returns it. A negative number takes the
    /// first free one from 1 or the hint on. The element that held the number is deleted. `unique` and
    /// `where` are those of `CTri::Insert`. An element without type takes the table's. An element that the
    /// table holds already moves to its new number. Null when there is no element (the number is then free),
    /// when the number is above `dernierNumero` or there is no memory for it (the element is then deleted).
    CElement* Add(int number, CElement* element, int unique, int where);
    /// As above, never unique, placed as `DefaultPlacement` says.
    CElement* Add(int number, CElement* element);

    /// The element of a number; null when there is none. With `create` not 0 the missing directory blocks are
    /// made. `slot`, when given, receives the address of the number's slot (null when its block is missing),
    /// valid until the table is cleared.
    CElement* At(long number, int create = 0, void*** slot = nullptr) {
        if (create != 0 || slot != nullptr) return atSlot(number, create, slot);
        const auto block = static_cast<unsigned long>(number) >> NumberBlock::shiftOfLevel;
        const NumberRoot* const root = m_directory != nullptr ? m_directory : &noNumbers;
        if (block >= root->lastBlocksKnown) return atFar(number);
        void* const* entries = root->lastBlocks[block]->entries;
        return static_cast<CElement*>(entries[static_cast<unsigned long>(number) & NumberBlock::byteMask]);
    }

    /// `CTri::Find` on the collection. In a table of type `typeWau` a key whose name begins with '1', '2' or
    /// '3' and is not found is looked for again under the two other digits (1, 2, 3, 1, ...); what is found
    /// so counts when its link for the digit of the key is set. The key's name is as before afterwards.
    CElement* Find(CElement* key, int mode);
    /// Number of the element found; `iEOF` when there is none.
    int iFind(CElement* key, int mode);
    /// `Find` and `iFind` by a name alone, of which 32 characters count.
    CWauElement* FindCWauElement(const char* name, int mode);
    int iFindCWauElement(const char* name, int mode);

    /// The first free number from `number` on, below 1 from the hint on; behind the last number the search
    /// goes on at 1. It becomes the hint and is not reserved.
    int iLibre(int number);
    /// The next element by number, upward and downward, with `number` set to its number; null, and `number`
    /// set to `iEOF` (`iBOF`), at the end. Starting at `iBOF` (`iEOF`) gives the first (last) one.
    CElement* iNext(long& number);
    CElement* iBack(long& number);
    /// Elements held by number, counted one by one.
    long iCount();
    /// Deletes the element of a number; false when there is none.
    bool Erase(int number);
    /// Deletes every element; returns how many.
    int Clear();

    const char* Name() const { return m_name; }
    TypeElement Type() const { return m_type; }
    CTri* Collection() const { return m_collection; }
    /// Elements added minus elements replaced or erased.
    int Count() const { return m_count; }
    int DefaultPlacement() const { return m_placement; }
    void SetDefaultPlacement(int where) { m_placement = where; }
    int Param1() const { return m_param1; }
    int Param2() const { return m_param2; }

  private:
    static const NumberRoot noNumbers;

    CElement* atSlot(long number, int create, void*** slot);
    CElement* atFar(long number) const __attribute__((pure));
    void readParameters(const char* param);
    void tearDown();
    void enlist();
    void unlist();
    bool release(void** slot);
    void detach(CElement* element);
    CElement* findUnderOtherDigits(CWauElement* key, int mode);

    char m_tag = 'W';
    std::uint8_t m_mark = 0xFE;  ///< 0 from the start of its destruction on
    CTbl* m_previous = nullptr;
    CTbl* m_next = nullptr;
    char m_name[tailleNom] = "";
    CTri* m_collection;
    NumberRoot* m_directory = nullptr;  ///< null until the first numbered access
    TypeElement m_type;
    std::int32_t m_count = 0;
    std::int32_t m_freeHint = 0;
    std::int32_t m_placement = 1;
    std::uint16_t m_param1 = 0;
    std::uint16_t m_param2 = 0;
};
static_assert(sizeof(CTbl) == 337);

#pragma pack(pop)
