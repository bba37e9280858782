#include <kestra/dialogs/message_box_layout.h>

#include <algorithm>
#include <utility>

namespace kestra {
namespace {

// Dialog units: a quarter of the font's character width, an eighth of its height.
constexpr int margin = 7;
constexpr int gap = 7;        // between icon, message, check box and the row of buttons
constexpr int buttonGap = 4;  // between two buttons
constexpr int buttonHeight = 14;
constexpr int leastButton = 50;
constexpr int buttonPadding = 12;  // both sides together
constexpr int leastMessage = 20;
constexpr int scrolledMargin = 8;  // of the field around its text

class Layout {
  public:
    explicit Layout(const BoxExtents& extents) : m_extents(extents) {}

    int widestMessage() const {
        const int room = m_extents.room.width * 5 / 8 - messageLeft() - x(margin);
        return std::max(room, x(leastMessage));
    }

    BoxLayout layOut() {
        const int below = heightBelowMessage();
        placeMessage(below);
        m_layout.client.width = clientWidth();
        placeCheckMark();
        m_layout.client.height = contentBottom() + below;
        placeButtons();
        return std::move(m_layout);
    }

  private:
    int x(int units) const { return (units * m_extents.unit.width + 2) / 4; }
    int y(int units) const { return (units * m_extents.unit.height + 4) / 8; }

    bool hasIcon() const { return m_extents.icon.width > 0; }
    bool hasCheckMark() const { return m_extents.checkMark.width > 0; }
    int messageLeft() const { return x(margin) + (hasIcon() ? m_extents.icon.width + x(gap) : 0); }
    int contentBottom() const { return std::max(m_layout.icon.bottom(), m_layout.message.bottom()); }

    int heightBelowMessage() const {
        const int checkMark = hasCheckMark() ? y(gap) + m_extents.checkMark.height : 0;
        return checkMark + y(gap) + y(buttonHeight) + y(margin);
    }

    void placeMessage(int below) {
        const int top = y(margin);
        const int room = std::max(m_extents.room.height - top - below, m_extents.unit.height);
        BoxPlace& message = m_layout.message;
        message = {messageLeft(), top, std::min(m_extents.message.width, widestMessage()),
                   m_extents.message.height};
        if (message.height > room) {
            m_layout.scrolls = true;
            message.height = room;
            message.width =
                std::min(message.width + x(scrolledMargin), widestMessage()) + m_extents.scrollBar;
        }
        if (!hasIcon()) return;
        m_layout.icon = {x(margin), top, m_extents.icon.width, m_extents.icon.height};
        message.top += std::max(0, m_layout.icon.height - message.height) / 2;
    }

    /// A check box that would not fit beside the icon stands below it.
    int checkMarkLeft() const {
        const bool fits = messageLeft() + m_extents.checkMark.width + x(margin) <= m_extents.room.width;
        return fits ? messageLeft() : x(margin);
    }

    void placeCheckMark() {
        if (!hasCheckMark()) return;
        const int left = checkMarkLeft();
        const int width = std::min(m_extents.checkMark.width, m_layout.client.width - left - x(margin));
        m_layout.checkMark = {left, contentBottom() + y(gap), width, m_extents.checkMark.height};
    }

    /// As wide as the widest wants to be, all of them; less when the row would not fit.
    int buttonWidth() const {
        const int count = static_cast<int>(m_extents.buttons.size());
        const int widest = *std::max_element(m_extents.buttons.begin(), m_extents.buttons.end());
        const int wanted = std::max(x(leastButton), widest + x(buttonPadding));
        const int room = m_extents.room.width - 2 * x(margin) - (count - 1) * x(buttonGap);
        return std::min(wanted, room / count);
    }
    int rowWidth() const {
        const int count = static_cast<int>(m_extents.buttons.size());
        return count > 0 ? count * buttonWidth() + (count - 1) * x(buttonGap) : 0;
    }

    int clientWidth() const {
        const int checkMark = hasCheckMark() ? checkMarkLeft() + m_extents.checkMark.width : 0;
        const int content = std::max(
            {m_layout.message.right(), checkMark, x(margin) + rowWidth(), m_extents.caption - x(margin)});
        return std::min(content + x(margin), std::max(m_extents.room.width, m_layout.message.right()));
    }

    void placeButtons() {
        int left = m_layout.client.width - x(margin) - rowWidth();
        const int top = m_layout.client.height - y(margin) - y(buttonHeight);
        for (std::size_t i = 0; i < m_extents.buttons.size(); ++i) {
            m_layout.buttons.push_back({left, top, buttonWidth(), y(buttonHeight)});
            left += buttonWidth() + x(buttonGap);
        }
    }

    const BoxExtents& m_extents;
    BoxLayout m_layout;
};

}  // namespace

std::string wrappedLines(std::string_view text, int width, const CharacterWidths& widths) {
    constexpr std::string_view lineEnd = "\r\n";
    std::string lines;
    std::size_t lineStart = 0, afterBlank = 0;  // in `lines`; `afterBlank` is where the line may be broken
    int used = 0, usedAtBlank = 0;
    for (const char character : text) {
        if (character == '\r') continue;
        if (character == '\n') {
            lines += lineEnd;
            lineStart = afterBlank = lines.size();
            used = usedAtBlank = 0;
            continue;
        }
        const int wide = widths[static_cast<unsigned char>(character)];
        if (character != ' ' && used + wide > width && lines.size() > lineStart) {
            const bool atBlank = afterBlank > lineStart;
            lines.insert(atBlank ? afterBlank : lines.size(), lineEnd);
            used = atBlank ? used - usedAtBlank : 0;
            lineStart = afterBlank = (atBlank ? afterBlank : lines.size() - lineEnd.size()) + lineEnd.size();
            usedAtBlank = 0;
        }
        lines += character;
        used += wide;
        if (character == ' ') {
            afterBlank = lines.size();
            usedAtBlank = used;
        }
    }
    return lines;
}

int widestMessage(const BoxExtents& extents) {
    return Layout(extents).widestMessage();
}

BoxLayout layOutBox(const BoxExtents& extents) {
    return Layout(extents).layOut();
}

}  // namespace kestra
