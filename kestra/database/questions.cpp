#include <kestra/database/questions.h>

#include <algorithm>
#include <string>
#include <utility>

#include <kestra/database/my_recordset_ptr.h>
#include <kestra/database/result_text.h>
#include <platform/cp1252.h>

namespace kestra {

namespace {

constexpr DatabaseDialogs promptDialogs = {
    [](platform::FileQuestion& question) { return platform::thePrompt().chooseFile(question); },
    [](platform::ListQuestion& question) { return platform::thePrompt().chooseText(question); },
};
constinit const DatabaseDialogs* dialogsInForce = nullptr;

enum Box : std::size_t { tables, queries };

/// The types of the boxes that are checked, each between blanks.
std::string wantedTypes(const platform::ListQuestion& question) {
    std::string types;
    if (question.boxes[tables].isChecked) types += " TABLE ";
    if (question.boxes[queries].isChecked) types += " VIEW ";
    return types;
}

void addTables(platform::ListQuestion& question, const _ConnectionPtr& connection) {
    const std::string wanted = wantedTypes(question);
    MyRecordsetPtr schema(connection->OpenSchema(ado20::adSchemaTables));
    for (long moved = 0; moved >= 0 && schema.Eof() == 0; moved = schema.MoveNext()) {
        const std::string name = schema.GetStrValue("TABLE_NAME");
        const std::string type = schema.GetStrValue("TABLE_TYPE");
        if (wanted.find(' ' + type + ' ') != std::string::npos) question.entries.push_back(name);
    }
}

void fill(platform::ListQuestion& question, const _ConnectionPtr& connection) {
    const auto index = static_cast<std::size_t>(question.selected);
    const std::string remembered =
        index < question.entries.size() ? std::move(question.entries[index]) : std::string();
    question.entries.clear();
    try {
        addTables(question, connection);
    } catch (...) {
        Database::Erreur(failureInFlight(), nullptr);
    }
    selectEntry(question, remembered);
}

}  // namespace

const DatabaseDialogs& databaseDialogs() {
    return dialogsInForce != nullptr ? *dialogsInForce : promptDialogs;
}

const DatabaseDialogs* replaceDatabaseDialogs(const DatabaseDialogs* dialogs) {
    return std::exchange(dialogsInForce, dialogs);
}

platform::ListQuestion tableQuestion(const _ConnectionPtr& connection) {
    platform::ListQuestion question;
    question.caption = "Choix de Table";
    question.boxes = {{"Tables", true}, {"Requêtes", false}};
    question.refill = [connection](platform::ListQuestion& asked) { fill(asked, connection); };
    question.refill(question);
    return question;
}

void selectEntry(platform::ListQuestion& question, std::string_view entry) {
    const auto found =
        std::find_if(question.entries.begin(), question.entries.end(),
                     [&](const std::string& listed) { return platform::equalNoCase1252(listed, entry); });
    const auto index = found != question.entries.end() ? found - question.entries.begin() : 0;
    question.selected = question.entries.empty() ? -1 : static_cast<int>(index);
}

}  // namespace kestra
