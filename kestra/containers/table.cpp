// Compiled without lifetime dead-store elimination: the mark is cleared for a second tear-down.
#include <kestra/containers/table.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include <dorsel/strings.h>
#include <kestra/containers/number_directory.h>

using namespace directory_of_numbers;

CTbl* CTbl::PremierCTbl = nullptr;
const NumberRoot CTbl::noNumbers = {};

namespace {

/// A table name as tables keep it.
std::string normalised(const char* name) {
    std::string text(name != nullptr ? name : "");
    if (text.size() >= CTbl::tailleNom) text.resize(CTbl::tailleNom - 1);
    STR::C47_92(text.data());
    STR::Majuscules(text.data());
    return text;
}

bool isNumber(long number) {
    return number >= 0 && number <= CTbl::dernierNumero;
}

}  // namespace

// ---- life

CTbl::CTbl(TypeElement type, Comparaison compare, char* param) : m_type(type) {
    if (compare == nullptr && type == typeDynamique) compare = tri_CEDynamique_binaire;
    m_collection = new CTri(compare);
    readParameters(param);
}

CTbl::CTbl(const CTbl& other) = default;
CTbl& CTbl::operator=(const CTbl& other) = default;

CTbl::~CTbl() {
    unlist();
    tearDown();
}

void* CTbl::operator new(std::size_t size) noexcept {
    return std::calloc(1, size);
}
void CTbl::operator delete(void* table) {
    std::free(table);
}

void CTbl::readParameters(const char* param) {
    constexpr const char* separators = ", |";
    constexpr int decimal = 10;
    if (param == nullptr) return;
    param += std::strspn(param, separators);
    m_param1 = static_cast<std::uint16_t>(std::strtol(param, nullptr, decimal));
    param += std::strcspn(param, separators);
    param += std::strspn(param, separators);
    m_param2 = static_cast<std::uint16_t>(std::strtol(param, nullptr, decimal));
}

/// Deletes what the table owns, once.
void CTbl::tearDown() {
    if (m_mark != 0xFE) return;
    m_mark = 0;
    Clear();
    delete m_collection;
    m_collection = nullptr;
}

// ---- the list of named tables

void CTbl::enlist() {
    m_next = PremierCTbl;
    if (m_next != nullptr) m_next->m_previous = this;
    PremierCTbl = this;
}

/// Leaves the list, if this very table is in it: a copy of a listed table is not.
void CTbl::unlist() {
    CTbl* before = nullptr;
    CTbl* table = PremierCTbl;
    while (table != nullptr && table != this) {
        before = table;
        table = table->m_next;
    }
    if (table == nullptr) return;
    if (before != nullptr)
        before->m_next = m_next;
    else
        PremierCTbl = m_next;
    if (m_next != nullptr) m_next->m_previous = before;
    m_previous = m_next = nullptr;
}

CTbl* CTbl::NewCTbl(const char* name, TypeElement type, Comparaison compare, char* param) {
    CTbl* const table = new CTbl(type, compare, param);
    const std::string listed = normalised(name);
    if (table == nullptr || listed.empty()) return table;
    DeleteCTbl(listed.c_str());
    std::memcpy(table->m_name, listed.c_str(), listed.size() + 1);
    table->enlist();
    return table;
}

CTbl* CTbl::Localise(const char* name) {
    const std::string wanted = normalised(name);
    CTbl* table = wanted.empty() ? nullptr : PremierCTbl;
    while (table != nullptr && wanted != table->m_name) table = table->m_next;
    return table;
}

CTbl* CTbl::Localise(const char* name, TypeElement type) {
    std::string wanted = name != nullptr ? name : "";
    wanted = normalised(wanted.substr(0, wanted.find('=')).c_str());
    CTbl* table = wanted.empty() ? nullptr : PremierCTbl;
    while (table != nullptr && (table->m_type != type || wanted != table->m_name)) table = table->m_next;
    return table;
}

int CTbl::DeleteCTbl(CTbl*& table) {
    if (table == nullptr) return 0;
    delete table;
    return 1;
}

int CTbl::DeleteCTbl(const char* name) {
    CTbl* table = Localise(name);
    return DeleteCTbl(table);
}

// ---- by number

CElement* CTbl::atSlot(long number, int create, void*** slot) {
    void** found = nullptr;
    if (isNumber(number)) {
        if (m_directory == nullptr && create != 0) m_directory = newRoot();
        if (m_directory != nullptr)
            found = slotOf(m_directory, static_cast<std::uint32_t>(number), create != 0);
    }
    if (slot != nullptr) *slot = found;
    return found != nullptr ? static_cast<CElement*>(*found) : nullptr;
}

/// The element of a number that the directory's short cut does not know.
CElement* CTbl::atFar(long number) const {
    if (m_directory == nullptr || !isNumber(number)) return nullptr;
    void** const slot = slotOf(m_directory, static_cast<std::uint32_t>(number), false);
    return slot != nullptr ? static_cast<CElement*>(*slot) : nullptr;
}

