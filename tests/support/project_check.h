#pragma once
#include <string_view>
#include <vector>

#include <kestra/project/chantier.h>

#include "project_reference.h"

/// Every line of a project from its start on, as `Lisligne` reads it.
std::vector<ReferenceLine> readLines(Cchantier& project);

/// Reads a project of two files (the second is "b", for "CHTIVAR;b") in memory through `Lisligne`, `Findvar`,
/// `Getvar` and `VisitVariables`, and compares with the plain rules. False when anything differs.
bool projectAnswersByTheRules(std::string_view content, std::string_view included);
