#include <gtest/gtest.h>
#include <kestra/dialogs/message_box.h>
#include <kestra/dialogs/message_box_layout.h>
#include <kestra/dialogs/message_box_rules.h>

#include <algorithm>
#include <climits>
#include <string>
#include <vector>

#include <platform/prompt.h>
#include <platform/replaceable.h>

using namespace kestra;

namespace {

/// Ids, "*" behind the default's, "/" and the escape id when there is one.
std::string described(const BoxButtons& buttons) {
    std::string all;
    for (const BoxButton& button : buttons.shown)
        all += std::to_string(button.id) +
               (static_cast<std::uint32_t>(button.id) == buttons.defaultId ? "* " : " ");
    return buttons.escapeId != noEscape ? all + "/" + std::to_string(buttons.escapeId) : all;
}

TEST(MessageBoxRules, ButtonsDefaultAndEscapeOfEachStyle) {
    constexpr std::uint32_t all = boxYesToAll | boxNoToAll;
    const struct {
        std::uint32_t style;
        const char* buttons;
    } cases[] = {{0, "1* /1"},
                 {2, "3* 4 5 "},
                 {3 | all, "6* 14 7 15 2 /2"},
                 {4 | boxNoToAll, "6* 7 15 "},
                 {5, "4* 2 /2"},
                 {6, "2* 10 11 /2"},
                 {7, "11* 3 "},
                 {8, "16* 17 2 /2"},
                 {9, "5* 18 2 /2"},
                 {15 | all, "1* /1"},
                 {0x4104, "6 7* 9 "},
                 {0x203 | boxYesToAll, "6 14 7* 2 /2"},
                 {0x504 | 0x4000 | all, "6* 14 7 15 9 "},
                 {0x503 | 0x4000 | all, "6 14 7 15 2 9* /2"},
                 {0x601, "1* 2 /2"}};
    for (const auto& each : cases)
        EXPECT_EQ(described(buttonsOfStyle(each.style)), each.buttons) << each.style;
    EXPECT_EQ(answerUnasked(buttonsOfStyle(3)), 2);
    EXPECT_EQ(answerUnasked(buttonsOfStyle(4 | 0x4000 | all)), 7);
    EXPECT_EQ(iconOfStyle(0x10) + iconOfStyle(0x40) - 2 * 32513, 3U);
    EXPECT_EQ(iconOfStyle(0) + iconOfStyle(0x50), 0U);
}

TEST(MessageBoxRules, KeptTheFirstCharacterDoesNotCount) {
    EXPECT_EQ(rememberedName(0xFFFFFFFF, "whatever"), "4294967295");
    const std::pair<std::string, const char*> cases[] = {
        {"", "0"},      {"xAB", "197"}, {"yAB", "197"},
        {"xBA", "196"}, {"aé", "-23"},  {std::string(100000, '\x7F'), "-661509808"}};
    for (const auto& [message, name] : cases) EXPECT_EQ(rememberedName(0, message), name);
}

TEST(MessageBoxRules, CountDown) {
    using Tick = BoxCountDown::Tick;
    BoxCountDown count;
    EXPECT_EQ(count.tick(), Tick::nothing);
    for (const int disabled : {0, 1}) {
        count.set(2, disabled);
        EXPECT_EQ(count.tick(), Tick::goesOn);
        EXPECT_EQ(count.holdsControls(), disabled != 0);
        EXPECT_EQ(count.tick(), disabled != 0 ? Tick::enables : Tick::ends);
        EXPECT_FALSE(count.holdsControls());
        EXPECT_EQ(count.tick(), Tick::nothing);
    }
    EXPECT_EQ(countDownText("&Ok", 0), "&Ok");
    EXPECT_EQ(countDownText("100 %s", UINT_MAX), "100 %s = 4294967295");
}

TEST(MessageBoxRules, Keys) {
    constexpr unsigned tab = 9, enter = 13, escape = 27, controlBreak = 3;
    for (const unsigned key : {tab, enter, escape, controlBreak}) {
        EXPECT_EQ(boxKey(key, true, 2), BoxKey::swallowed);
        const bool escapes = key == escape || key == controlBreak;
        EXPECT_EQ(boxKey(key, false, 2), escapes ? BoxKey::escapes : BoxKey::passed);
        EXPECT_EQ(boxKey(key, false, noEscape), escapes ? BoxKey::swallowed : BoxKey::passed);
    }
}

#ifndef _WIN32
TEST(MessageBoxPrompt, TheQuestionGoesThroughThePromptWhereThereAreNoWindows) {
    struct Answering : platform::Prompt {
        int answer = 0;
        unsigned asked = 0;
        platform::Answer ask(unsigned style, const char*, const char*) override {
            asked = style;
            return static_cast<platform::Answer>(answer);
        }
    } prompt;
    const platform::Replaced inForce(platform::replacePrompt, prompt);
    const struct {
        unsigned style;
        int answer, result;
    } cases[] = {{3 | 0x20 | boxYesToAll, 7, 7}, {3, 1, 2}, {4, 2, 7}, {8, 1, 2}, {7, 1, 3}, {0, 99, 1}};
    for (const auto& each : cases) {
        prompt.answer = each.answer;
        EXPECT_EQ(MyAfxMessageBox("Question ?", each.style, 0), each.result) << each.style;
        EXPECT_EQ(prompt.asked, each.style & 0xFFFF);
    }
    EXPECT_EQ(MyAfxMessageBox(nullptr), 1);
}
#endif

/// What must hold whatever the box: all within the client area, nothing over anything else.
void expectSound(const BoxExtents& extents, const BoxLayout& layout) {
    std::vector<BoxPlace> parts = {layout.message};
    if (extents.icon.width > 0) parts.push_back(layout.icon);
    if (extents.checkMark.width > 0) parts.push_back(layout.checkMark);
    parts.insert(parts.end(), layout.buttons.begin(), layout.buttons.end());
    EXPECT_LE(layout.client.height, extents.room.height);
    EXPECT_LE(layout.client.width, extents.room.width);
    for (auto part = parts.begin(); part != parts.end(); ++part) {
        EXPECT_TRUE(part->left > 0 && part->top > 0 && part->right() < layout.client.width &&
                    part->bottom() < layout.client.height);
        const bool overlaps = std::any_of(parts.begin(), part, [&](const BoxPlace& other) {
            return other.left < part->right() && part->left < other.right() && other.top < part->bottom() &&
                   part->top < other.bottom();
        });
        EXPECT_FALSE(overlaps);
    }
}

TEST(MessageBoxLayout, HoldsForOneWordAndFortyLinesAtEachResolution) {
    constexpr BoxSize units[] = {{6, 13}, {9, 20}, {12, 26}};  // 96, 144, 192 dots per inch
    for (const BoxSize unit : units) {
        const int scale = unit.width / 3;
        for (const int lines : {1, 2, 40, 100000}) {
            for (const int parts : {0, 1, 2, 3}) {
                BoxExtents extents{unit, {1920, 1040}, {}, {}, {}, {}, 20 * scale, 8 * scale};
                if ((parts & 1) != 0) extents.icon = {16 * scale, 16 * scale};
                if ((parts & 2) != 0) extents.checkMark = {80 * scale, 8 * scale};
                extents.buttons = {10 * scale, 38 * scale, 12 * scale, 40 * scale, 20 * scale, 15 * scale};
                extents.message = {lines == 1 ? 20 * scale : widestMessage(extents), lines * unit.height};
                SCOPED_TRACE(testing::Message() << unit.width << " " << lines << " lines, " << parts);
                const BoxLayout layout = layOutBox(extents);
                expectSound(extents, layout);
                EXPECT_EQ(layout.scrolls, lines * unit.height > layout.message.height);
                EXPECT_EQ(layout.scrolls, lines > 40 || (lines == 40 && unit.height > 20));
                EXPECT_TRUE(layout.scrolls || layout.message.width >= extents.message.width);
                if (lines == 1 && (parts & 1) != 0) {
                    EXPECT_NEAR(layout.message.top + layout.message.height / 2,
                                layout.icon.top + layout.icon.height / 2, 1);
                }
                for (const BoxPlace& button : layout.buttons) {
                    EXPECT_EQ(button.width, layout.buttons[0].width);
                    EXPECT_GE(button.width, 40 * scale + unit.width);
                }
            }
        }
    }
}

TEST(MessageBoxLayout, LinesAreWrapped) {
    CharacterWidths widths;
    widths.fill(1);
    widths[static_cast<unsigned char>('W')] = 3;
    const std::pair<const char*, const char*> cases[] = {{"", ""},
                                                         {"a\nb\r\n\nc", "a\r\nb\r\n\r\nc"},
                                                         {"un deux     trois", "un deux     \r\ntrois"},
                                                         {"ab cdefghijklm", "ab \r\ncdefghij\r\nklm"},
                                                         {"WWWWW", "WW\r\nWW\r\nW"},
                                                         {"exactly8\nx", "exactly8\r\nx"}};
    for (const auto& [text, lines] : cases) EXPECT_EQ(wrappedLines(text, 8, widths), lines);
    EXPECT_EQ(wrappedLines("abc", 0, widths), "a\r\nb\r\nc");
}

TEST(MessageBoxLayout, HoldsOnSmallScreens) {
    BoxExtents extents{{6, 13}, {320, 200}, {32, 32}, {}, {160, 13}, {25, 75, 20, 80, 40, 30}, 5000, 16};
    extents.message = {INT_MAX, INT_MAX};
    expectSound(extents, layOutBox(extents));
    extents = {{6, 13}, {900, 600}, {}, {}, {}, {}, 300, 16};
    EXPECT_EQ(layOutBox(extents).client.width, 300) << "no message, no buttons: the title is read";
}

}  // namespace
