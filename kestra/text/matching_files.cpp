#include <kestra/text/matching_files.h>

#include <algorithm>

#include <dorsel/strings.h>
#include <platform/cp1252.h>
#include <platform/files.h>

namespace text {

FolderAndName splitPath(std::string_view path) {
    const std::size_t start = path.find_last_of("\\/:") + 1;
    return {std::string(path.substr(0, start)), std::string(path.substr(start))};
}

std::vector<std::string> matchingFiles(std::string_view pattern) {
    const auto [folder, name] = splitPath(pattern);
    std::vector<std::string> names;
    if (name.find_first_of("*?") == std::string::npos) {
        if (platform::theFiles().kind((folder + name).c_str()) == platform::FileKind::file)
            names.push_back(name);
        return names;
    }
    const std::string wanted = name == "*.*" ? "*" : platform::upperCased1252(name);
    platform::theFiles().list(
        folder.empty() ? "." : folder.c_str(), [&](const char* found, platform::FileKind kind) {
            if (kind == platform::FileKind::file &&
                STR::Teste_ASCII(platform::upperCased1252(found).c_str(), wanted.c_str(), nullptr) != 0)
                names.emplace_back(found);
            return true;
        });
    std::sort(names.begin(), names.end(), [](const std::string& first, const std::string& second) {
        return platform::compareNoCase1252(first, second) < 0;
    });
    return names;
}

}  // namespace text
