#include <kestra/dialogs/message_box.h>

#include <algorithm>

#include <kestra/dialogs/message_box_rules.h>
#include <platform/prompt.h>

int MyAfxMessageBox(const char* text, unsigned style, unsigned) {
    constexpr unsigned systemBits = 0xFFFF;
    const kestra::BoxButtons buttons = kestra::buttonsOfStyle(style);
    const int answer = platform::thePrompt().ask(style & systemBits, text != nullptr ? text : "", nullptr);
    const bool isButton = std::any_of(buttons.shown.begin(), buttons.shown.end(),
                                      [&](const kestra::BoxButton& button) { return button.id == answer; });
    return isButton ? answer : kestra::answerUnasked(buttons);
}
