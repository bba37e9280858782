#include <kestra/dialogs/message_box_rules.h>

#include <algorithm>
#include <array>
#include <iterator>

#include <kestra/dialogs/resource.h>
#include <platform/prompt.h>

namespace kestra {
namespace {

struct SetButton {
    int id = 0;  // 0: no further button
    unsigned text = 0;
    std::uint32_t onlyWith = 0;  // shown only with this style bit
};

struct ButtonSet {
    std::array<SetButton, 5> buttons;
    int defaultId;
    std::uint32_t escapeId;
};

constexpr SetButton ok = {platform::answerOk, IDS_BOX_OK};
constexpr SetButton cancel = {platform::answerCancel, IDS_BOX_CANCEL};
constexpr SetButton abort = {platform::answerAbort, IDS_BOX_ABORT};
constexpr SetButton retry = {platform::answerRetry, IDS_BOX_RETRY};
constexpr SetButton ignore = {platform::answerIgnore, IDS_BOX_IGNORE};
constexpr SetButton yes = {platform::answerYes, IDS_BOX_YES};
constexpr SetButton allYes = {boxAllYes, IDS_BOX_YES_TO_ALL, boxYesToAll};
constexpr SetButton no = {platform::answerNo, IDS_BOX_NO};
constexpr SetButton allNo = {boxAllNo, IDS_BOX_NO_TO_ALL, boxNoToAll};
constexpr SetButton tryAgain = {boxTryAgain, IDS_BOX_RETRY};
constexpr SetButton goOn = {boxContinue, IDS_BOX_CONTINUE};
constexpr SetButton skip = {boxSkip, IDS_BOX_SKIP};
constexpr SetButton skipAll = {boxSkipAll, IDS_BOX_SKIP_ALL};
constexpr SetButton ignoreAll = {boxIgnoreAll, IDS_BOX_IGNORE_ALL};
constexpr SetButton help = {boxHelp, IDS_BOX_HELP, boxHelpButton};

// Kept: French and English texts stand beside each other, and the access keys of "&Annuler", "Skip &all",
// "Ignore &all", "&Abort" and "&Aide" clash; hosts and their manuals know the buttons by these texts.
constexpr ButtonSet sets[] = {
    {{ok}, ok.id, ok.id},
    {{ok, cancel}, ok.id, cancel.id},
    {{abort, retry, ignore}, abort.id, noEscape},
    {{yes, allYes, no, allNo, cancel}, yes.id, cancel.id},
    {{yes, allYes, no, allNo}, yes.id, noEscape},
    {{retry, cancel}, retry.id, cancel.id},
    {{cancel, tryAgain, goOn}, cancel.id, cancel.id},
    {{goOn, abort}, goOn.id, noEscape},
    {{skip, skipAll, cancel}, skip.id, cancel.id},
    {{ignore, ignoreAll, cancel}, ignore.id, cancel.id},
};

constexpr std::uint32_t setBits = 0xF, iconBits = 0xF0;
constexpr unsigned firstIcon = 32513;

const ButtonSet& setOf(std::uint32_t style) {
    const std::uint32_t number = style & setBits;
    return number < std::size(sets) ? sets[number] : sets[0];
}

void add(std::vector<BoxButton>& shown, const SetButton& button, std::uint32_t style) {
    if (button.id == 0 || (button.onlyWith & ~style) != 0) return;
    shown.push_back({button.id, button.text});
}

}  // namespace

BoxButtons buttonsOfStyle(std::uint32_t style) {
    const ButtonSet& set = setOf(style);
    BoxButtons result{{}, static_cast<std::uint32_t>(set.defaultId), set.escapeId};
    for (const SetButton& button : set.buttons) add(result.shown, button, style);
    add(result.shown, help, style);
    const std::uint32_t wanted = (style & boxDefaultBits) >> 8;
    if (wanted > 0 && wanted <= 5 && wanted < result.shown.size())
        result.defaultId = static_cast<std::uint32_t>(result.shown[wanted].id);
    return result;
}

unsigned iconOfStyle(std::uint32_t style) {
    const unsigned number = (style & iconBits) >> 4;
    return number >= 1 && number <= 4 ? firstIcon + number - 1 : 0;
}

unsigned checkMarkOfStyle(std::uint32_t style) {
    if ((style & boxDoNotTellAgain) != 0) return IDS_BOX_DO_NOT_TELL;
    return (style & boxDoNotAskAgain) != 0 ? IDS_BOX_DO_NOT_ASK : 0;
}

int answerUnasked(const BoxButtons& buttons) {
    if (buttons.escapeId != noEscape) return static_cast<int>(buttons.escapeId);
    const auto last = std::find_if(buttons.shown.rbegin(), buttons.shown.rend(), [](const BoxButton& button) {
        return button.id != boxHelp && button.id != boxAllNo && button.id != boxAllYes &&
               button.id != boxSkipAll && button.id != boxIgnoreAll;
    });
    return last->id;
}

// Kept: the first character does not count, so messages that differ in it only share an answer; answers that
// users have given are found under these names.
std::string rememberedName(std::uint32_t helpId, std::string_view message) {
    if (helpId != 0) return std::to_string(helpId);
    std::uint32_t sum = 0, position = 0;
    for (const char character : message) {
        const auto code = static_cast<std::uint32_t>(static_cast<std::int8_t>(character));
        sum += code * position++;
    }
    return std::to_string(static_cast<std::int32_t>(sum));
}

std::string countDownText(std::string_view button, std::uint32_t seconds) {
    std::string text(button);
    return seconds != 0 ? text + " = " + std::to_string(seconds) : text;
}

BoxCountDown::Tick BoxCountDown::tick() {
    if (m_seconds == 0) return Tick::nothing;
    if (--m_seconds != 0) return Tick::goesOn;
    return m_disabled != 0 ? Tick::enables : Tick::ends;
}

BoxKey boxKey(unsigned key, bool controlsHeld, std::uint32_t escapeId) {
    constexpr unsigned controlBreak = 3, escape = 27;
    if (controlsHeld) return BoxKey::swallowed;
    if (key != controlBreak && key != escape) return BoxKey::passed;
    return escapeId != noEscape ? BoxKey::escapes : BoxKey::swallowed;
}

}  // namespace kestra
