#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include <platform/clock.h>
#include <platform/files.h>
#include <platform/machine.h>
#include <platform/prompt.h>
#include <platform/replaceable.h>

#include "../support/temporary_folder.h"

TEST(Prompt, NeutralAnswerChangesNothing) {
    struct {
        unsigned style;
        platform::Answer answer;
    } const cases[] = {
        {platform::styleOkCancel | platform::iconError, platform::answerCancel},
        {platform::styleAbortRetryIgnore, platform::answerIgnore},
        {platform::styleYesNoCancel, platform::answerCancel},
        {platform::styleYesNo | 0x100, platform::answerNo},
        {platform::styleRetryCancel, platform::answerCancel},
    };
    for (const auto& row : cases) EXPECT_EQ(platform::neutralAnswer(row.style), row.answer) << row.style;
}

TEST(Prompt, MessageBoxAsksThePromptInForce) {
    struct : platform::Prompt {
        platform::Answer ask(unsigned style, const char* text, const char*) override {
            asked = std::to_string(style) + text;
            return platform::answerYes;
        }
        std::string asked;
    } prompt;
    {
        const platform::Replaced inForce(platform::replacePrompt, prompt);
        EXPECT_EQ(AfxMessageBox("Écraser ?", 4), 6);
        EXPECT_EQ(prompt.asked, "4Écraser ?");
        AfxMessageBox(nullptr);
        EXPECT_EQ(prompt.asked, "0");
    }
    EXPECT_NE(&platform::thePrompt(), &prompt);
}

TEST(Clock, LocalTimeAgreesWithTheClock) {
    platform::Clock& clock = platform::theClock();
    EXPECT_GT(clock.now(), 1'700'000'000);
    const platform::LocalTime summer = clock.localTime(1'247'659'200);  // 2009-07-15 12:00:00 UTC
    EXPECT_TRUE(summer.valid && summer.year == 2009 && summer.month == 7);
    EXPECT_FALSE(clock.localTime(INT64_MAX).valid);
}

TEST(Machine, StartsProgramsAndSaysWhenThereIsNone) {
    platform::Machine& machine = platform::theMachine();
    EXPECT_FALSE(machine.computerName().empty());
    EXPECT_FALSE(machine.run(nullptr) || machine.run("") || machine.openDocument(""));
    EXPECT_EQ(machine.environment(nullptr) + machine.environment("KESTRA_NOT_SET"), "");
    EXPECT_NE(machine.environment("PATH"), "");
#ifdef _WIN32
    EXPECT_GT(machine.windowsNtVersion(), 0);
#else
    EXPECT_EQ(machine.windowsNtVersion(), 0);
    EXPECT_FALSE(machine.run("no-such-program-of-kestra \"D:\\a b\""));
    EXPECT_FALSE(machine.openDocument("D:\\no such document.htm"));
    const TemporaryFolder folder;
    const std::string made = folder.path("made here");
    EXPECT_TRUE(machine.run(("touch \"" + made + '"').c_str()));
    for (int i = 0; i < 500 && platform::theFiles().kind(made.c_str()) == platform::FileKind::missing; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(platform::theFiles().kind(made.c_str()), platform::FileKind::file);
#endif
}
