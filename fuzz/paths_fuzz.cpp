#include <cstdlib>
#include <string>
#include <vector>

#include <dorsel/dorsel.h>
#include <platform/files.h>

/// A text in buffers without room to spare, through all that takes a path or a text. The parts of a path put
/// together are the path; an absolute path is its own absolute form.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    char drive[4], folder[DOS::pathSize], name[DOS::pathSize], extension[DOS::pathSize];
    const int checked = DOS::Controle_chemin(text.c_str(), drive, folder, name, extension, 0);
    const std::string parts = std::string(drive) + folder + name + extension;
    if (checked != 1 && (parts != text.c_str() || parts != DOS::GetPName(text.c_str(), "URNE"))) std::abort();
    const std::string absolute = platform::theFiles().absolute(text.c_str());
    if (platform::theFiles().absolute(absolute.c_str()) != absolute) std::abort();
    DOS::Localise_fichier(folder, text.c_str(), text.c_str(), 1);

    const auto tight = [&](auto helper) {
        helper(std::vector<char>(text.c_str(), text.c_str() + size + 1).data());
    };
    for (const auto helper : {STR::Majuscules, STR::Espace, STR::C47_92, STR::C92_47}) tight(helper);
    MyPCharArray pieces;
    tight([&](char* copy) { STR::Separe(copy, ';', pieces, static_cast<int>(size % 5)); });
    tight([&](char* copy) { ReplaceStdDir(copy, text.c_str(), static_cast<int>(size + 1)); });
    tight([](char* copy) { STR::Num(directory(STR::CR_LF(copy, nullptr), 0), 1); });
    directory((text + '\0').data(), 1);
    tight([&](char* copy) { STR::Teste_ASCII(text.c_str(), STR::Majuscules(copy), nullptr); });
    return 0;
}
