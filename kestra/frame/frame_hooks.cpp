#include "frame_hooks.h"

#include <utility>

namespace kestra {
namespace {

constinit const ProjectHooks* project = nullptr;
constinit TextFunction database = nullptr;

}  // namespace

void setProjectHooks(const ProjectHooks& hooks) {
    project = &hooks;
}

const ProjectHooks* projectHooks() {
    return project;
}

TextFunction setTemporaryDatabase(TextFunction path) {
    return std::exchange(database, path);
}

const char* temporaryDatabase() {
    return database != nullptr ? database() : "";
}

}  // namespace kestra
