#include <cstdlib>
#include <cstring>
#include <fstream>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include <kestra/project/chantier.h>
#include <platform/cp1252.h>
#include <platform/files.h>

#include "side_by_side.h"

namespace {

/// Bytes of heap in use through `new`, and the most that were in use at once.
std::size_t inUse = 0;
std::size_t mostInUse = 0;
constexpr std::size_t headerSize = 16;

}  // namespace

void* operator new(std::size_t size) {
    char* const block = static_cast<char*>(std::malloc(size + headerSize));
    if (block == nullptr) throw std::bad_alloc();
    std::memcpy(block, &size, sizeof size);
    inUse += size;
    mostInUse = std::max(mostInUse, inUse);
    return block + headerSize;
}
__attribute__((noinline)) void operator delete(void* memory) noexcept {
    if (memory == nullptr) return;
    char* const block = static_cast<char*>(memory) - headerSize;
    std::size_t size;
    std::memcpy(&size, block, sizeof size);
    inUse -= size;
    std::free(block);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace {

std::string writeProject(int lines) {
    const std::string path =
        platform::theFiles().temporaryFolder() + "kestra_bench_" + std::to_string(lines) + ".cht";
    std::ofstream file(path, std::ios::binary);
    for (int i = 1; i < lines; ++i)
        file << (i % 3 == 0 ? "$VORTLIN" : "$VARCHT") << ";BORNE_" << i << ";1234567.89;7654321.01;"
             << 100 + i % 400 << "\r\n";
    file << "$VARCHT;DERNIERE;fin\r\n";
    return path;
}

bool sameNoCase(std::string_view text, std::string_view upper) {
    if (text.size() != upper.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (platform::upperCase1252[static_cast<unsigned char>(text[i])] !=
            static_cast<unsigned char>(upper[i]))
            return false;
    return true;
}

/// The same search by a plain loop: lines with their section and name compared without regard to case.
int findByGetline(const std::string& path, std::string_view section, std::string_view name) {
    std::ifstream file(path, std::ios::binary);
    int found = 0;
    for (std::string line; std::getline(file, line);) {
        const std::string_view text = line;
        const std::size_t first = text.find(';');
        if (first == text.npos || !sameNoCase(text.substr(0, first), section)) continue;
        const std::size_t second = text.find(';', first + 1);
        found += sameNoCase(text.substr(first + 1, second - first - 1), name) ? 1 : 0;
    }
    return found;
}

/// The least that any search must do: the file read once, the ends of its lines found.
std::size_t readAndFindLineEnds(const std::string& path) {
    static std::vector<char> buffer(64 * 1024);
    const auto file = platform::theFiles().open(path.c_str(), platform::OpenMode::read);
    std::size_t lines = 0;
    std::int64_t offset = 0;
    for (std::int64_t got; (got = file->readAt(offset, buffer.data(), buffer.size())) > 0; offset += got) {
        const char* next = buffer.data();
        const char* const end = next + got;
        while (next < end) {
            const void* lineEnd = std::memchr(next, '\n', static_cast<std::size_t>(end - next));
            if (lineEnd == nullptr) break;
            next = static_cast<const char*>(lineEnd) + 1;
            ++lines;
        }
    }
    return lines;
}

}  // namespace

int main() {
    for (const int lines : {10000, 100000, 1000000}) {
        const std::string path = writeProject(lines);
        Cchantier project;
        project.m_cheminCht = path.c_str();
        const auto ours = [&] {
            CStringArray out;
            if (project.Getvar("$VARCHT", "DERNIERE", 0, out) != 1) std::abort();
        };
        const std::string name = "Getvar, last of " + std::to_string(lines) + " lines";
        bench::sideBySide(name.c_str(), 0.5, ours, "std::getline loop", [&] {
            if (findByGetline(path, "$VARCHT", "DERNIERE") != 1) std::abort();
        });
        bench::sideBySide(name.c_str(), 0, ours, "read and memchr",
                          [&] { bench::keep(readAndFindLineEnds(path)); });
        mostInUse = inUse;
        const std::size_t before = inUse;
        ours();
        std::printf("%-56s %10.1f KiB of heap at most\n", name.c_str(),
                    static_cast<double>(mostInUse - before) / 1024);
        platform::theFiles().remove(path.c_str());
    }
}
