#include <cstring>

#include <platform/clock.h>
#include <platform/machine.h>
#include <platform/prompt.h>

namespace platform {

Clock::~Clock() = default;
Machine::~Machine() = default;
Prompt::~Prompt() = default;

bool Prompt::chooseFile(FileQuestion&) {
    return false;
}
bool Prompt::chooseText(ListQuestion&) {
    return false;
}

Answer neutralAnswer(unsigned style) {
    switch (style & 0xF) {
        case styleOkCancel:
        case styleYesNoCancel:
        case styleRetryCancel:
            return answerCancel;
        case styleAbortRetryIgnore:
            return answerIgnore;
        case styleYesNo:
            return answerNo;
        default:
            return answerOk;
    }
}

}  // namespace platform

int AfxMessageBox(const char* text, unsigned style, unsigned) {
    return platform::thePrompt().ask(style, text != nullptr ? text : "", nullptr);
}
