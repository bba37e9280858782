#pragma once
#include <functional>
#include <string>

#include "command.h"
#include "table_rows.h"

/// The forms in which `kestra table` shows a table. Each takes the rows as they come; `onRow` is called with
/// the number of rows that are done.
using RowDone = std::function<void(std::int64_t row)>;

/// Columns in line, measured over the first rows; a line break in a value becomes a blank.
void writeColumns(TableRows& rows, Terminal& terminal, const RowDone& onRow);
/// Values joined by ';', one record a line, the names first; values that hold a ';', a quote or a line break
/// stand in quotes, doubled inside.
void writeCsv(TableRows& rows, Terminal& terminal, const RowDone& onRow);
/// The paged listing of <kestra/controls/listing.h> in a UTF-8 file, put in place when it is whole. False,
/// and a file that was there stays, when it cannot be written.
bool writeHtml(TableRows& rows, const std::string& title, const std::string& file, const RowDone& onRow);
