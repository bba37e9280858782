#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <kestra/project/chantier.h>
#include <kestra/project/places/services_file.h>
#include <platform/cp1252.h>
#include <platform/prompt.h>
#include <platform/stream.h>

namespace {

constexpr std::string_view extension = ".CHT";

std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

/// The services file in force and the letter of its folder; null, after a message, when there is none.
std::shared_ptr<platform::Stream> openServices(char& letter) {
    const std::string local = standardFolder('L'), network = standardFolder('R');
    letter = 'L';
    if (auto file = platform::Stream::open((local + "ini\\services.ini").c_str(), platform::OpenMode::read))
        return file;
    letter = 'R';
    if (auto file = platform::Stream::open((network + "ini\\services.def").c_str(), platform::OpenMode::read))
        return file;
    AfxMessageBox(
        ("**** VOUS devez Creer un fichier 'SERVICES.INI' en " + local + " ou 'SERVICES.DEF' en " + network)
            .c_str(),
        platform::iconExclamation);
    return nullptr;
}

/// Last component of a folder that ends in a separator, cut off it with that separator.
std::string takeLastFolder(std::string& folder) {
    if (!folder.empty()) folder.pop_back();
    const std::size_t start = folder.find_last_of("\\/:") + 1;
    std::string last = folder.substr(start);
    folder.resize(start);
    return last;
}

/// A code in the place of a folder gives way to its folder.
void resolveService(CString& service) {
    char folder[DOS::pathSize];
    if (service.Find('\\') < 0 && Cchantier::Serv_dir(GetAffaire(service), folder) > 0) service = folder;
}

int give(char* out, std::size_t size, const std::string& text) {
    const std::size_t length = std::min(text.size(), size - 1);
    if (out != nullptr) {
        std::memcpy(out, text.data(), length);
        out[length] = '\0';
    }
    return static_cast<int>(length);
}

std::string driveAndFolder(const char* path) {
    return DOS::GetPName(path, "UR");
}

}  // namespace

int Cchantier::Serv_dir(const char* code, char* folder) {
    if (folder != nullptr) *folder = '\0';
    char letter = 'L';
    const auto services = openServices(letter);
    if (services == nullptr) return -1;
    std::string found;
    if (folder == nullptr ||
        !kestra::findServiceFolder(*services, kestra::normalizedServiceCode(textOf(code)), found) ||
        found.size() >= static_cast<std::size_t>(DOS::pathSize))
        return 0;
    give(folder, DOS::pathSize, found);
    directory(ReplaceStdDir(folder, letter, DOS::pathSize), 1);
    return static_cast<int>(std::strlen(folder));
}

int Cchantier::Dir_serv(const char* project, char* code) {
    const std::string path = textOf(project);
    // Kept: the remembered pair is reset below before it is ever used again; only its resets are relied on.
    if (path == last_dir_cht) return give(code, sizeof last_service, last_service);
    last_service[0] = '\0';
    give(last_dir_cht, sizeof last_dir_cht, path);
    if (code != nullptr) *code = '\0';
    const std::string own = driveAndFolder(path.c_str());
    std::string folder = platform::upperCased1252(own);
    for (int tries = 0; tries < 2; ++tries) {
        std::string candidate = takeLastFolder(folder);
        if (candidate.starts_with("ACAD")) candidate.erase(0, 4);
        if (candidate.empty()) return 0;
        const Cchantier resets;
        char place[DOS::pathSize];
        if (Serv_dir(candidate.c_str(), place) > 0 &&
            platform::equalNoCase1252(driveAndFolder((std::string(place) + "$$$").c_str()), own)) {
            give(last_service, sizeof last_service, candidate);
            return give(code, sizeof last_service, candidate);
        }
    }
    return 0;
}

CString GetAffaire(const char* code) {
    const std::string text = textOf(code);
    const std::size_t end = text.find_first_of("-/");
    return CString(end == 0 ? text : text.substr(0, end));
}

int Cchantier::GetPathCht(CString& service, CString& name) {
    if (service.IsEmpty()) return 0;
    resolveService(service);
    if (name.Find(':') < 0) {
        name = service + name;
        name.Replace('/', '\\');
        // Kept: a share's leading "\\" becomes one too; services lie on drives.
        name.Replace("\\\\", "\\");
    }
    if (name.Right(4).Find('.') < 0) name += extension;
    return name.GetLength();
}

int Cchantier::GetNomCourtCht(CString& service, CString& path) {
    if (!service.IsEmpty()) resolveService(service);
    if (platform::equalNoCase1252(path.Left(service.GetLength()).view(), service.view()))
        path = path.Mid(service.GetLength());
    if (platform::equalNoCase1252(path.Right(4).view(), extension)) path = path.Left(path.GetLength() - 4);
    return path.GetLength();
}

int Cchantier::Maj_DirService() {
    if (m_cheminCht.GetLength() < 2) return 0;
    if (platform::theFiles().kind(m_cheminCht) == platform::FileKind::file) return 1;
    std::string folder = driveAndFolder(m_cheminCht);
    const std::string file = DOS::GetPName(m_cheminCht, "NE");
    if (folder.size() < 3) return 0;
    if (platform::theFiles().kind(folder.c_str()) == platform::FileKind::folder) return 1;
    const std::string service = takeLastFolder(folder);
    char place[DOS::pathSize];
    if (service.size() < 3 || Serv_dir(service.c_str(), place) <= 0) return 0;
    const std::string corrected = place + file;
    if (platform::theFiles().kind(corrected.c_str()) != platform::FileKind::file) return 0;
    m_cheminCht = corrected.c_str();
    Maj_DirCht();
    return 2;
}
