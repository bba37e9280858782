#pragma once
#include <platform/export.h>

/// Writes a trace line (printf rules, Windows-1252) to the application's trace output. A text that begins
/// with "$G$" is a general warning and always shown; any other is shown when `DOS::Debug` is not 0. Returns
/// the length of the text, 0 when it cannot be formed.
///
/// Output: the function set with `setTraceOutput`; else the file that the environment variable KESTRA_TRACE
/// names (lines are appended); else a debugger on Windows and standard error elsewhere. Each call is one line
/// there: line ends at both ends of the text are left out.
DORSEL_API int mprintf(const char* format, ...) KESTRA_PRINTF(1, 2);

/// Puts another output in force and returns the one before; null restores the default. It receives every
/// line, those of a trace level that is off too, as it was formed but without line ends at its end. The text
/// lives during the call only.
using TraceOutput = void (*)(const char* line, bool shown);
DORSEL_API TraceOutput setTraceOutput(TraceOutput output);

/// Shows a message box with `text` and `further` (each may be null; both: on two lines) and returns the
/// button chosen (`platform::Answer`), 0 when it could not be shown. `style` holds Windows message-box style
/// bits; 16 is the error icon.
DORSEL_API int mMessageBox(unsigned style, const char* text, const char* further);
