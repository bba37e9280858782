#include "options.h"

#include <algorithm>

namespace {

bool isOneOf(std::string_view word, Options::Names names) {
    return std::find(names.begin(), names.end(), word) != names.end();
}

}  // namespace

Options::Options(Arguments arguments, Names withValue, Names withoutValue, Names words,
                 const Allowed& allowed) {
    const std::string_view mark = allowed.negative ? "--" : "-";
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size() && m_fault.empty(); ++i) {
        const std::string& word = arguments[i];
        if (!optionsEnded && word == "--")
            optionsEnded = true;
        else if (!optionsEnded && word.size() > 1 && word.starts_with(mark))
            i = takeOption(arguments, i, withValue, withoutValue);
        else if (m_words.size() == words.size() && !allowed.further)
            m_fault = "« " + word + " » est de trop";
        else
            m_words.push_back(word);
    }
    if (m_fault.empty() && m_words.size() + allowed.absent < words.size())
        m_fault = "il manque " + std::string(words.begin()[m_words.size()]);
}

std::size_t Options::takeOption(Arguments arguments, std::size_t index, Names withValue, Names withoutValue) {
    const std::string& word = arguments[index];
    const std::size_t equals = std::min(word.find('='), word.size());
    const std::string name = word.substr(0, equals);
    if (isOneOf(word, withoutValue)) {
        m_values[word];
    } else if (!isOneOf(name, withValue)) {
        m_fault = "option inconnue « " + word + " »";
    } else if (equals < word.size()) {
        m_values[name].push_back(word.substr(equals + 1));
    } else if (index + 1 == arguments.size()) {
        m_fault = "valeur absente derrière « " + word + " »";
    } else {
        m_values[name].push_back(arguments[++index]);
    }
    return index;
}

const char* Options::value(std::string_view option) const {
    const auto found = m_values.find(option);
    return found != m_values.end() && !found->second.empty() ? found->second.back().c_str() : nullptr;
}

std::string Options::text(std::string_view option) const {
    const char* given = value(option);
    return given != nullptr ? given : "";
}

std::string Options::list(std::string_view option) const {
    std::string joined;
    const auto found = m_values.find(option);
    if (found == m_values.end()) return joined;
    for (const std::string& value : found->second) joined += (joined.empty() ? "" : ";") + value;
    return joined;
}
