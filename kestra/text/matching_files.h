#pragma once
#include <string>
#include <string_view>
#include <vector>

/// The files that a path with '*' and '?' in its last part names.
namespace text {

/// A path cut behind its folder; both parts together are the path.
struct FolderAndName {
    std::string folder;  ///< ends in its separator or in the colon of a drive; empty for the current folder
    std::string name;
};
FolderAndName splitPath(std::string_view path);

/// Names without folder of the files that `pattern` matches, in any case, ordered without regard to case. As
/// everywhere on the family's systems "*.*" matches every name. A pattern without '*' and '?' names one file,
/// which may be missing.
std::vector<std::string> matchingFiles(std::string_view pattern);

}  // namespace text
