#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <platform/export.h>

/// What the extended message box does, without its window: buttons of a style word, the name of a remembered
/// answer, the count-down, the keys.
namespace kestra {

/// Bits of a style word above those of the system's message box (`platform/prompt.h` has its sets and icons).
enum BoxStyle : std::uint32_t {
    boxDefaultBits = 0xF00,   ///< 0x100: second button, 0x200: third, ... 0x500: sixth
    boxSystemModal = 0x1000,  ///< as the system has it
    boxHelpButton = 0x4000,
    boxForeground = 0x10000,
    boxTopmost = 0x40000,
    boxDoNotTellAgain = 0x01000000,  ///< check box "Ne plus afficher ce Message", the answer is remembered
    boxDoNotAskAgain = 0x02000000,   ///< check box "Ne plus me poser la Question", likewise
    boxYesToAll = 0x04000000,        ///< "Oui pour Tous" after "&Oui"
    boxNoToAll = 0x08000000,         ///< "Non pour Tous" after "&Non"
    boxSilent = 0x20000000           ///< no sound when shown
};
constexpr std::uint32_t boxRemembers = boxDoNotTellAgain | boxDoNotAskAgain;

/// Button sets above those of the system's message box.
enum BoxSet : std::uint32_t {
    boxCancelRetryContinue = 6,
    boxContinueAbort = 7,
    boxSkipSkipAllCancel = 8,
    boxIgnoreIgnoreAllCancel = 9
};

/// Command ids above those of `platform::Answer`.
enum BoxCommand : int {
    boxHelp = 9,
    boxTryAgain = 10,
    boxContinue = 11,
    boxAllYes = 14,
    boxAllNo = 15,
    boxSkip = 16,
    boxSkipAll = 17,
    boxIgnoreAll = 18,
    boxCheckMark = 19  ///< the check box
};

constexpr std::uint32_t noEscape = 0xFFFFFFFF;

struct BoxButton {
    int id;         ///< command id
    unsigned text;  ///< number of the string resource
};
struct BoxButtons {
    std::vector<BoxButton> shown;  ///< in display order, the help button last
    std::uint32_t defaultId;
    std::uint32_t escapeId;  ///< `noEscape` when Escape and the close box do nothing
};

/// Buttons of a style word. An unknown set is "&Ok" alone; a default beyond the buttons present, the help
/// button among them, keeps the set's own.
KESTRA_API BoxButtons buttonsOfStyle(std::uint32_t style);
/// Number of the system's icon (32513 to 32516), 0 for none.
KESTRA_API unsigned iconOfStyle(std::uint32_t style);
/// String resource of the check box, 0 for none; with both bits that of `boxDoNotTellAgain`.
KESTRA_API unsigned checkMarkOfStyle(std::uint32_t style);
/// The answer where nobody can be asked: the escape button, else the last that is neither help nor for all.
KESTRA_API int answerUnasked(const BoxButtons& buttons);

/// Name of a box's remembered answer: its help id when that is not 0, else the sum over the message's
/// characters of the character, as signed 8 bits, times its position counted from 0, in 32 bits that wrap.
KESTRA_API std::string rememberedName(std::uint32_t helpId, std::string_view message);

/// The default button's text while `seconds` are left: "&Ok = 4"; the bare text when none are.
KESTRA_API std::string countDownText(std::string_view button, std::uint32_t seconds);

/// The time-out of a box, one `tick` a second.
class KESTRA_API BoxCountDown {
  public:
    enum class Tick {
        goesOn,
        enables,  ///< over: the controls are enabled and the box waits
        ends,     ///< over: the box ends with its default button
        nothing   ///< none is running
    };
    /// `seconds` 0: no time-out. `disabled` not 0: the controls are disabled until it is over.
    void set(std::uint32_t seconds, std::int32_t disabled) { m_seconds = seconds, m_disabled = disabled; }
    std::uint32_t seconds() const { return m_seconds; }
    std::int32_t disabled() const { return m_disabled; }
    /// Whether the controls are disabled now.
    bool holdsControls() const { return m_seconds != 0 && m_disabled != 0; }
    Tick tick();

  private:
    std::uint32_t m_seconds = 0;
    std::int32_t m_disabled = 0;
};

/// What becomes of a key that is pressed, a virtual key code.
enum class BoxKey {
    passed,  ///< to the controls
    swallowed,
    escapes  ///< the box ends with its escape id
};
KESTRA_API BoxKey boxKey(unsigned key, bool controlsHeld, std::uint32_t escapeId);

}  // namespace kestra
