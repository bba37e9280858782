#pragma once
#include <kestra/containers/comparisons.h>

/// The beginnings of key texts as numbers, so that most comparisons of a search need not touch an element.

namespace tri {

/// Where elements keep the text that a comparison orders them by.
struct KeyText {
    Comparaison compare;
    std::ptrdiff_t offset;  ///< bytes before the text
    bool descending;
};

/// Null for a comparison that does not order by a text of 8-bit codes, those of the applications included.
const KeyText* keyTextOf(Comparaison compare);

/// False for what the comparisons find equal to everything: nothing, and the wildcard.
inline bool isOperand(const void* element) {
    return element != nullptr && reinterpret_cast<std::uintptr_t>(element) != ~std::uintptr_t{1};
}

/// Of two elements with different prefixes the one with the smaller prefix comes first; equal prefixes tell
/// nothing. The element must be an operand; its text is read up to its end, at most 8 bytes.
std::uint64_t keyPrefix(const void* element, const KeyText& text);

}  // namespace tri
