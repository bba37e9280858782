#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include <platform/files.h>
#include <platform/machine.h>
#include <platform/prompt.h>

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
