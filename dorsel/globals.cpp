#include <dorsel/globals.h>

#include <cstring>
#include <numbers>
#include <string>

#include <platform/files.h>
#include <platform/machine.h>

int g_Version = 0;

namespace DOS {
int Poste = 0;
int Nbresauve = 0;
int Debug = 0;
char* chemins_WAU = nullptr;
char* chemins_ENTETE = nullptr;
char* Dwg_Dxf = nullptr;
char m_NomChtDef[260] = "";
}  // namespace DOS

VfVar vfVar = {};

namespace {

/// Copies a folder, ended by a separator; a folder that does not fit is left out.
void setFolder(char (&out)[260], std::string folder) {
    if (!folder.empty() && !platform::isSeparator(folder.back()))
        folder +=
            folder.find('\\') != std::string::npos || folder.find('/') == std::string::npos ? '\\' : '/';
    if (folder.size() < sizeof out) std::memcpy(out, folder.c_str(), folder.size() + 1);
}

DorselSeg startingSegment() {
    DorselSeg segment{};
    segment.size = sizeof segment;
    const std::string local = platform::theMachine().environment("KESTRA_LOCAL");
    const std::string network = platform::theMachine().environment("KESTRA_NETWORK");
    setFolder(segment.localFolder, local.empty() ? platform::theFiles().programFolder() : local);
    setFolder(segment.networkFolder, network.empty() ? segment.localFolder : network);
    return segment;
}

SystemVar systemVar = {sizeof(SystemVar)};

}  // namespace

/// Other modules read settings while they are loaded: in a program that links all of them statically this
/// comes first.
__attribute__((init_priority(200))) DorselSeg pvg = startingSegment();
SystemVar* g_pSystemVar = &systemVar;
const char* g_RegTOREL_32 = "SOFTWARE\\TOREL_32";
const double _50rd = std::numbers::pi / 4;
const double grade_en_radian = std::numbers::pi / 200;
