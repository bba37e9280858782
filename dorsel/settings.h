#pragma once
#include <platform/export.h>

/// Settings files.
///
/// A setting is addressed by a source, a section, a lookup mode and a key.
/// - The source names a settings file: source `x` is the file `ini\x.ini` below a folder.
/// - Each letter of the lookup mode, in either case, names a folder; they are tried in order and the first
/// that answers
///   wins: L the local folder and N or R the network folder of `pvg`, P the folder of the running program.
///   Other letters name nothing and are passed over.
/// - Sections and keys are compared without regard to case (Windows-1252).
///
/// File format: lines ended by LF or CR LF; `[section]`; `key=value`; blanks around section, key and value do
/// not count; a line that begins with ';' is a comment; a key may stand in several lines, which makes it
/// multi-valued. A section that stands twice counts as one. A UTF-8 byte order mark at the start is passed
/// over. Anything else is ignored. A NUL byte ends its line. Files above 64 MB are not read.
///
/// No operation throws. A null source, section or mode finds nothing.

/// Reads a number: decimal point or comma, exponent allowed, whatever the process's locale is. 1 when one was
/// read, 0 when the key is missing or its value does not begin with a number (`value` is then untouched).
DORSEL_API int getr_ini(const char* source, const char* section, const char* mode, const char* key,
                        double* value);

/// Reads a text of at most `size` - 1 characters (a longer one is cut) and ends it with NUL; returns its
/// length. 0 when there is none: `out` is then the empty text. Several values of one key come joined by ';'.
/// Without a key (null or empty) `out` receives the section's keys, each once, in file order, joined by ';'.
DORSEL_API int gets_ini(const char* source, const char* section, const char* mode, const char* key, char* out,
                        int size);

/// Writes one value. The file changed is the first of the mode's folders whose file already holds the key,
/// else the first whose file exists, else a new one in the mode's first folder. Every other line stays byte
/// for byte as it was; the file is put in place in one step. CR, LF and NUL in `value` end it. A null value
/// removes the key. Returns 1, or 0 when nothing could be written (the file is then as it was).
DORSEL_API int sets_ini(const char* source, const char* section, const char* mode, const char* key,
                        const char* value);

namespace DOS {

/// `gets_ini` and `getr_ini` under their long names; `file` may also be a path ending in ".ini", which is
/// then read as it stands whatever the mode is.
DORSEL_API long Gets_ini(const char* file, const char* section, const char* mode, const char* key, char* out,
                         int size);
DORSEL_API long Getr_ini(const char* file, const char* section, const char* mode, const char* key,
                         double* value);

/// Reads a multi-value setting into a newly allocated list: one NUL-terminated text, the values joined by ';'
/// (values that hold several folders already are taken apart and their blanks dropped, empty ones left out).
/// A list held before in
/// `*list` is freed. Source: "torel" when `source` is null. Returns the list, also stored in `*list`; an
/// empty text when the key is missing; null when `list` is null. To be freed with `Free_ini`.
DORSEL_API char* Alloc_ini(char** list, const char* section, const char* mode, const char* key,
                           const char* source);

/// Frees a list made by `Alloc_ini` and clears the pointer; nothing happens for a null pointer or an empty
/// one.
DORSEL_API void Free_ini(char** list);

}  // namespace DOS
