#include <kestra/database/database.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <dorsel/settings.h>
#include <dorsel/strings.h>
#include <dorsel/trace.h>
#include <kestra/database/connection_text.h>
#include <kestra/database/questions.h>
#include <kestra/database/result_text.h>
#include <kestra/frame/frame_hooks.h>
#include <kestra/project/chantier.h>
#include <platform/cp1252.h>
#include <platform/files.h>
#include <platform/machine.h>

int Database::debug = 0;
MyError Database::m_LastError;
CString& Database::m_TempDatabase = *new CString;

namespace {

[[maybe_unused]] const bool registered =
    (kestra::setTemporaryDatabase([] { return Database::m_TempDatabase.GetString(); }),
     ado20::replaceTraceLine([](const char* line) { mprintf("%s", line); }), true);

constexpr std::size_t shortestPattern = 3;
constexpr const char* anyDatabase = "*.mdb";
constexpr const char* databaseFolder = "ACCESS";
constexpr const char* dataLinkExtension = ".UDL";

constexpr const char* builtInFilter =
    "Fichiers Microsoft(.mdb,.xls,.dbf)|*.mdb;*.XLS;*.MDB|Autre Base de Données (.UDL)|*.UDL|Tous|*.*||";
/// OFN_EXPLORER | OFN_OVERWRITEPROMPT
constexpr unsigned fileDialogStyle = 0x80002;
/// Kept: a name without extension is replaced by this one in the dialog; users start typing over it.
constexpr const char* nameWithoutExtension = "MDB";

// Kept: databases are made with the older provider, though they are opened with the newer one.
constexpr const char* creationPattern = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=%s;";

constexpr int askBeforeMaking = 1;

std::string partOf(const std::string& path, const char* parts) {
    return DOS::GetPName(path.c_str(), parts);
}

bool exists(const std::string& path) {
    return platform::theFiles().kind(path.c_str()) == platform::FileKind::file;
}

/// Finds the first file of a pattern beside the project; false, with the pattern as it was, when there is
/// none.
bool locate(std::string& pattern) {
    const char* project = DOS::m_NomChtDef[0] != '\0' ? DOS::m_NomChtDef : chtdef.m_cheminCht.GetString();
    const std::string folder = partOf(project, "UR") + databaseFolder;
    std::array<char, DOS::pathSize> found{};
    const char* answer = DOS::Localise_fichier(found.data(), pattern.c_str(), folder.c_str(), 1);
    const bool isFound = answer != nullptr && std::string_view(answer).size() >= shortestPattern;
    if (isFound) pattern = answer;
    return isFound;
}

platform::FileQuestion fileQuestion(const std::string& pattern) {
    platform::FileQuestion question;
    const std::string extension = partOf(pattern, "E");
    question.path = extension.empty() ? nameWithoutExtension : pattern;
    if (!extension.empty()) question.extension = extension.substr(1);
    std::array<char, 5000> filter{};
    const long length = DOS::Gets_ini("TOREL", "DATABASE64", "LR", "TYPEFICH", filter.data(),
                                      static_cast<int>(filter.size()));
    question.filter = length > 2 ? filter.data() : builtInFilter;
    question.style = fileDialogStyle;
    return question;
}

/// The path in upper case, or as it is where its case matters.
std::string chosenPath(const std::string& path) {
    std::string upper = platform::upperCased1252(path);
    return !exists(upper) && exists(path) ? path : upper;
}

/// 32-bit integer, cut towards zero; the nearest one for numbers beyond.
int integerOf(double number) {
    if (std::isnan(number)) return 0;
    constexpr double lowest = std::numeric_limits<int>::min(), highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(std::max(number, lowest), highest));
}

std::string temporaryPath() {
    std::array<char, 64> path{};
    std::snprintf(path.data(), path.size(), "C:\\TEMP\\~%04lxTempDb.Mdb",
                  platform::theMachine().processId() & 0xFFFFFFFFul);
    return path.data();
}

/// Closes what may not be open.
void closeQuietly(const _ConnectionPtr& connection) noexcept {
    try {
        if (connection) connection->Close();
    } catch (...) {  // NOLINT(bugprone-empty-catch): what made it fail was reported before
    }
}

}  // namespace

void MyError::SetError(const _com_error& error) {
    m_Code = error.Error();
    m_Description = std::string_view(error.Description());
}

Database::Database() {
    double number = 0;
    if (DOS::Getr_ini("TOREL", "DATABASE", "LR", "DEBUG", &number) > 0) debug = integerOf(number);
}

