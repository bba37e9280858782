#pragma once
#include <cstddef>
#include <cstdint>

#include <platform/export.h>

/// What a module does to the process that it is loaded into: code written over a system function, libraries
/// loaded for good, texts read from addresses that somebody handed in as numbers.
struct HWND__;

namespace platform {

/// Address of a function that a library of the system, loaded already, exports ("user32.dll", "WinHelpA").
/// Null when there is none; always null where there are no such libraries.
DORSEL_API void* systemFunction(const char* library, const char* name);

/// Makes code bytes readable, writable and executable from now on. False when the system refuses.
DORSEL_API bool makeCodeWritable(void* code, std::size_t size);
/// To be called when code bytes were written, before they run.
DORSEL_API void codeWritten(void* code, std::size_t size);

/// Copies a NUL-terminated text from an address that need not be readable into `out` (`size` bytes, NUL
/// included; a longer text is cut). False, and the empty text, when not all of it can be read.
DORSEL_API bool readTextAt(std::uintptr_t address, char* out, std::size_t size);

/// The process's own classic help function. Where the system has none, the machine's viewer is asked to open
/// the file at its contents; null files give 0.
DORSEL_API int classicHelp(HWND__* window, const char* file, unsigned command, std::uint32_t data);

/// Lets any process put its windows in front, and sets the user's foreground lock time-out to zero, saved and
/// announced to all windows, unless it is zero already. Nothing where there are no windows.
DORSEL_API void letWindowsComeToFront();

/// Loads a library and keeps it until the process ends. A result below 32 is a failure.
DORSEL_API std::uintptr_t loadLibrary(const char* file);
using PlainFunction = int (*)();
/// An exported function of such a library, called with the C convention; null when it has none.
DORSEL_API PlainFunction libraryFunction(std::uintptr_t library, const char* name);

}  // namespace platform
