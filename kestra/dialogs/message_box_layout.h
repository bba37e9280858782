#pragma once
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include <platform/export.h>

/// Where the parts of a message box stand: a plain function of what they measure. All numbers are pixels.
///
///     +-------------------------------------+
///     | icon  message                       |     The message is as wide as its text, wrapped at
///     |       [] check box                  |     `widestMessage`; a short one stands beside the icon's
///     |                 [button] [button]   |     middle; one that is too high for the screen scrolls.
///     +-------------------------------------+
namespace kestra {

struct BoxSize {
    int width = 0, height = 0;
};
struct BoxPlace {
    int left = 0, top = 0, width = 0, height = 0;
    int right() const { return left + width; }
    int bottom() const { return top + height; }
};

/// What is known of a box before it is laid out.
struct BoxExtents {
    BoxSize unit;              ///< of the font: average character width, character height
    BoxSize room;              ///< largest client area that the screen holds
    BoxSize icon;              ///< 0, 0 for none
    BoxSize message;           ///< wrapped at `widestMessage`; the height may be anything
    BoxSize checkMark;         ///< mark and text; 0, 0 for none
    std::vector<int> buttons;  ///< widths of the texts, those of the count-down included
    int caption = 0;           ///< width that the title wants in the client area
    int scrollBar = 0;         ///< width of one
};

struct BoxLayout {
    BoxSize client;
    BoxPlace icon, message, checkMark;  ///< all 0 for what is not there
    std::vector<BoxPlace> buttons;
    bool scrolls = false;  ///< the message does not fit and has a scroll bar, inside its place
};

/// Width at which a message is wrapped: 5/8 of the room, as far as the icon leaves it.
KESTRA_API int widestMessage(const BoxExtents& extents);
KESTRA_API BoxLayout layOutBox(const BoxExtents& extents);

/// Widths of the characters of a font, in pixels, by their codes.
using CharacterWidths = std::array<int, 256>;
/// A text (lines end in LF or CR LF) in lines of at most `width`, each ended by CR LF but the last: broken
/// behind a blank, or within a word that is wider. The time grows with the text only, whatever its lines are.
KESTRA_API std::string wrappedLines(std::string_view text, int width, const CharacterWidths& widths);

}  // namespace kestra
