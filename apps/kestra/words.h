#pragma once
#include <string>
#include <vector>

#include "options.h"

/// The words of a command that takes names in a fixed order and the option "--json". A word that begins with
/// one "-" only is no option: values may be negative numbers.
struct Words {
    std::vector<std::string> names;
    bool json;
    std::string fault;  ///< what is wrong; empty when nothing is
};

enum class Further { refused, taken };
/// `expected` names the words that must be there, for the message; further ones are a fault unless `taken`.
Words readWords(Arguments arguments, Options::Names expected, Further further = Further::refused);

/// "1 ligne retirée", "3 lignes retirées".
std::string countedLines(long count, std::string_view what);
