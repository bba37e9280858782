#pragma once
#include <string_view>

#include <platform/ado/ado.h>
#include <platform/export.h>
#include <platform/prompt.h>

/// The questions of this room to the user. The dialogs room, which knows windows, puts its dialogs in force
/// when it is loaded; without it they go to the prompt in force.
namespace kestra {

/// Both answer false when the user gave up.
struct DatabaseDialogs {
    bool (*chooseFile)(platform::FileQuestion& question);
    bool (*chooseTable)(platform::ListQuestion& question);
};
KESTRA_API const DatabaseDialogs& databaseDialogs();
/// Puts dialogs in force, which must outlive their use; null puts the prompt back. Returns the ones before,
/// null for the prompt.
KESTRA_API const DatabaseDialogs* replaceDatabaseDialogs(const DatabaseDialogs* dialogs);

/// The choice of a table or query of a database, with the tables listed and the first one selected. Filling
/// it reports failures (`Database::Erreur`) and keeps what was read before. The connection must outlive it.
KESTRA_API platform::ListQuestion tableQuestion(const _ConnectionPtr& connection);
/// Selects an entry without regard to case; where there is none the first one, where the list is empty none.
KESTRA_API void selectEntry(platform::ListQuestion& question, std::string_view entry);

}  // namespace kestra
