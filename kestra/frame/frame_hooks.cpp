#include "frame_hooks.h"

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

void setTemporaryDatabase(TextFunction path) {
    database = path;
}

const char* temporaryDatabase() {
    return database != nullptr ? database() : "";
}

}  // namespace kestra
