#pragma once
#include <platform/export.h>

/// One question in the extended message box: the remembered answer when there is one, else a
/// `CMessageBoxDialog` (`message_box_dialog.h`) with that text, style word (`message_box_rules.h`) and help
/// id over the active window of the program. Its title is the application's name. Returns a command id.
///
/// Where there are no windows the question goes through the prompt in force (`platform/prompt.h`), which gets
/// the system's bits of the style; nothing is remembered there, and an answer that is none of the buttons
/// counts as `answerUnasked`.
extern "C" KESTRA_API int MyAfxMessageBox(const char* text, unsigned style = 0, unsigned helpId = 0);
