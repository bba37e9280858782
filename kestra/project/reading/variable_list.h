#pragma once
#include <functional>

#include <kestra/project/chantier.h>

/// One variable line of a project.
struct ProjectVariable {
    CString section;      ///< as it stands in the file ("$VARCHT")
    CString name;         ///< as it stands in the file
    CStringArray values;  ///< fields 2 and beyond, as `Cchantier::Getvar` returns them
    CString file;         ///< resolved path of the file the line stands in
    bool included;        ///< the file is an include
};

/// Calls `visit` for each variable line of a project and then of its includes, for listings: same files, same
/// order, same texts as `Cchantier::Getvar`, deleted lines left out. The record lives during the call only.
/// `visit` answers whether to go on, and must not read projects itself. Returns the number of lines visited;
/// -1 when the project cannot be opened. The project's stream is closed in the end.
KESTRA_API int VisitVariables(Cchantier& project, const std::function<bool(const ProjectVariable&)>& visit);

/// Calls `visit` with each line that `Cchantier::Getvar` finds, as the fields that it returns (section, name,
/// values) but for the mark "**" of an include's name, and whether the line is of an include. Returns the
/// number of lines; -1 when the project cannot be opened or nothing is asked for.
KESTRA_API int VisitFoundLines(Cchantier& project, const char* section, const char* name,
                               const std::function<void(const CStringArray& fields, bool included)>& visit);
