#include "module.h"

#include <cstring>
#include <string>

#include <kestra/frame/frame_hooks.h>
#include <platform/application.h>
#include <platform/cp1252.h>
#include <platform/machine.h>
#include <platform/process_hooks.h>
#include <platform/prompt.h>

namespace {

constexpr int defaultSize = 1000;
constexpr int noRegistration = -100;
constexpr int loadFailure = 32;

long computerName(char* out, int size) {
    const std::string name = platform::theMachine().computerName();
    if (name.size() >= static_cast<std::size_t>(size)) return static_cast<long>(name.size()) + 1;
    if (out != nullptr) std::strcpy(out, name.c_str());
    return static_cast<long>(name.size());
}

// Kept: texts of the project are copied whole, whatever size the caller gives.
long copyWhole(const char* text, char* out) {
    if (out != nullptr) std::strcpy(out, text);
    return static_cast<long>(std::strlen(text));
}

}  // namespace

long getsVar(const char* key, char* out, int size) {
    if (key == nullptr) return 0;
    const auto is = [key](const char* name) { return platform::equalNoCase1252(key, name); };
    if (is("NOMPOSTE")) return computerName(out, size < 1 ? defaultSize : size);
    const kestra::ProjectHooks* project = kestra::projectHooks();
    if (project == nullptr) return 0;
    if (is("FICHREM")) return copyWhole(project->remarksFile(), out);
    if (is("CHTTITRE")) return copyWhole(project->title(), out);
    if (is("CHTNOM")) return copyWhole(project->fileName(), out);
    return is("CHTMODEDWG") ? project->drawingMode() : 0;
}

int regocx(const char* file) {
    const std::uintptr_t library = platform::loadLibrary(file);
    // Kept: results below 32 are failures, as the old handles had it, not only null.
    if (library < loadFailure) {
        const std::string message =
            std::string("Probleme de chargement du fichier : ") + (file != nullptr ? file : "");
        AfxMessageBox(message.c_str());
        return loadFailure;
    }
    const platform::PlainFunction registerServer = platform::libraryFunction(library, "DllRegisterServer");
    if (registerServer == nullptr) return noRegistration;
    registerServer();
    return 0;
}

AFX_MODULE_STATE* KestraModuleState() {
    return AfxGetStaticModuleState();
}
