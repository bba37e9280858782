#include <cstdint>
#include <cstdlib>
#include <string>

#include <kestra/project/chantier.h>
#include <platform/replaceable.h>

#include "../tests/support/memory_files.h"

/// Layout lines give a box whose corners are in order, and the move of a project leaves a record of its
/// folder.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryFiles files;
    files.put("C:\\p\\a.cht", std::string(reinterpret_cast<const char*>(data), size));
    const platform::Replaced<platform::FileSystem> inForce(platform::replaceFiles, files);
    std::int32_t box[4];
    const int count = Cchantier::GetMinMaxMepCht("C:\\p\\a.cht", box);
    if (box[0] > box[2] || box[1] > box[3] || (count == 0 && box[0] != 0)) std::abort();
    Cchantier project;
    project.m_cheminCht = "C:\\p\\a.cht";
    if (project.Maj_DirCht() != 1 || files.size("C:\\p\\a.cht") <= 0) std::abort();
    return 0;
}