const char* Database::GetConnectString(const char* pattern, int flags) try {
    std::string file = pattern != nullptr ? pattern : "";
    m_Path.Empty();
    kestra::databaseText().clear();
    if (file.size() < shortestPattern) file = anyDatabase;
    const bool isFound = locate(file);
    if ((flags & askAlways) != 0 || ((flags & askWhenMissing) != 0 && !isFound)) askForFile(file);
    m_Path = std::string_view(file);
    std::string connection = kestra::connectionPattern(partOf(file, "E"));
    if ((flags & readOnly) != 0) connection = kestra::readOnlyPattern(std::move(connection));
    return kestra::keepDatabaseText(kestra::connectionText(connection, file));
} catch (...) {
    Erreur(kestra::failureInFlight(), "GetConnectString");
    return "";
}

void Database::askForFile(std::string& file) {
    platform::FileQuestion question = fileQuestion(file);
    if (!kestra::databaseDialogs().chooseFile(question)) return;
    file = chosenPath(question.path);
    kestra::keepDatabaseText(file);
    const std::string link = partOf(file, "URN");
    if (!exists(file) && EditUdl(link.c_str(), askBeforeMaking) != 0) file = link + dataLinkExtension;
}

_ConnectionPtr Database::OpenDB(const char* pattern, int flags, CursorLocationEnum location) {
    const std::string asked = pattern != nullptr ? pattern : "";
    const ado20::ComApartment apartment;
    _ConnectionPtr connection;
    try {
        try {
            connection = ado20::createConnection();
        } catch (const _com_error&) {  // NOLINT(bugprone-empty-catch): the null pointer says so below
        }
        const std::string text = GetConnectString(asked.c_str(), flags);
        if (debug != 0) mprintf("\nGetConnectString()=%s", text.c_str());
        connection->PutCursorLocation(location);
        connection->Open(text);
        if (debug != 0) mprintf("\npConn->Open()=%x", static_cast<unsigned>(connection->GetHandle()));
        return connection;
    } catch (...) {
        Erreur(kestra::failureInFlight(), ("Impossible d'ouvrir le Fichier :'" + asked + "'").c_str());
        closeQuietly(connection);
        return nullptr;
    }
}

const char* Database::CreateDatabase(const char* path) {
    std::string target;
    const ado20::ComApartment apartment;
    try {
        target = path != nullptr ? path : temporaryPath();
        if (path == nullptr) m_TempDatabase = std::string_view(target);
        DOS::Delete(target.c_str());
        ado20::createCatalog()->Create(kestra::connectionText(creationPattern, target));
        return kestra::keepDatabaseText(target);
    } catch (...) {
        Erreur(kestra::failureInFlight(), ("Impossible de creer le Fichier:'" + target + "' ").c_str());
        return kestra::keepDatabaseText("");
    }
}

int Database::EditUdl(const char* path, int flags) try {
    std::string file = path != nullptr && *path != '\0' ? path : m_Path.GetString();
    if (file.empty()) return 0;
    if (partOf(file, "E").empty()) file += dataLinkExtension;
    if (!platform::equalNoCase1252(partOf(file, "E"), dataLinkExtension)) return 0;
    if (!exists(file) && !makeDataLink(file, flags)) return 0;
    platform::theMachine().editDocument(file.c_str());
    return 1;
} catch (...) {
    Erreur(kestra::failureInFlight(), "EditUdl");
    return 0;
}

bool Database::makeDataLink(const std::string& file, int flags) {
    const std::string question = "** Voulez-vous CREER le Fichier : '" + file + "' **";
    constexpr unsigned style = platform::styleYesNo | platform::iconExclamation | platform::secondIsDefault;
    if ((flags & askBeforeMaking) != 0 && AfxMessageBox(question.c_str(), style) != platform::answerYes)
        return false;
    if (platform::theFiles().open(file.c_str(), platform::OpenMode::createNew) == nullptr) return false;
    m_Path = std::string_view(file);
    return true;
}

long Database::SelectTable(CString& table, _ConnectionPtr connection, int flags) try {
    constexpr int startOnTable = 1;
    platform::ListQuestion question = kestra::tableQuestion(connection);
    if ((flags & startOnTable) != 0) kestra::selectEntry(question, table.view());
    const bool isChosen = kestra::databaseDialogs().chooseTable(question);
    const auto chosen = static_cast<std::size_t>(question.selected);
    if (!isChosen || question.selected < 0 || chosen >= question.entries.size()) return -1;
    table = std::string_view(question.entries[chosen]);
    return 0;
} catch (...) {
    Erreur(kestra::failureInFlight(), "SelectTable");
    return -1;
}

int Database::Erreur(const char* message, const char* where) {
    mprintf("\n***Erreur %s:%s", where != nullptr ? where : "", message != nullptr ? message : "");
    return -1;
}

int Database::Erreur(const _com_error& error, const char* where) {
    m_LastError.SetError(error);
    mprintf("\n***Erreur %s:%s", where != nullptr ? where : "", error.Description().c_str());
    return -4;
}
