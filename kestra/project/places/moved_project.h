#pragma once
#include <string>

#include <platform/export.h>

namespace kestra {

/// Moves a project's file to another folder, onto another disk too, and brings the paths in it up to date as
/// `Cchantier::Maj_DirCht` does. No writer comes between: they wait, and then find the project gone. False,
/// with the file where it was, when another process still writes after `ChangeFile::patience`, when `to`
/// exists or its folder does not, and when the file cannot be moved.
KESTRA_API bool moveProject(const std::string& from, const std::string& to);

}  // namespace kestra
