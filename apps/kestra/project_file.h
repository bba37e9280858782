#pragma once
#include <string>

#include <kestra/project/chantier.h>

#include "command.h"

/// What the project commands share.

/// A project named on the command line: beside the current folder or in its own, with or without its
/// extension, else along the settings' list of folders.
std::string projectPath(const std::string& named);
/// A section tag as it stands in the file: its "$" may be left out, which a shell would take for its own.
std::string sectionTag(const std::string& named);

/// Says why a project command failed; returns `exitFailed`.
int failProject(const Command& command, const std::string& project, std::string_view why, Terminal& terminal);
extern const std::string_view cannotOpen;
extern const std::string_view cannotWrite;

extern const Command projectShow, projectGet;
extern const Command projectSet, projectDelete, projectRename, projectCompact;
extern const Command projectCreate, projectMove;
