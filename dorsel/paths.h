#pragma once
#include <platform/export.h>

/// Paths and files. `\` and `/` both separate; paths are 8-bit Windows-1252 texts, and what they name is
/// described in <platform/files.h>. The split rules hold for drive paths ("D:\a\b.c"), UNC paths
/// ("\\server\share\a", whose drive part is empty), drive roots, dots in folder names (an extension begins at
/// the last dot behind the last separator) and POSIX paths. No operation throws; null texts count as empty.
namespace DOS {

/// Room that path buffers of this library have, terminating NUL included.
constexpr int pathSize = 260;

/// Finds a file. A name with a drive or a leading separator is looked for as it stands; any other first as it
/// stands and then below each folder of `list` (folders joined by ';', null: none), in order. When found, its
/// full path is written to `out` (`pathSize` bytes) and `out` returned; otherwise null, with `out` untouched.
/// A folder is not a file. A full path that does not fit counts as not found. Entries of the list lose their
/// blanks at both ends. `flag` 1: '*' and '?' in the name's last part stand for the first file, in
/// alphabetical order, that it matches without regard to case; 0: they match nothing. `out` may be `file`.
DORSEL_API char* Localise_fichier(char* out, const char* file, const char* list, int flag);

/// Splits a path into drive ("D:"), directory (ending in its separator), name and extension (with its dot).
/// Each output may be null; the others must hold 4 bytes for the drive and `pathSize` for the rest; longer
/// parts are cut. Returns 0 for a path that can name a file; -1 when it is missing or empty, 1 when it is
/// longer than `pathSize` - 1, 2 when it holds a character that no file name may hold (< > " | ? * or a
/// control character, ':' other than behind the drive letter), on both systems. The outputs are filled as far
/// as they go in every case; one of them may be the path's own buffer.
DORSEL_API int Controle_chemin(const char* path, char* drive, char* directory, char* name, char* extension,
                               int flag);

/// Makes a folder and the missing ones above it; non-zero when it is there afterwards. `flag` is 4.
DORSEL_API int CreateDir(const char* path, int flag);

/// Renames a file within its disk; an existing target is replaced in one step when `flag` is 1 and makes it
/// fail otherwise. Non-zero on success.
DORSEL_API int Rename(const char* from, const char* to, int flag);

/// Deletes a file; non-zero on success.
DORSEL_API int Delete(const char* file);

/// Size of a file in bytes; 0 for an empty file, -1 for a missing one or a folder. Sizes above 2147483647
/// give that.
DORSEL_API long Taille_fichier(const char* file);

/// The selected parts of a path, in path order, as a static text valid until the next call: U drive, R
/// directory, N name without extension, E extension with its dot. Letters in either case and any order;
/// others are ignored. A result longer than `pathSize` - 1 is cut.
DORSEL_API const char* GetPName(const char* path, const char* parts);

/// Name of the computer, as a static text.
DORSEL_API const char* ComputerName();

/// Starts a program with its arguments or opens a document with its program, without waiting. Blanks separate
/// the words of the line, double quotes hold them together. Elsewhere than on Windows words that are drive or
/// UNC paths are handed over as POSIX paths, and "explorer" with one word opens it as a document. Non-zero on
/// success.
DORSEL_API int Shell(const char* commandLine, int flag);

/// Opens classic help at a topic. Non-zero on success.
DORSEL_API int Aide(const char* file, const char* topic, int flag);

/// Opens compiled HTML help at a page. Non-zero on success.
DORSEL_API int AideHtml(const char* file, const char* command, int flag);

/// Above 0 on systems of the Windows NT line.
DORSEL_API int WinNT();

}  // namespace DOS

/// Replaces a standard-directory marker at the start of a path by the folder it names, in place: "..L\" by
/// the local folder, "..N\" and "..R\" by the network folder, "..P\" by the program's folder, "~\" by the
/// folder of the letter `mode` ('L', 'N', 'R' or 'P'; the first letter counts). `/` may stand for `\`; case
/// does not matter. Each "..\" directly behind the marker climbs one folder, at most to the root of the drive
/// or the share. A path without marker, a marker whose folder is empty and a result that would not fit in
/// `size` bytes are left as they are. Returns `path`.
DORSEL_API char* ReplaceStdDir(char* path, const char* mode, int size);
DORSEL_API char* ReplaceStdDir(char* path, char mode, int size);

/// With `finish` other than 0, ends a folder text with a `\` (`/` when the text has only `/` as separators)
/// unless it is empty, ends in a separator or already fills a path buffer (`DOS::pathSize` - 1 characters and
/// more); the buffer must have room for one more character. With `finish` 0, cuts a path down to its folder
/// part (drive and directory, ending in its separator). In place; returns `path`.
DORSEL_API char* directory(char* path, int finish);

/// The folder that a lookup letter names (`pvg` for L, N and R, the running program's for P), ending in a
/// separator; empty when there is none. Valid until the next call for the same folder.
DORSEL_API const char* standardFolder(char letter);
