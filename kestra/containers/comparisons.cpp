#include <kestra/containers/comparisons.h>

#include <algorithm>
#include <cstring>

#include <kestra/containers/key_prefix.h>

int tri_Inferieur = -1;
int tri_Superieur = 1;

TableFminmax FonctionsTriGeneral[12] = {
    {"LONG", tri_fct_LONG, "Entiers longs"},
    {"2LONG", tri_fct_2LONG, "2 Entiers longs"},
    {"DOUBLE", tri_fct_DOUBLE, "Double "},
    {"BINAIRE", tri_fct_BINAIRE, "BINAIRE,(param =  Tri_len)"},
    {"B_OFFSET", tri_fct_B_OFFSET, "BINAIRE ([0]=Tri_offset,[1]=Tri_len)"},
    {"ASCII", triFctTexte, "Pointeur sur un Texte"},
    {"TEXTE", triFctTexte, "Pointeur sur un Texte"},
    {"WCHAR", tri_fct_WCHAR, "Pointeur sur un Wchar(UNICODE)"},
    {"WCHAR_INV", tri_fct_WCHAR_INV, "Pointeur sur un Wchar(UNICODE) Décroissant"},
    {"TEXTE_INV", triFctTexteInv, "Pointeur sur un Texte(Décroissant)"},
    {"POINT2D", tri_fct_POINT2D, "Point 2D (en double[2]X min,Y min"},
    {"", nullptr, "fin du tableau"},
};

namespace {

constexpr double pointTolerance = 5e-5;

bool equalsEverything(const void* first, const void* second) {
    return !tri::isOperand(second) || !tri::isOperand(first);
}

template <class Value>
Value valueAt(const void* base, std::size_t index) {
    Value value;
    std::memcpy(&value, static_cast<const char*>(base) + index * sizeof value, sizeof value);
    return value;
}

template <class Value>
int orderOf(Value first, Value second) {
    return second > first ? tri_Inferieur : first > second ? tri_Superieur : 0;
}

int signOf(int order) {
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

int compareBytes(const void* first, const void* second, const void* param, std::size_t lengthIndex,
                 std::size_t offset) {
    const auto length = valueAt<std::int32_t>(param, lengthIndex);
    if (length <= 0) return 0;
    return signOf(std::memcmp(static_cast<const char*>(first) + offset,
                              static_cast<const char*>(second) + offset, static_cast<std::size_t>(length)));
}

int compareWithin(double first, double second) {
    if (second - pointTolerance > first) return tri_Inferieur;
    return first > second + pointTolerance ? tri_Superieur : 0;
}

}  // namespace

int tri_fct_LONG(void* first, void* second, void*) {
    if (equalsEverything(first, second)) return 0;
    return orderOf(valueAt<std::int32_t>(first, 0), valueAt<std::int32_t>(second, 0));
}

int tri_fct_2LONG(void* first, void* second, void*) {
    if (equalsEverything(first, second)) return 0;
    const int order = orderOf(valueAt<std::int32_t>(first, 0), valueAt<std::int32_t>(second, 0));
    return order != 0 ? order : orderOf(valueAt<std::int32_t>(first, 1), valueAt<std::int32_t>(second, 1));
}

int tri_fct_DOUBLE(void* first, void* second, void*) {
    if (equalsEverything(first, second)) return 0;
    return orderOf(valueAt<double>(first, 0), valueAt<double>(second, 0));
}

int tri_fct_BINAIRE(void* first, void* second, void* param) {
    if (equalsEverything(first, second) || param == nullptr) return 0;
    return compareBytes(first, second, param, 0, 0);
}

int tri_fct_B_OFFSET(void* first, void* second, void* param) {
    if (equalsEverything(first, second) || param == nullptr) return 0;
    const auto offset = valueAt<std::int32_t>(param, 0);
    return compareBytes(first, second, param, 1,
                        static_cast<std::size_t>(static_cast<std::ptrdiff_t>(offset)));
}

int triFctTexte(void* first, void* second, void*) {
    if (equalsEverything(first, second)) return 0;
    return signOf(std::strcmp(static_cast<const char*>(first), static_cast<const char*>(second)));
}

int triFctTexteInv(void* first, void* second, void* param) {
    return -triFctTexte(first, second, param);
}

int tri_fct_WCHAR(void* first, void* second, void*) {
    if (equalsEverything(first, second)) return 0;
    for (std::size_t i = 0;; ++i) {
        const auto left = valueAt<std::uint16_t>(first, i);
        const auto right = valueAt<std::uint16_t>(second, i);
        if (left != right) return left < right ? -1 : 1;
        if (left == 0) return 0;
    }
}

int tri_fct_WCHAR_INV(void* first, void* second, void* param) {
    return -tri_fct_WCHAR(first, second, param);
}

int tri_fct_POINT2D(void* first, void* second, void*) {
    if (equalsEverything(first, second)) return 0;
    const int order = compareWithin(valueAt<double>(first, 0), valueAt<double>(second, 0));
    return order != 0 ? order : compareWithin(valueAt<double>(first, 1), valueAt<double>(second, 1));
}

int tri_CEDynamique_ASCII(void* first, void* second, void*) {
    constexpr std::size_t data = CEDynamique::partieFixe;
    return signOf(
        std::strcmp(static_cast<const char*>(first) + data, static_cast<const char*>(second) + data));
}

int tri_CEDynamique_binaire(void* first, void* second, void*) {
    const auto* left = static_cast<const CEDynamique*>(first);
    const auto* right = static_cast<const CEDynamique*>(second);
    const int wanted = std::max<int>(left->m_LongueurCle, right->m_LongueurCle);
    const int leftSize = std::min(wanted, left->m_LongueurCle + left->m_LongueurValeur);
    const int rightSize = std::min(wanted, right->m_LongueurCle + right->m_LongueurValeur);
    const int common = std::min(leftSize, rightSize);
    constexpr std::size_t data = CEDynamique::partieFixe;
    const int order =
        common <= 0 ? 0
                    : std::memcmp(static_cast<const char*>(first) + data,
                                  static_cast<const char*>(second) + data, static_cast<std::size_t>(common));
    return signOf(order != 0 ? order : leftSize - rightSize);
}

int tri_CWauElement(void* first, void* second, void*) {
    constexpr std::size_t name = CWauElement::decalageNom;
    return signOf(std::strncmp(static_cast<const char*>(first) + name,
                               static_cast<const char*>(second) + name, CWauElement::longueurNom));
}

int tri_fct_DWORD_PTR(void* first, void* second, void*) {
    const auto left = reinterpret_cast<std::uintptr_t>(first);
    const auto right = reinterpret_cast<std::uintptr_t>(second);
    return left < right ? -1 : left > right ? 1 : 0;
}
