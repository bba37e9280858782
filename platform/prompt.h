#pragma once
#include <functional>
#include <string>
#include <vector>

#include <platform/export.h>

/// Questions and messages to the user, replaceable for a test.
namespace platform {

/// Buttons of an answer; the numbers are those of the Windows message box.
enum Answer : int {
    answerOk = 1,
    answerCancel = 2,
    answerAbort = 3,
    answerRetry = 4,
    answerIgnore = 5,
    answerYes = 6,
    answerNo = 7
};

/// Style bits, as the Windows message box has them: button sets in the low four bits, icons in the next four.
enum Style : unsigned {
    styleOk = 0,
    styleOkCancel = 1,
    styleAbortRetryIgnore = 2,
    styleYesNoCancel = 3,
    styleYesNo = 4,
    styleRetryCancel = 5,
    iconError = 0x10,
    iconQuestion = 0x20,
    iconExclamation = 0x30,
    iconInformation = 0x40,
    secondIsDefault = 0x100  ///< Enter presses the second button
};

/// Asks for a file to open.
struct FileQuestion {
    std::string path;       ///< the text that the user starts from; then the whole path of the file chosen
    std::string extension;  ///< added to a name without one; without its dot, empty for none
    std::string filter;     ///< pairs of a label and patterns, each ended by '|': "Tous|*.*||"
    unsigned style = 0;     ///< style bits of the Windows file dialog
};

/// Asks for one text of a list that check boxes widen and narrow.
struct ListQuestion {
    struct Box {
        std::string label;
        bool isChecked = false;
    };
    std::string caption;
    std::vector<Box> boxes;
    std::vector<std::string> entries;
    int selected = -1;  ///< index of the entry, -1 for none
    /// To be called when a box was changed: fills `entries` and `selected` anew.
    std::function<void(ListQuestion&)> refill;
};

class DORSEL_API Prompt {
  public:
    virtual ~Prompt();
    /// Shows `text` (Windows-1252) under `caption` (null: the program's name) and returns the button chosen.
    /// Where there is no screen the text goes to standard error and the answer is the one that changes
    /// nothing: cancel, else no, else ignore, else OK.
    virtual Answer ask(unsigned style, const char* text, const char* caption) = 0;
    /// False when the user gave up, as where nobody can be asked: the question is then as it was.
    virtual bool chooseFile(FileQuestion& question);
    virtual bool chooseText(ListQuestion& question);
};

DORSEL_API Prompt& thePrompt();
/// Puts another prompt in force and returns the one before; null puts the system's back. Not owned.
DORSEL_API Prompt* replacePrompt(Prompt* prompt);

/// The answer that changes nothing for a style: what a prompt gives when nobody can be asked.
DORSEL_API Answer neutralAnswer(unsigned style);

}  // namespace platform

/// The framework's message box, through the prompt in force: `style` holds Windows style bits, the result is
/// the number of the button chosen.
DORSEL_API int AfxMessageBox(const char* text, unsigned style = 0, unsigned helpContext = 0);
