// The file sort beside GNU sort with one thread, in the byte order of the C locale: the same lines, read from
// and written to the same folder.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include <kestra/containers/file_sort.h>

#include "side_by_side.h"

namespace {

namespace fs = std::filesystem;

#ifdef KESTRA_BENCH_PEERS
constexpr bool hasGnuSort = true;
#else
constexpr bool hasGnuSort = false;
#endif

/// Lines of about 40 characters; with `distinct` below their number some come several times.
std::string linesOf(int count, unsigned distinct) {
    std::mt19937 random(1);
    std::string content;
    for (int i = 0; i < count; ++i) {
        std::mt19937 line(distinct > 0 ? static_cast<unsigned>(random()) % distinct
                                       : static_cast<unsigned>(random()));
        for (unsigned length = 30 + static_cast<unsigned>(line()) % 20; length > 0; --length)
            content += static_cast<char>('A' + line() % 58);
        content += '\n';
    }
    return content;
}

void write(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

void compare(const char* name, const std::string& content, bool unique) {
    const auto unsorted = [&] { write("lignes.txt", content); };
    const auto sort = [=] {
        kestra::LineSort request;
        request.file = "lignes.txt";
        request.unique = unique;
        if (kestra::sortLines(request).outcome != kestra::LineSortOutcome::sorted) std::abort();
    };
    std::vector<bench::Contender> peers;
    if (hasGnuSort)
        peers.push_back({unique ? "sort -u --parallel=1" : "sort -s --parallel=1",
                         [=] {
                             const std::string command = std::string("LC_ALL=C /usr/bin/sort ") +
                                                         (unique ? "-u" : "-s") +
                                                         " --parallel=1 lignes.txt -o triees.txt";
                             if (std::system(command.c_str()) != 0) std::abort();
                         },
                         unsorted});
    bench::againstBest(name, 0.5, {"tri_de_fichier", sort, unsorted}, std::move(peers), 7);
}

}  // namespace

int main() {
    const fs::path folder = fs::temp_directory_path() / "kestra_bench_sort";
    fs::create_directories(folder);
    fs::current_path(folder);
    constexpr int count = 1'000'000;
    compare("tri_de_fichier, 1,000,000 lines of 40 bytes", linesOf(count, 0), false);
    compare("the same, unique, half of them duplicates", linesOf(count, count / 2), true);
    std::string common;
    for (const char c : linesOf(count, 0))
        common += c == '\n' ? "\nlongue racine commune " : std::string(1, c);
    compare("the same behind a common beginning", common, false);
    fs::current_path(folder.parent_path());
    fs::remove_all(folder);
}
