#pragma once
#include <platform/export.h>

/// Settings files.
///
/// A setting is addressed by a source, a section, a lookup mode and a key.
/// - The source names a settings file: source `x` is the file `ini\x.ini` below a folder.
/// - Each letter of the lookup mode, in either case, names a folder; they are tried in order and the first
///   whose file holds the key, be it with an empty value, answers: L the local folder and N or R the network
///   folder of `pvg`, P the folder of the running program. Other letters name nothing and are passed over.
/// - Sections and keys are compared without regard to case (Windows-1252); blanks around them do not count.
///
/// File format: lines ended by LF or CR LF; `[section]`; `key=value`; blanks (space, tab, CR) around section,
/// key and value do not count; a line that begins with ';' is a comment; a key may stand in several lines,
/// which makes it multi-valued. A section that stands twice counts as one; lines before the first section
/// belong to none. A UTF-8 byte order mark at the start is passed over. Anything else is ignored. A NUL byte
/// ends its line. Files above 64 MiB are not read.
///
/// Each call reads the files anew: what another program wrote is seen at once. No operation throws. A null
/// source, section or mode finds nothing.

/// Reads a number: decimal point or comma, exponent allowed, whatever the process's locale is; what follows
/// the number does not matter. 1 when one was read, 0 when the key is missing or its (first) value does not
/// begin with a number that a double can hold (`value` is then untouched).
DORSEL_API int getr_ini(const char* source, const char* section, const char* mode, const char* key,
                        double* value);

/// Reads a text of at most `size` - 1 characters (a longer one is cut) and ends it with NUL; returns its
/// length. 0 when there is none: `out` is then the empty text. Several values of one key come joined by ';'.
/// Without a key (null or empty) `out` receives the section's keys, each once, in file order, joined by ';',
/// of the first file whose section has any. With a `size` below 1 or without `out` nothing is written.
DORSEL_API int gets_ini(const char* source, const char* section, const char* mode, const char* key, char* out,
                        int size);

/// Writes one value. The file changed is the first of the mode's folders whose file already holds the key,
/// else the first whose file exists, else a new one in the mode's first folder (made when missing). A
/// multi-valued key keeps the one value, in the place of its first. A new key goes to the end of its section,
/// a new section to the end of the file. Every other line stays byte for byte as it was; new lines end as the
/// file's first line does, by CR LF in a new file. CR, LF and NUL in `value` end it. A null value removes the
/// key.
///
/// The file is put in place in one step. Of two programs that write it at the same moment the later one wins.
/// Returns 1 when the setting is as asked (removing a key that is nowhere included). Returns 0, with every
/// file as it was, when it could not be written; when a file on the way is there but cannot be read, since it
/// might hold the key; and for a section or a key that could not be read back (a ']' in the section, a '=' in
/// the key, a key that begins with ';' or '[', a line end in either).
DORSEL_API int sets_ini(const char* source, const char* section, const char* mode, const char* key,
                        const char* value);

namespace DOS {

/// `gets_ini` and `getr_ini` under their long names; `file` may also be a path ending in ".ini" (in either
/// case), which is then read as it stands whatever the mode is, null included.
DORSEL_API long Gets_ini(const char* file, const char* section, const char* mode, const char* key, char* out,
                         int size);
DORSEL_API long Getr_ini(const char* file, const char* section, const char* mode, const char* key,
                         double* value);

/// Reads a multi-value setting into a newly allocated list: one NUL-terminated text, the values joined by ';'
/// (values that hold several folders already are taken apart and their blanks dropped, empty ones left out).
/// A list held before in `*list` is freed: the pointer must be null or hold a list. Source: "torel" when
/// `source` is null. Returns the list, also stored in `*list`; an empty text when the key is missing; null
/// when `list` is null. To be freed with `Free_ini`.
DORSEL_API char* Alloc_ini(char** list, const char* section, const char* mode, const char* key,
                           const char* source);

/// Frees a list made by `Alloc_ini` and clears the pointer; nothing happens for a null pointer or an empty
/// one.
DORSEL_API void Free_ini(char** list);

}  // namespace DOS
