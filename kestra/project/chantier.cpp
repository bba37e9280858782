#include "chantier.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <dorsel/settings.h>
#include <kestra/frame/frame_hooks.h>
#include <kestra/project/places/relative_paths.h>
#include <kestra/project/reading/line_filter.h>
#include <kestra/project/reading/line_reader.h>
#include <kestra/project/reading/project_walk.h>
#include <kestra/project/writing/change_file.h>
#include <platform/cp1252.h>

// `chtdef` is built when the library is loaded and uses what stands before it.
char* Cchantier::chemins_CHT = nullptr;
int (*Cchantier::cht_charge)(const char*) = nullptr;
CStringArray Cchantier::m_ChtIVAR;
CStringArray Cchantier::m_ChtIVAROK;
char Cchantier::last_dir_cht[260] = "";
char Cchantier::last_service[260] = "";

namespace {

std::string lastOpenedPath;
std::string lineBuffer;

std::string_view textOf(const char* text) {
    return text != nullptr ? text : "";
}

}  // namespace

Cchantier chtdef;

namespace {

/// What the frame asks of the default project.
constexpr kestra::ProjectHooks defaultProject = {
    [] { return chtdef.m_cheminCht.GetString(); },
    [] { return chtdef.m_titre.GetString(); },
    [] { return chtdef.m_fichiers.GetString(); },
    [] { return static_cast<long>(chtdef.m_bDwg); },
    &Cchantier::chemins_CHT,
};
[[maybe_unused]] const bool registered = (kestra::setProjectHooks(defaultProject), true);

}  // namespace

Cchantier::Cchantier() {
    _Init_cht();
}

Cchantier::~Cchantier() {
    Close();
}

void Cchantier::_Init_cht() {
    m_spareA = m_spareB = m_spareC = 0;
    const std::string_view extension = textOf(DOS::Dwg_Dxf);
    m_bDwg = extension.size() > 2 && extension[2] == 'X' ? 0 : 1;
    std::strcpy(last_service, "$$$");
    std::strcpy(last_dir_cht, "_$$$");
    DOS::Alloc_ini(&chemins_CHT, "General", "LR", "DirCht", nullptr);
}

const char* Cchantier::Open(const char* name) {
    Close();
    const std::size_t length = textOf(name).size();
    char path[DOS::pathSize];
    if (length < 2 || length >= sizeof path) return nullptr;
    std::memcpy(path, name, length + 1);
    const std::string asked = ReplaceStdDir(path, "R", sizeof path);
    // Kept: the cut is at the last dot, even one in a folder's name; callers pass no such paths.
    const std::string file = asked.substr(0, asked.rfind('.')) + ".cht";
    char found[DOS::pathSize];
    // Where case counts (POSIX paths) a file may bear the upper-case extension that `Create` gives.
    if (DOS::Localise_fichier(found, file.c_str(), chemins_CHT, 0) == nullptr &&
        (!platform::equalNoCase1252(asked, file) ||
         DOS::Localise_fichier(found, asked.c_str(), chemins_CHT, 0) == nullptr))
        return nullptr;
    if (!kestra::ChangeFile::settle(found)) return nullptr;
    m_fp = platform::Stream::open(found, platform::OpenMode::update);
    if (m_fp == nullptr) return nullptr;
    lastOpenedPath = found;
    return lastOpenedPath.c_str();
}

const char* Cchantier::Open() {
    if (!isOpen()) return Open(m_cheminCht);
    m_fp->seek(0);
    return m_cheminCht;
}

void Cchantier::Close() {
    if (m_fp != nullptr) m_fp->close();
    m_fp.reset();
}

int Cchantier::Lisligne(char*& line) {
    int pieces = 0;
    std::string_view text;
    if (isOpen()) {
        kestra::LineReader reader(*m_fp, lineBuffer);
        pieces = reader.next(text);
        if (text.data() != lineBuffer.data()) lineBuffer.assign(text);
    } else {
        lineBuffer.clear();
    }
    line = lineBuffer.data();
    return pieces;
}

long Cchantier::Findvar(char*& line, const char* section, const char* name) {
    const bool wasOpen = isOpen();
    std::int64_t offset = -1;
    lineBuffer.clear();
    if (wasOpen || Open(m_cheminCht) != nullptr) {
        kestra::LineReader reader(*m_fp, lineBuffer);
        std::string_view text;
        if (kestra::findLine(reader, kestra::LineFilter(textOf(section), textOf(name)), text, m_ChtIVAR) &&
            reader.lineStart() <= INT32_MAX)
            offset = reader.lineStart();
        if (offset < 0) text = {};
        if (text.data() != lineBuffer.data()) lineBuffer.assign(text);
    }
    if (!wasOpen) Close();
    line = lineBuffer.data();
    return static_cast<long>(offset);
}

int ChtdefGetVar(const char* section, const char* name, int maxFields, CStringArray& out) {
    return chtdef.Getvar(section, name, maxFields, out);
}
