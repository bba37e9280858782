#pragma once
#include <windows.h>

#include <string>

#include <kestra/database/my_recordset_ptr.h>
#include <kestra/dialogs/dial_projections.h>

/// Converts the points of a table (fields X, Y and, where it is there, Z) as the dialog says; points without
/// coordinates stay. All or none: the first point that cannot be converted or saved puts the others back.
struct PointConversion {
    int converted = 0;
    int failedRow = 0;    ///< counted from 1; 0 when no point failed
    std::string failure;  ///< why the table as a whole could not be converted; empty when it could
    bool done() const { return failedRow == 0 && failure.empty(); }
};
PointConversion convertPoints(const _ConnectionPtr& connection, const char* table, CDialProjections& choice);
