#pragma once
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "command.h"

/// The words of a command line, told apart: options with a value ("--to ADRESSE" or "--to=ADRESSE"), options
/// without ("--open"), and the words that are no options, each of which has to be there unless it is said
/// that it may be left out. What follows "--" is never an option, nor is a "-" alone.
class Options {
  public:
    using Names = std::initializer_list<std::string_view>;
    /// What may stand beside the words that are named.
    struct Allowed {
        std::size_t absent = 0;  ///< so many of the last ones may be left out
        bool further = false;    ///< any number of others may follow
        bool negative = false;   ///< words may begin with one "-", as negative values do
    };

    /// `words` name what the other words are, in their order, for the user: "le fichier à trier".
    Options(Arguments arguments, Names withValue, Names withoutValue, Names words)
        : Options(arguments, withValue, withoutValue, words, Allowed{}) {}
    Options(Arguments arguments, Names withValue, Names withoutValue, Names words, const Allowed& allowed);

    /// What is wrong, for `refuseUsage`; empty when nothing is.
    const std::string& fault() const { return m_fault; }

    bool has(std::string_view option) const { return m_values.contains(option); }
    /// The last value given; null, or an empty text, for none.
    const char* value(std::string_view option) const;
    std::string text(std::string_view option) const;
    /// All values given, joined by ';'.
    std::string list(std::string_view option) const;
    /// The words that are no options.
    const std::vector<std::string>& words() const { return m_words; }
    /// One of them; only without a fault.
    const std::string& word(std::size_t index) const { return m_words[index]; }
    /// The same for one that may be left out; empty then.
    std::string optionalWord(std::size_t index) const { return index < m_words.size() ? m_words[index] : ""; }

  private:
    /// Takes the option at `index`, and its value; the index of the last argument taken.
    std::size_t takeOption(Arguments arguments, std::size_t index, Names withValue, Names withoutValue);

    std::map<std::string, std::vector<std::string>, std::less<>> m_values;
    std::vector<std::string> m_words;
    std::string m_fault;
};
