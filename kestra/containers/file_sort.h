#pragma once
#include <cstdint>
#include <functional>
#include <string_view>

#include <platform/export.h>

/// Sorts the lines of a text file in place; the previous content is kept under the backup name.
///
/// What differs from what a reader may expect:
/// - Lines end at line feeds; a carriage return belongs to its line. Lines of one or two characters are
///   dropped, the carriage return counted. Every line written ends in a single line feed.
/// - Lines are ordered as texts of unsigned 8-bit codes up to their first NUL byte; what follows a NUL stays
///   with its line and is written with it.
/// - The backup is the file ".bak" of the current folder, whatever the file is called; an older one is
///   replaced.
///
/// At any moment the previous content is there in full, under the file's own name or the backup's: the sorted
/// lines are written to a file beside it, under a name that no other file has, which takes the file's name
/// and identity when it is complete. When that is not possible, or no backup can be made, the file stays as
/// it was. The one file without a backup is the file ".bak" of the current folder itself. Of a symbolic link
/// the file that it leads to is sorted.

/// `mode` 0 or 1: lines; 2: lines, duplicates dropped whatever `unique` says; 3 and above: records of `mode`
/// bytes, for which nothing is done and 0 returned; negative: the same in descending order. `unique` not 0
/// drops lines equal to an earlier one and reports each on the standard output.
///
/// Returns the number of lines kept; below 2 nothing is written. A file that is missing, cannot be read or is
/// shorter than 5 bytes is shown to the user and gives 1. A file that cannot be written is not reported.
KESTRA_API int tri_de_fichier(const char* file, int mode, int unique);

namespace kestra {

/// The same for callers that say themselves what happened.
struct LineSort {
    const char* file = nullptr;
    bool descending = false;
    bool unique = false;
    /// Called for each duplicate dropped, in file order; the line without its line feed. May be empty.
    std::function<void(std::string_view line)> eliminated;
    /// Called now and then with the part done, 0 to 100. May be empty.
    std::function<void(int percent)> progress;
};

enum class LineSortOutcome {
    sorted,
    nothingToSort,   ///< fewer than two lines kept: the file is left as it is
    missingOrEmpty,  ///< missing, or shorter than 5 bytes
    unreadable,      ///< reading failed or there is not enough memory
    notWritten,      ///< the sorted lines could not be put in place: the file is as it was
};

struct LineSortResult {
    LineSortOutcome outcome;
    std::int64_t kept;
    std::int64_t eliminated;
};

KESTRA_API LineSortResult sortLines(const LineSort& request);

}  // namespace kestra
