#include <algorithm>
#include <string>
#include <string_view>

#include <dorsel/paths.h>
#include <kestra/project/chantier.h>
#include <kestra/project/places/relative_paths.h>
#include <platform/cp1252.h>
#include <platform/files.h>
#include <platform/prompt.h>

namespace {

/// The words that begin a line for the program that runs models.
constexpr std::string_view modelCommands =
    "PRJ;PRJINIT;PRJDEL;VAINIT;VADEL;VCINIT;VCDEL;VARMOD;VCCOPY;CHTLOAD;VAR;";
constexpr std::size_t longestPhysical = 5998;
constexpr std::size_t longestLooked = 210;

/// Reads physical lines without their line ends and leading blanks.
class ModelLines {
  public:
    explicit ModelLines(platform::Stream& stream) : m_stream(stream) {}

    bool next(std::string& line) {
        line.clear();
        std::string_view bytes = m_stream.available(longestPhysical);
        if (bytes.empty()) return false;
        bytes = bytes.substr(0, std::min(bytes.find('\n'), longestPhysical - 1) + 1);
        line = bytes.substr(0, bytes.find('\0'));
        m_stream.skip(bytes.size());
        line.resize(line.find_last_not_of("\r\n") + 1);
        line.erase(0, std::min(line.find_first_not_of(" \t\r\n"), line.size()));
        return true;
    }

  private:
    platform::Stream& m_stream;
};

bool isModelCommand(std::string_view word) {
    // Kept: any end of a command's name counts as that command ("AR" as VAR); models are written with that in
    // mind.
    return modelCommands.find(platform::upperCased1252(word) + ';') != modelCommands.npos;
}

/// Whether the first physical line of a logical one is for the new project too.
bool isForProject(std::string_view line) {
    if (line.empty() || line[0] == '\'') return true;
    const std::string_view looked = line.substr(0, longestLooked);
    const std::string_view word = looked.substr(0, looked.find(';'));
    if (word.size() < 2 || word[1] == '.') return false;
    if (word[0] == '#') return true;
    return word[0] == '$' ? word[1] == '$' : !isModelCommand(word);
}

bool goesOn(const std::string& line) {
    const std::size_t last = line.find_last_not_of(" \t");
    return last != line.npos && line[last] == '+';
}

/// The text of a project made from the model, and the number of its lines.
std::string projectFrom(platform::Stream& model, int& lines) {
    std::string text, line;
    bool copied = false, continued = false;
    for (ModelLines reader(model); reader.next(line);) {
        if (!continued) copied = isForProject(line);
        const bool drops = !continued && line.starts_with("$$");
        continued = goesOn(line);
        if (!copied) continue;
        text.append(line, drops ? 1 : 0).append("\r\n");
        ++lines;
    }
    return text;
}

bool createProject(const std::string& path, const std::string& text) {
    if (platform::createWholeFile(path.c_str(), text)) return true;
    const std::string folder = kestra::folderOf(path.c_str());
    if (DOS::CreateDir(folder.c_str(), 4) != 0 && platform::createWholeFile(path.c_str(), text)) return true;
    CString message;
    message.Format("Impossible de créer le fichier :%s ; Vérifiez l'existance du disque ou du directory %s ",
                   path.c_str(), folder.c_str());
    AfxMessageBox(message, platform::iconExclamation);
    return false;
}

}  // namespace

int Cchantier::Create(const char* newName, const char* modelName) {
    Cchantier model(modelName);
    if (model.Open() == nullptr) return 0;
    std::string path = newName != nullptr ? newName : "";
    // Kept: the cut is at the first dot, even one in a folder's name; callers pass no such paths.
    path = path.substr(0, path.find('.')) + ".CHT";
    if (platform::theFiles().open(path.c_str(), platform::OpenMode::read) != nullptr) return 0;
    int lines = 0;
    const std::string text = projectFrom(*model.m_fp, lines);
    if (model.m_fp->failed() || !createProject(path, text)) return 0;
    Set(path.c_str(), 0);
    return lines;
}