int CTbl::iLibre(int number) {
    if (number < 1) number = m_freeHint < 1 ? 1 : m_freeHint;
    if (m_directory == nullptr) m_directory = newRoot();
    auto free = static_cast<long>(firstFree(m_directory, static_cast<std::uint32_t>(number)));
    if (!isNumber(free)) free = static_cast<long>(firstFree(m_directory, 1));
    m_freeHint = static_cast<std::int32_t>(free);
    return m_freeHint;
}

CElement* CTbl::iNext(long& number) {
    auto from = static_cast<std::uint32_t>(number) + 1;
    if (number == iEOF || m_directory == nullptr || !seekUp(m_directory, from)) {
        number = iEOF;
        return nullptr;
    }
    number = static_cast<long>(from);
    return At(number);
}

CElement* CTbl::iBack(long& number) {
    auto from = static_cast<std::uint32_t>(number) - 1;
    if (number == iBOF || number == 0 || m_directory == nullptr || !seekDown(m_directory, from)) {
        number = iBOF;
        return nullptr;
    }
    number = static_cast<long>(from);
    return At(number);
}

long CTbl::iCount() {
    long count = 0;
    for (long number = iBOF; iNext(number) != nullptr;) ++count;
    return count;
}

// ---- adding and deleting

CElement* CTbl::Add(int number, CElement* element) {
    return Add(number, element, 0, m_placement);
}

CElement* CTbl::Add(int number, CElement* element, int unique, int where) {
    if (number < 0) number = iLibre(0);
    void** slot = nullptr;
    At(number, 1, &slot);
    if (slot == nullptr) {
        delete element;
        return nullptr;
    }
    if (element != nullptr) detach(element);
    release(slot);
    if (element == nullptr) return nullptr;

    if (element->m_Type == typeNonDefini) element->m_Type = m_type;
    element->m_Numero = number;
    *slot = element;
    ++m_count;
    m_collection->Insert(element, unique, where);
    return element;
}

/// Takes an element that the table holds already out of it, without deleting it.
void CTbl::detach(CElement* element) {
    void** slot = nullptr;
    if (At(element->m_Numero, 0, &slot) != element) return;
    if (m_collection->Erase(element) == 0) m_collection->eraseByAddress(element);
    *slot = nullptr;
    --m_count;
}

/// Deletes the element of a slot; false when there is none.
bool CTbl::release(void** slot) {
    auto* const element = static_cast<CElement*>(*slot);
    if (element == nullptr) return false;
    // A key that changed while it was held hides its element from the search.
    if (m_collection->Erase(element) == 0) m_collection->eraseByAddress(element);
    *slot = nullptr;
    --m_count;
    delete element;
    return true;
}

bool CTbl::Erase(int number) {
    void** slot = nullptr;
    At(number, 0, &slot);
    return slot != nullptr && release(slot);
}

int CTbl::Clear() {
    if (m_collection != nullptr) m_collection->Clear();
    NumberRoot* const directory = m_directory;
    m_directory = nullptr;
    return freeAll(directory, [](void* element) { delete static_cast<CElement*>(element); });
}

// ---- by key

CElement* CTbl::Find(CElement* key, int mode) {
    auto* const found = static_cast<CElement*>(m_collection->Find(key, mode));
    if (found != nullptr || key == nullptr || m_type != typeWau) return found;
    return findUnderOtherDigits(static_cast<CWauElement*>(key), mode);
}

CElement* CTbl::findUnderOtherDigits(CWauElement* key, int mode) {
    const char digit = key->m_Nom[0];
    if (digit < '1' || digit > '3') return nullptr;
    const int link = digit - '1';
    CWauElement* found = nullptr;
    for (int step = 1; step < CWauElement::nombreLiens && found == nullptr; ++step) {
        key->m_Nom[0] = static_cast<char>('1' + (link + step) % CWauElement::nombreLiens);
        found = static_cast<CWauElement*>(static_cast<CElement*>(m_collection->Find(key, mode)));
        if (found != nullptr && found->m_Liens[link] == SansNumero) found = nullptr;
    }
    key->m_Nom[0] = digit;
    return found;
}

int CTbl::iFind(CElement* key, int mode) {
    const CElement* found = Find(key, mode);
    return found != nullptr ? found->m_Numero : static_cast<int>(iEOF);
}

CWauElement* CTbl::FindCWauElement(const char* name, int mode) {
    if (name == nullptr) return nullptr;
    CWauElement key;
    key.PoseNom(name);
    return static_cast<CWauElement*>(Find(&key, mode));
}

int CTbl::iFindCWauElement(const char* name, int mode) {
    const CElement* found = FindCWauElement(name, mode);
    return found != nullptr ? found->m_Numero : static_cast<int>(iEOF);
}
