#pragma once
#include <functional>
#include <string>
#include <string_view>

#include <platform/arrays.h>

class Cchantier;

namespace kestra {

/// A line that the lookup of a variable has found; it lives during the visit only.
struct FoundLine {
    std::string_view text;
    const std::string& folder;  ///< what "..\" stands for in it
    bool included;              ///< from an include
    bool marked;                ///< `Cchantier::Getvar` marks its name as an include's
};

/// Looks a variable up as `Cchantier::Getvar` says and visits its lines in that order. Returns their number;
/// -1 when nothing was asked for or the project cannot be opened.
int visitVariable(Cchantier& project, const char* section, const char* name,
                  const std::function<void(const FoundLine&)>& visit);

/// Appends the fields of a found line, at most `maxFields` (0 or less: all).
void appendFields(CStringArray& out, const FoundLine& line, int maxFields);

/// The fields of the last line that `Cchantier::Getvar` finds: the value in force where a variable stands
/// twice. Empty when there is none.
CStringArray lastLineOf(Cchantier& project, const char* section, const char* name, int maxFields);

}  // namespace kestra
