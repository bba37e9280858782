#include <kestra/text/combo_fich.h>

#include <algorithm>

#include <dorsel/paths.h>
#include <dorsel/strings.h>
#include <kestra/frame/frame_hooks.h>
#include <kestra/text/matching_files.h>
#include <platform/cp1252.h>
#include <platform/files.h>

namespace text {
namespace {

constexpr std::size_t longestPath = 260;

/// The absolute form, or the path itself where there is none that fits.
std::string absolute(const std::string& path) {
    const std::string full = platform::theFiles().absolute(path.c_str());
    return full.empty() || full.size() >= longestPath ? path : full;
}

std::string projectFolderOf() {
    const kestra::ProjectHooks* hooks = kestra::projectHooks();
    const char* project = hooks != nullptr ? hooks->fileName() : "";
    return *project != '\0' ? DOS::GetPName(project, "UR") : "";
}

}  // namespace

std::vector<std::string> comboPatterns(const char* file, const char* folders, bool projectFolder) {
    std::string path = file;
    STR::C92_47(path.data());
    auto [folder, name] = splitPath(path);
    std::vector<std::string> patterns;
    if (!folder.empty()) patterns.push_back(absolute(folder + name));
    if (const std::string project = projectFolder ? projectFolderOf() : ""; !project.empty())
        patterns.push_back(project + name);

    std::string list = folders != nullptr ? folders : "";
    MyPCharArray pieces;
    STR::Separe(list.data(), ';', pieces, 0);
    for (unsigned i = 0; i < static_cast<unsigned>(pieces.GetSize()); ++i) {
        std::string entry = pieces[i];
        if (entry.empty()) continue;
        if (!platform::isSeparator(entry.back())) entry += '\\';
        entry = absolute(entry.append(name));
        patterns.emplace_back(STR::C47_92(entry.data()));
    }
    return patterns;
}

std::vector<int> repeatedItems(const std::vector<std::string>& items) {
    std::vector<int> repeated;
    const std::string* before = nullptr;
    for (const std::string& item : items) {
        if (item.empty()) continue;
        if (before != nullptr && *before == item)
            repeated.insert(repeated.begin(), static_cast<int>(&item - items.data()));
        before = &item;
    }
    return repeated;
}

std::vector<std::string> comboNames(const char* file, const char* folders, int flags) {
    std::vector<std::string> names;
    if (file == nullptr) return names;
    for (const std::string& pattern : comboPatterns(file, folders, flags != 0)) {
        const std::vector<std::string> found = matchingFiles(pattern);
        names.insert(names.end(), found.begin(), found.end());
    }
    std::sort(names.begin(), names.end(), [](const std::string& first, const std::string& second) {
        const int order = platform::compareNoCase1252(first, second);
        return order != 0 ? order < 0 : first < second;
    });
    for (const int index : repeatedItems(names)) names.erase(names.begin() + index);
    return names;
}

}  // namespace text
