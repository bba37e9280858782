#pragma once
#include <string_view>

/// Reads a project of two files (the second is "b", for "CHTIVAR;b") in memory through `Lisligne`, `Findvar`,
/// `Getvar` and `VisitVariables`, and compares with the plain rules. False when anything differs.
bool projectAnswersByTheRules(std::string_view content, std::string_view included);
