// Compiled without lifetime dead-store elimination: a constructor here relies on what operator new wrote.
#include <kestra/containers/elements.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

const std::int32_t SansNumero = static_cast<std::int32_t>(0x8000FFFD);

namespace {

constexpr int longestKey = INT16_MAX;
constexpr int longestValue = UINT16_MAX;

/// A zero-filled element with both lengths set; null when they do not fit or there is no memory.
CEDynamique* newDynamique(std::size_t keyLength, std::size_t valueLength) {
    if (keyLength > longestKey || valueLength > longestValue) return nullptr;
    void* block =
        std::calloc(1, std::max(sizeof(CEDynamique), CEDynamique::partieFixe + keyLength + valueLength));
    if (block == nullptr) return nullptr;
    auto* element = new (block) CEDynamique();
    element->m_LongueurCle = static_cast<std::int16_t>(keyLength);
    element->m_LongueurValeur = static_cast<std::uint16_t>(valueLength);
    return element;
}

/// The data begins in the declared two bytes and goes on behind them: addressed from the block, not from the
/// array.
char* dataOf(CEDynamique* element) {
    return reinterpret_cast<char*>(element) + CEDynamique::partieFixe;
}

}  // namespace

CElement::CElement() : m_Numero(SansNumero), m_Type(typeNonDefini), m_Drapeau(-1) {}
CElement::CElement(const CElement& other) = default;
CElement& CElement::operator=(const CElement& other) = default;
CElement::~CElement() = default;

void* CElement::operator new(std::size_t size) noexcept {
    return std::calloc(1, size);
}
void CElement::operator delete(void* element) {
    std::free(element);
}

CEDynamique::CEDynamique() {
    m_Type = typeDynamique;
}
CEDynamique::CEDynamique(const CEDynamique& other) = default;
CEDynamique& CEDynamique::operator=(const CEDynamique& other) = default;
CEDynamique::~CEDynamique() = default;

void* CEDynamique::operator new(std::size_t size, int extra) noexcept {
    const auto length = static_cast<std::uint16_t>(std::clamp(extra, 0, longestValue));
    char* block = static_cast<char*>(std::calloc(1, size + length));
    if (block != nullptr)
        std::memcpy(block + CEDynamique::partieFixe - sizeof m_LongueurValeur, &length,
                    sizeof m_LongueurValeur);
    return block;
}
void CEDynamique::operator delete(void* element, int) {
    std::free(element);
}

CEDynamique* CEDynamique::Create(const char* key, const char* value) {
    if (value == nullptr) value = "";
    const std::size_t size = std::strlen(value) + 1;
    return size <= longestValue ? Create(key, const_cast<char*>(value), static_cast<int>(size)) : nullptr;
}

CEDynamique* CEDynamique::Create(const char* key, void* value, int size) {
    if (key == nullptr || size < 0) return nullptr;
    const std::size_t keyLength = std::strlen(key) + 1;
    CEDynamique* element = newDynamique(keyLength, static_cast<std::size_t>(size));
    if (element == nullptr) return nullptr;
    std::memcpy(dataOf(element), key, keyLength);
    if (value != nullptr && size > 0)
        std::memcpy(dataOf(element) + keyLength, value, static_cast<std::size_t>(size));
    return element;
}

CEDynamique* CEDynamique::Create(void* data, int keyLength, int valueLength) {
    if (keyLength < 0 || valueLength < 0) return nullptr;
    CEDynamique* element =
        newDynamique(static_cast<std::size_t>(keyLength), static_cast<std::size_t>(valueLength));
    const std::size_t size = static_cast<std::size_t>(keyLength) + static_cast<std::size_t>(valueLength);
    if (element != nullptr && data != nullptr && size > 0) std::memcpy(dataOf(element), data, size);
    return element;
}

void* CEDynamique::Valeur() {
    return m_LongueurValeur == 0 ? nullptr : dataOf(this) + std::max<int>(m_LongueurCle, 0);
}

CWauElement::CWauElement() : m_Nom{}, m_Liens{SansNumero, SansNumero, SansNumero} {}
CWauElement::~CWauElement() = default;

void CWauElement::PoseNom(const char* name) {
    const std::size_t length = name != nullptr ? ::strnlen(name, longueurNom) : 0;
    std::memset(m_Nom, 0, sizeof m_Nom);
    if (length > 0) std::memcpy(m_Nom, name, length);
}
