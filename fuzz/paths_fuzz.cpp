#include <cstdlib>
#include <memory>
#include <string>

#include <dorsel/dorsel.h>
#include <platform/files.h>

/// A text in a buffer without room to spare, through all that takes a path or a text. The parts of a path put
/// together are the path.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto room = text.size() + 1;
    const auto copy = [&](char* buffer) {
        return std::copy(text.c_str(), text.c_str() + room, buffer), buffer;
    };
    const auto tight = std::make_unique<char[]>(room), finished = std::make_unique<char[]>(room + 1);
    const auto drive = std::make_unique<char[]>(4), parts = std::make_unique<char[]>(3 * DOS::pathSize);
    char *folder = parts.get(), *name = folder + DOS::pathSize, *extension = name + DOS::pathSize;
    const int checked = DOS::Controle_chemin(text.c_str(), drive.get(), folder, name, extension, 0);
    if (checked != 1 && std::string(drive.get()) + folder + name + extension != text.c_str()) std::abort();
    if (checked != 1 && std::string(DOS::GetPName(text.c_str(), "URNE")) != text.c_str()) std::abort();
    const std::string absolute = platform::theFiles().absolute(text.c_str());
    if (platform::theFiles().absolute(absolute.c_str()) != absolute) std::abort();
    DOS::Localise_fichier(folder, text.c_str(), text.c_str(), 1);
    for (char* (*helper)(char*) : {STR::Majuscules, STR::Espace, STR::C47_92, STR::C92_47})
        helper(copy(tight.get()));
    MyPCharArray pieces;
    STR::Separe(copy(tight.get()), ';', pieces, static_cast<int>(size % 5));
    directory(copy(finished.get()), 1), directory(copy(tight.get()), 0);
    ReplaceStdDir(copy(tight.get()), text.c_str(), static_cast<int>(room)),
        STR::CR_LF(copy(tight.get()), nullptr);
    return STR::Teste_ASCII(text.c_str(), tight.get(), nullptr) + STR::Num(text.c_str(), 1) < 0 ? 1 : 0;
}
