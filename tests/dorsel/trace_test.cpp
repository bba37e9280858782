#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <dorsel/globals.h>
#include <dorsel/trace.h>
#include <platform/prompt.h>
#include <platform/replaceable.h>

#include "../support/recorders.h"
#include "../support/temporary_folder.h"

namespace {

std::vector<std::string> lines;

void keepLine(const char* line, bool shown) {
    lines.push_back((shown ? "+" : "-") + std::string(line));
}

struct TraceMachine : RecordingMachine {
    void debugLine(const char* text) override { debugged += std::string(text) + '|'; }
    std::string environment(const char*) override { return file; }
    std::string file, debugged;
};

}  // namespace

TEST(Trace, LineGoesToTheOutputInForce) {
    const int level = DOS::Debug;
    lines.clear();
    EXPECT_EQ(setTraceOutput(keepLine), nullptr);
    DOS::Debug = 0;
    EXPECT_EQ(mprintf("%d lignes\n", 12), 10);
    mprintf("$G$Attention %s", "é");
    DOS::Debug = 2;
    const std::string longText(100'000, 'x');
    EXPECT_EQ(mprintf("\n%s%d", longText.c_str(), 7), 100'002);
    EXPECT_EQ(mprintf("%s", ""), 0);
    EXPECT_EQ(setTraceOutput(nullptr), keepLine);
    DOS::Debug = level;
    EXPECT_EQ(lines,
              (std::vector<std::string>{"-12 lignes", "+$G$Attention é", "+\n" + longText + '7', "+"}));
}

TEST(Trace, ShownLinesAreAppendedToTheFileOrGoToTheDebugger) {
    const TemporaryFolder folder;
    TraceMachine machine;
    const platform::Replaced inForce(platform::replaceMachine, machine);
    const int level = DOS::Debug;
    DOS::Debug = 0;
    machine.file = folder.path("trace.txt");
    mprintf("$G$un\n");
    mprintf("passée");
    DOS::Debug = 1;
    mprintf("\ndeux");
    EXPECT_EQ(folder.read("trace.txt"), "$G$un\ndeux\n");
    machine.file = folder.path("absent\\trace.txt");
    mprintf("trois");
    machine.file.clear();
    mprintf("\n\nquatre\r\n");
    EXPECT_EQ(machine.debugged, "trois|quatre|");
    DOS::Debug = level;
}

TEST(Trace, MessageBoxJoinsItsTexts) {
    struct : platform::Prompt {
        platform::Answer ask(unsigned askedStyle, const char* text, const char*) override {
            asked += std::to_string(askedStyle) + text + '|';
            return platform::answerRetry;
        }
        std::string asked;
    } prompt;
    const platform::Replaced inForce(platform::replacePrompt, prompt);
    EXPECT_EQ(mMessageBox(16, "un", "deux"), 4);
    mMessageBox(0, nullptr, "deux");
    mMessageBox(1, "un", nullptr);
    mMessageBox(1, nullptr, nullptr);
    EXPECT_EQ(prompt.asked, "16un\ndeux|0deux|1un|1|");
}
