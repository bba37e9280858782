#pragma once
#include <string>
#include <string_view>

namespace kestra {

/// A value with the folders put in for "..\", "..L\", "..N\", "..R\" and "..C\" at its start and behind each
/// ";" (`chantier.h` has the rules). `ownFolder` is what "..\" stands for.
std::string expandRelativePaths(std::string_view value, const std::string& ownFolder);

/// Drive and folder of a path, ending in its separator; empty when it names none.
std::string folderOf(const char* path);

}  // namespace kestra
