#pragma once
#include <cstddef>
#include <cstdint>

#include <platform/export.h>

/// What the containers hold: elements that carry a number and a type, and keyed elements of any size.
///
/// Elements are byte-packed, and all of them come zero-filled from the C heap, so that `free` can give any of
/// them back once its destructor has run. Containers hold pointers; who owns an element is said by each.

/// The number of an element that no table has numbered: 0x8000FFFD.
KESTRA_API extern const std::int32_t SansNumero;

/// Type of an element and of the table that holds it. Other values belong to the applications.
enum TypeElement : std::int32_t {
    typeNonDefini = -2,    ///< not set yet: the element takes its table's type when it is added
    typeWau = 2,           ///< work-file elements, `CWauElement`
    typeDynamique = 1000,  ///< `CEDynamique`
};

#pragma pack(push, 1)

class KESTRA_API CElement {
  public:
    CElement();
    CElement(const CElement& other);
    CElement& operator=(const CElement& other);
    virtual ~CElement();

    /// Zero-filled memory of the C heap; null, and no construction, when there is none.
    static void* operator new(std::size_t size) noexcept;
    /// In a place the caller has.
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* element);
    static void operator delete(void*, void*) {}

    std::int32_t m_Numero;  ///< given by the table that holds the element
    TypeElement m_Type;
    std::int16_t m_Drapeau;  ///< carried and copied; no operation interprets it
};
static_assert(sizeof(CElement) == sizeof(void*) + 10);

/// A key text followed by a value of any bytes, in one block: the fixed members, the key with its terminating
/// zero, the value. Made by `Create`, or by `new (size) CEDynamique()` for a value of `size` bytes.
///
/// Copying copies the members, both lengths and the two declared data bytes only, on purpose: such a copy has
/// no key or value of its own. To duplicate an element, create one from its data.
class KESTRA_API CEDynamique : public CElement {
  public:
    /// Type `typeDynamique`. The lengths are left as the allocation wrote them, and unset for an object that
    /// `operator new` of this class did not allocate.
    CEDynamique();
    CEDynamique(const CEDynamique& other);
    CEDynamique& operator=(const CEDynamique& other);
    ~CEDynamique() override;

    /// Zero-filled block of `size` + `extra` bytes (`extra` within 0 to 65535) whose value length is `extra`.
    static void* operator new(std::size_t size, int extra) noexcept;
    static void operator delete(void* element, int extra);
    using CElement::operator new;
    using CElement::operator delete;

    /// Each form returns null when there is no memory or a length does not fit in its member (keys: 32767
    /// bytes with their zero; values: 65535 bytes).
    /// A text value, stored with its zero; the empty text when `value` is null. Null for a null key.
    static CEDynamique* Create(const char* key, const char* value);
    /// A value of `size` bytes, copied from `value` or zero when it is null. Null for a null key.
    static CEDynamique* Create(const char* key, void* value, int size);
    /// Key and value side by side in `data`, or zero when it is null.
    static CEDynamique* Create(void* data, int keyLength, int valueLength);

    /// Address of the value, inside the element; null when the value length is 0.
    void* Valeur();
    /// The key: the data begins with it.
    const char* Cle() const { return m_Donnees; }

    /// Bytes of the members before the data.
    static constexpr std::size_t partieFixe = sizeof(CElement) + 4;

    std::int16_t m_LongueurCle;      ///< bytes of the key with its zero
    std::uint16_t m_LongueurValeur;  ///< bytes of the value
    char m_Donnees[2];               ///< key then value; the block goes on behind it
};
static_assert(sizeof(CEDynamique) == CEDynamique::partieFixe + 2);

/// A work-file element: a name and one link number for each of the digits '1' to '3' that a name may begin
/// with.
class KESTRA_API CWauElement : public CElement {
  public:
    static constexpr int longueurNom = 32;
    static constexpr int nombreLiens = 3;
    static constexpr std::size_t decalageNom = sizeof(CElement);  ///< bytes before the name

    /// Empty name, every link `SansNumero`.
    CWauElement();
    ~CWauElement() override;
    /// Takes the first 32 characters of a text; a shorter one is filled up with zeros.
    void PoseNom(const char* name);

    char m_Nom[longueurNom];  ///< not terminated when it has 32 characters
    std::int32_t m_Liens[nombreLiens];
};
static_assert(sizeof(CWauElement) == sizeof(CElement) + 44);

#pragma pack(pop)
