#include "words.h"

Words readWords(Arguments arguments, Options::Names expected, Further further) {
    const Options options(arguments, {}, {"--json"}, expected,
                          {.further = further == Further::taken, .negative = true});
    return {options.words(), options.has("--json"), options.fault()};
}

std::string countedLines(long count, std::string_view what) {
    const bool several = count > 1;
    return std::to_string(count) + (several ? " lignes " : " ligne ") + std::string(what) +
           (several ? "s" : "");
}
