#pragma once
#include <string>
#include <vector>

#include "command.h"

/// The words of a command that takes names in a fixed order and the option "--json". What follows "--" is
/// never an option, and a word that begins with one "-" only is none (values may be negative numbers).
struct Words {
    std::vector<std::string> names;
    bool json = false;
    std::string fault;  ///< what is wrong; empty when nothing is
};

/// `expected` names the words that must be there, for the message; further ones are a fault unless `more`.
enum class Further { refused, taken };
Words readWords(Arguments arguments, std::initializer_list<const char*> expected,
                Further further = Further::refused);

/// "1 ligne retirée", "3 lignes retirées".
std::string countedLines(long count, std::string_view what);
