#include "file_sort_check.h"

#include <kestra/containers/file_sort.h>
#include <kestra/containers/tri.h>

#include <platform/replaceable.h>
#include "memory_files.h"

SortedByTheRules sortByTheRules(std::string content, bool descending, bool unique) {
    SortedByTheRules result{content, {}, 0};
    std::vector<std::string> lines;
    for (std::size_t start = 0; start <= content.size();) {
        const std::size_t end = std::min(content.find('\n', start), content.size());
        if (end - start > 2) lines.push_back(content.substr(start, end - start));
        start = end + 1;
    }
    const auto compare = [](void* first, void* second, void*) {
        return triFctTexte(static_cast<std::string*>(first)->data(),
                           static_cast<std::string*>(second)->data(), nullptr);
    };
    CTri order(compare);
    for (std::string& line : lines)
        if (order.Insert(&line, unique, 1) == nullptr) result.eliminated.push_back(line);
    result.kept = order.GetCount();
    if (result.kept < 2) return result;
    result.file.clear();
    order.Rewind();
    while (void* line = descending ? order.Back() : order.Next())
        result.file += *static_cast<std::string*>(line) + '\n';
    return result;
}

bool fileSortAnswersByTheRules(std::string_view content, bool descending, bool unique) {
    const SortedByTheRules expected = sortByTheRules(std::string(content), descending, unique);
    MemoryFiles files;
    const platform::Replaced inForce(platform::replaceFiles, files);
    files.put("c:\\lignes.txt", std::string(content));
    std::vector<std::string> eliminated;
    kestra::LineSort request{"c:\\lignes.txt", descending, unique, nullptr, nullptr};
    request.eliminated = [&](std::string_view line) { eliminated.emplace_back(line); };
    const kestra::LineSortResult result = kestra::sortLines(request);
    std::string file, backup;
    if (!platform::readWholeFile(request.file, file)) return false;
    if (content.size() < 5)
        return result.outcome == kestra::LineSortOutcome::missingOrEmpty && file == content;
    const bool written = platform::readWholeFile(".bak", backup);
    return result.kept == expected.kept && eliminated == expected.eliminated && file == expected.file &&
           written == (expected.kept >= 2) && (!written || backup == content);
}
