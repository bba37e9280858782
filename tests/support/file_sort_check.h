#pragma once
#include <string>
#include <string_view>
#include <vector>

/// What a file sort must leave, by the plain rules: lines inserted one by one into a collection.
struct SortedByTheRules {
    std::string file;                     ///< the new content; the old one when nothing is written
    std::vector<std::string> eliminated;  ///< in file order
    int kept = 0;
};
SortedByTheRules sortByTheRules(std::string content, bool descending, bool unique);

/// Sorts a file in memory and compares with the rules. False when result, file, backup or report differ.
bool fileSortAnswersByTheRules(std::string_view content, bool descending, bool unique);
