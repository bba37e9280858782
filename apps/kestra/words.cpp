#include "words.h"

Words readWords(Arguments arguments, std::initializer_list<const char*> expected, Further further) {
    Words words;
    bool options = true;
    for (const std::string& argument : arguments) {
        if (options && argument == "--")
            options = false;
        else if (options && argument == "--json")
            words.json = true;
        else if (options && argument.starts_with("--"))
            words.fault = "option inconnue « " + argument + " »";
        else
            words.names.push_back(argument);
    }
    const std::size_t count = words.names.size();
    if (words.fault.empty() && count < expected.size())
        words.fault = std::string("il manque ") + *(expected.begin() + count);
    else if (words.fault.empty() && count > expected.size() && further == Further::refused)
        words.fault = "« " + words.names[expected.size()] + " » est de trop";
    return words;
}

std::string countedLines(long count, std::string_view what) {
    const bool several = count > 1;
    return std::to_string(count) + (several ? " lignes " : " ligne ") + std::string(what) +
           (several ? "s" : "");
}
