#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include <dorsel/globals.h>
#include <dorsel/strings.h>
#include <kestra/project/chantier.h>
#include <platform/files.h>

#include "side_by_side.h"

namespace {

constexpr int lineCount = 1'000'000;

std::string temporary(const char* name) {
    return platform::theFiles().temporaryFolder() + "kestra_bench_" + name;
}

/// A project of that many lines "V0000000", each tenth a deleted one when `deleted`.
std::string writeProject(const char* name, int lines, bool deleted) {
    std::string path = temporary(name);
    std::ofstream file(path, std::ios::binary);
    for (int i = 0; i < lines; ++i) {
        char line[80];
        std::snprintf(line, sizeof line, "%s;V%07d;1234567.89;7654321.01;100\r\n",
                      deleted && i % 10 == 3 ? "$.ARCHT" : "$VARCHT", i);
        file << line;
    }
    return path;
}

void require(bool holds) {
    if (!holds) std::abort();
}

/// Writing over a line of its length, beside finding that line and writing into a file of three lines.
void benchSetvar(Cchantier& big, Cchantier& small, const char* which, int line) {
    char name[16];
    std::snprintf(name, sizeof name, "V%07d", line);
    int round = 0;
    const auto write = [&](Cchantier& project, const char* variable) {
        const std::string values = "1234567.89;7654321.01;" + std::to_string(100 + ++round % 800);
        require(project.Setvar("$VARCHT", variable, values.c_str()) == 4);
    };
    const auto find = [&] {
        char* text = nullptr;
        require(big.Open() != nullptr && big.Findvar(text, "$VARCHT", name) > 0);
        big.Close();
    };
    const std::string title = std::string("Setvar, same length, ") + which + " of 1,000,000 lines";
    bench::sideBySide(
        title.c_str(), 1.25, [&] { write(big, name); }, "find it, write 3 lines",
        [&] {
            find();
            write(small, "V0000001");
        },
        21);
}

void benchCompresse() {
#ifndef _WIN32
    const std::string original = writeProject("deleted.cht", lineCount, true),
                      path = temporary("compact.cht");
    const std::string copy = "cp " + original + ' ' + path;
    const std::string sed = "sed '/^\\$\\./d' " + original + " > " + path + ".sed";
    Cchantier project;
    project.m_cheminCht = path.c_str();
    bench::againstBest("Compresse, 1,000,000 lines, 10 % deleted", 1.5,
                       {"Compresse", [&] { require(project.Compresse() == lineCount / 10); },
                        [&] { require(std::system(copy.c_str()) == 0); }},
                       {{"sed '/^\\$\\./d'", [&] { require(std::system(sed.c_str()) == 0); }}}, 5);
    require(std::system(("cmp -s " + path + ' ' + path + ".sed").c_str()) == 0);
    for (const std::string& file : {original, path, path + ".sed"}) platform::theFiles().remove(file.c_str());
#endif
}

void benchServices() {
    const std::string folder = temporary("services"), path = folder + "/ini/services.ini";
    platform::theFiles().createFolder((folder + "/ini").c_str());
    {
        std::ofstream file(path, std::ios::binary);
        for (int i = 0; i < 100'000; ++i)
            file << 100'000 + i << ';' << 100'000 + i << ";D:\\AFFAIRES\\SERVICE\\;5>s(1,2)\\x;x\r\n";
    }
    std::snprintf(pvg.localFolder, sizeof pvg.localFolder, "%s/", folder.c_str());
    bench::sideBySide(
        "Serv_dir, last of 100,000 lines", 1.5,
        [&] {
            char found[260];
            require(Cchantier::Serv_dir("199999", found) > 0);
        },
        "one pass of std::getline",
        [&] {
            std::ifstream file(path, std::ios::binary);
            std::size_t bytes = 0;
            for (std::string line; std::getline(file, line);) bytes += line.size();
            bench::keep(bytes);
        },
        21);
    platform::theFiles().remove(path.c_str());
}

}  // namespace

int main() {
    Cchantier big, small;
    big.m_cheminCht = writeProject("million.cht", lineCount, false).c_str();
    small.m_cheminCht = writeProject("three.cht", 3, false).c_str();
    benchSetvar(big, small, "first", 1);
    benchSetvar(big, small, "middle", lineCount / 2);
    benchSetvar(big, small, "last", lineCount - 1);
    for (const Cchantier* project : {&big, &small}) platform::theFiles().remove(project->m_cheminCht);
    benchCompresse();
    benchServices();
}
