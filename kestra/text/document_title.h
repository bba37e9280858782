#pragma once
#include <platform/export.h>

/// The readable title of a file: the summary properties that the system keeps beside it. On Windows these are
/// an OLE property set (any file on NTFS, compound files elsewhere), on other systems extended attributes
/// where the file system has them (ext4 keeps about 4000 bytes of them a file, others more; a copy over FAT
/// loses them). Texts are Windows-1252. Results are HRESULTs of the last step: negative is
/// a failure, which leaves everything as it was.
extern "C" {

/// Gives title, subject, comments and author, in this order, null for one that the file does not have. The
/// caller frees them with the COM task allocator on Windows and with `free` elsewhere
/// (`platform::freePropertyText` is the right one on both). On failure `values` is untouched; a file without
/// properties is a failure.
KESTRA_API int GetTitreNTFS(const char* path, char* values[4]);

/// Sets title, subject and comments, each unless it is null, and the computer's name as the author. Nothing
/// is written when the file has these texts and that author already.
KESTRA_API int SetTitreNTFS(const char* path, const char* title, const char* subject, const char* comments);
}
