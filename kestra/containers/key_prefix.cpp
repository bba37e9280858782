#include <kestra/containers/key_prefix.h>

#include <algorithm>
#include <iterator>

namespace tri {
namespace {

constexpr KeyText keyTexts[] = {
    {triFctTexte, 0, false},
    {triFctTexteInv, 0, true},
    {tri_CEDynamique_ASCII, CEDynamique::partieFixe, false},
    {tri_CWauElement, CWauElement::decalageNom, false},
};

}  // namespace

const KeyText* keyTextOf(Comparaison compare) {
    const auto* found = std::find_if(std::begin(keyTexts), std::end(keyTexts),
                                     [compare](const KeyText& text) { return text.compare == compare; });
    return found != std::end(keyTexts) ? found : nullptr;
}

std::uint64_t keyPrefix(const void* element, const KeyText& text) {
    constexpr int bitsOfCode = 8;
    const auto* code = static_cast<const unsigned char*>(element) + text.offset;
    std::uint64_t prefix = 0;
    for (int shift = 64 - bitsOfCode; shift >= 0 && *code != 0; shift -= bitsOfCode)
        prefix |= std::uint64_t{*code++} << shift;
    return text.descending ? ~prefix : prefix;
}

}  // namespace tri
