#pragma once
#include <kestra/containers/elements.h>

/// The orders of the collections, alone and by name.
///
/// A comparison takes two elements and the collection's parameter and returns a negative number, 0 or a
/// positive one. Collections call it with an element they hold first and the key second.
///
/// The functions of `FonctionsTriGeneral` find everything equal (0) when an operand is missing or the
/// wildcard, the address with all bits set but the lowest: a search for the wildcard finds the first or last
/// element. Operands need no alignment.

using Comparaison = int (*)(void* first, void* second, void* param);

#pragma pack(push, 1)
/// A row of a table of named comparisons; the last row has the empty name and no function.
struct TableFminmax {
    const char* name;
    Comparaison function;
    char description[60];  ///< zero-padded
};
static_assert(sizeof(TableFminmax) == 2 * sizeof(void*) + 60);
#pragma pack(pop)

KESTRA_API extern TableFminmax FonctionsTriGeneral[12];

/// What the functions of the table answer for "less" and "greater": -1 and 1.
KESTRA_API extern int tri_Inferieur;
KESTRA_API extern int tri_Superieur;

/// "LONG", "2LONG": one or two 32-bit signed integers.
KESTRA_API int tri_fct_LONG(void* first, void* second, void* param);
KESTRA_API int tri_fct_2LONG(void* first, void* second, void* param);
/// "DOUBLE": a NaN equals everything.
KESTRA_API int tri_fct_DOUBLE(void* first, void* second, void* param);
/// "BINAIRE": bytes over a length, the 32-bit integer that `param` points to. No length, or one below 1:
/// equal.
KESTRA_API int tri_fct_BINAIRE(void* first, void* second, void* param);
/// "B_OFFSET": `param` points to two 32-bit integers, an offset and a length.
KESTRA_API int tri_fct_B_OFFSET(void* first, void* second, void* param);
/// "ASCII", "TEXTE": NUL-terminated texts as unsigned 8-bit codes. "TEXTE_INV": the other way round.
KESTRA_API int triFctTexte(void* first, void* second, void* param);
KESTRA_API int triFctTexteInv(void* first, void* second, void* param);
/// "WCHAR", "WCHAR_INV": zero-terminated texts of 16-bit code units.
KESTRA_API int tri_fct_WCHAR(void* first, void* second, void* param);
KESTRA_API int tri_fct_WCHAR_INV(void* first, void* second, void* param);
/// "POINT2D": two doubles, x before y, each equal within 5e-5.
KESTRA_API int tri_fct_POINT2D(void* first, void* second, void* param);

// The comparisons below take elements or values as they are: no operand may be missing or the wildcard.

/// Keys of two `CEDynamique` as texts.
KESTRA_API int tri_CEDynamique_ASCII(void* first, void* second, void* param);
/// Data of two `CEDynamique` as bytes, over the larger of their key lengths: behind a shorter key its value
/// takes part. Data that ends before that length is less than data that goes on.
KESTRA_API int tri_CEDynamique_binaire(void* first, void* second, void* param);
/// Names of two `CWauElement`, at most 32 characters.
KESTRA_API int tri_CWauElement(void* first, void* second, void* param);
/// The operands themselves, as unsigned numbers.
KESTRA_API int tri_fct_DWORD_PTR(void* first, void* second, void* param);
