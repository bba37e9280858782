#pragma once
#include <cstdint>

#include <platform/export.h>

/// The module's plain functions, for hosts of any compiler.
///
/// Life of the library, the same on each platform: when it is loaded (attached by the host's imports, by
/// LoadLibrary or by dlopen) its application object (`app.h`) is constructed and initialised; when it is
/// unloaded, or the process ends, the object is left and destroyed. A host does nothing for that. Nothing
/// done at load needs another library to be loaded.
struct HWND__;
struct AFX_MODULE_STATE;

extern "C" {

/// A further initialisation, and the exit that must match it, for a program part that counts on the library
/// by itself: each initialisation reads the projection name again, and only the last exit removes the
/// temporary database and frees the path lists. `KestraInitInstance` returns non-zero, `KestraExitInstance`
/// the framework's exit code.
KESTRA_API int KestraInitInstance();
KESTRA_API int KestraExitInstance();

/// The help dispatcher: arguments and result of Windows' `WinHelpA`, over which it is written while the
/// library is loaded. Where there is no `WinHelpA`, hosts call it themselves.
///
/// - A file whose name does not hold ".CHM", or no file: classic help, whose result is returned (without
///   `WinHelpA`: the machine's viewer on the file, 1 when it started).
/// - ".CHM" and another command than HELP_COMMAND (0x102): 1, nothing opened.
/// - ".CHM" and HELP_COMMAND: `data` is the address of a macro such as JI("file","page"); compiled help is
///   opened at that page and the result returned. 0 when the macro has no such form.
///
/// Only the low 32 bits of `data` are used: a macro that stands above 4 GB cannot be reached. An address that
/// cannot be read counts as an empty macro.
KESTRA_API int MyWinhelp(HWND__* window, const char* file, unsigned command, std::uintptr_t data);

/// Named values, without regard to the key's case. "NOMPOSTE": the computer's name, in at most `size` bytes
/// with its NUL (below 1: 1000); returns its length, or the size it needs when it does not fit (`out` then
/// stays). "FICHREM", "CHTTITRE", "CHTNOM": remarks file, title and file name of the default project, copied
/// whole whatever `size` says, so that `out` must have room; returns the length. "CHTMODEDWG": returns its
/// drawing mode, copies nothing. Anything else, and a null key: 0. A null `out` receives nothing.
KESTRA_API long getsVar(const char* key, char* out, int size);

/// Loads a control file, for good, and calls its `DllRegisterServer`. 0 when that was called, whatever it
/// answered; -100 when there is none; 32, after a message box, when the file cannot be loaded.
KESTRA_API int regocx(const char* file);

/// Module state of the library in the framework, for hosts that must switch to its resources
/// (`AfxManageState`). Never null; it lives as long as the library is loaded.
KESTRA_API AFX_MODULE_STATE* KestraModuleState();
}
