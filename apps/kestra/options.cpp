#include "options.h"

#include <algorithm>
#include <cstring>

#include <platform/standard_streams.h>

namespace host {

Options::Options(const Arguments& arguments, std::initializer_list<const char*> withValue,
                 std::initializer_list<const char*> withoutValue) {
    const auto isOneOf = [](const char* word, const auto& names) {
        return std::any_of(names.begin(), names.end(),
                           [word](const char* name) { return std::strcmp(word, name) == 0; });
    };
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size() && m_fault.empty(); ++i) {
        const char* word = arguments[i];
        if (optionsEnded || std::strncmp(word, "--", 2) != 0) {
            m_rest.push_back(platform::textOfArgument(word));
        } else if (word[2] == '\0') {
            optionsEnded = true;
        } else if (isOneOf(word, withoutValue)) {
            m_values[word];
        } else if (!isOneOf(word, withValue)) {
            m_fault = std::string(word) + " : option inconnue";
        } else if (i + 1 == arguments.size()) {
            m_fault = std::string(word) + " : valeur absente";
        } else {
            m_values[word].push_back(platform::textOfArgument(arguments[++i]));
        }
    }
}

const char* Options::value(const std::string& option) const {
    const auto found = m_values.find(option);
    return found != m_values.end() && !found->second.empty() ? found->second.back().c_str() : nullptr;
}

std::string Options::list(const std::string& option) const {
    std::string joined;
    const auto found = m_values.find(option);
    if (found == m_values.end()) return joined;
    for (const std::string& value : found->second) joined += (joined.empty() ? "" : ";") + value;
    return joined;
}

int wrongUsage(const std::string& command, const std::string& fault,
               std::initializer_list<const char*> usage) {
    if (!fault.empty()) platform::printError("kestra " + command + " : " + fault);
    for (const char* line : usage) platform::printError(line);
    return 2;
}

}  // namespace host
