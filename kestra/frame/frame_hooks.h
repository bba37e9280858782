#pragma once

/// What the rooms above hand to the frame, which includes none of them. They register while the library is
/// loaded (static initialisation, in any order), so everything here is ready before any constructor runs.
namespace kestra {

using TextFunction = const char* (*)();

/// The current project. The texts are never null and are copied at once.
struct ProjectHooks {
    TextFunction fileName;
    TextFunction title;
    TextFunction remarksFile;
    long (*drawingMode)();
    char** searchList;  ///< list of `DOS::Alloc_ini`, freed at the last exit
};
/// `hooks` must live as long as the library; it replaces what was registered before.
void setProjectHooks(const ProjectHooks& hooks);
/// Null when no project room is loaded.
const ProjectHooks* projectHooks();

/// Path of the temporary database file, empty for none; asked at the last exit. On exit from the process that
/// is among the destructors of statics: what the function reads must outlive them. Returns what was
/// registered.
TextFunction setTemporaryDatabase(TextFunction path);
/// Empty when nobody registered.
const char* temporaryDatabase();

}  // namespace kestra
