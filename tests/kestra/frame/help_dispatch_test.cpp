#include <gtest/gtest.h>

#include <cstring>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#endif

#include <dorsel/globals.h>
#include <kestra/frame/help_dispatch.h>
#include <kestra/frame/module.h>

#include "../../support/recorders.h"

namespace {

constexpr unsigned helpContext = 1;
constexpr unsigned helpCommand = 0x102;

/// A text below 4 GB, where 32 bits of data reach it.
std::uintptr_t lowText(const char* text) {
#ifdef _WIN32
    static void* const page =
        ::VirtualAlloc(reinterpret_cast<void*>(0x20000000), 4096, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
#else
    static void* const page =
        ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_32BIT, -1, 0);
#endif
    std::strcpy(static_cast<char*>(page), text);
    return reinterpret_cast<std::uintptr_t>(page);
}

}  // namespace

TEST(HelpDispatch, MacrosGiveFileAndCommand) {
    const struct {
        const char* file;
        const char* macro;
        const char* expected;  // "file|command", "none" for no request
    } cases[] = {
        {"Manuel.chm", "JI(\"D:\\aide\\manuel.chm\",\"topic_12\")", "Manuel.chm|topic_12"},
        {"m.chm", "JI(), \"a\" \"b\"", "m.chm|a"},
        {"m.chm", "JI(\"f\" \"topic\")", "none"},
        {nullptr, "JI(\"D:\\\\\\aide\\\\m.chm\",\"t\")", "D:\\aide\\m.chm|t"},
        {nullptr, "JI(m.chm,\"t\")", "t|t"},
    };
    for (const auto& c : cases) {
        const auto request = kestra::parseHelpMacro(c.file, c.macro);
        EXPECT_EQ(request ? request->file + "|" + request->command : "none", c.expected) << c.macro;
    }
    EXPECT_TRUE(kestra::isCompiledHelp("a.cHm.old"));
    EXPECT_FALSE(kestra::isCompiledHelp((std::string(1000, 'x') + ".CHM").c_str()));
    EXPECT_FALSE(kestra::isCompiledHelp(nullptr));
}

TEST(HelpDispatch, RoutesCompiledHelpToItsViewerAndTracesIt) {
    RecordingMachine machine;
    const platform::Replaced inForce(platform::replaceMachine, machine);
    const RecordedTraces traces;
    const std::uintptr_t macro = lowText("JI(\"x\",\"topic_12\")");
    DOS::Debug = 2;
    EXPECT_EQ(MyWinhelp(nullptr, "manuel.Chm", helpCommand, macro), 1);
    DOS::Debug = 0;
    EXPECT_EQ(machine.calls, std::vector<std::string>{"html|manuel.Chm|topic_12"});
    std::string traced;
    for (const std::string& line : traces.lines()) traced += line;
    EXPECT_TRUE(traced.starts_with("\nMyWinhelp Hwnd = 0 uCommand=258")) << traced;
    EXPECT_TRUE(
        traced.ends_with("\nDwdata = JI(\"x\",\"topic_12\") \nlpszHelp=manuel.Chm "
                         "\nLance AideHtml sur fich=manuel.Chm ; commande=topic_12 "))
        << traced;

    EXPECT_EQ(MyWinhelp(nullptr, "manuel.chm", helpCommand, lowText("JI(\"x\")")), 0);
    EXPECT_EQ(machine.calls.size(), 1u);
}

TEST(HelpDispatch, KeptOnly32BitsOfTheDataCountSoThatAMacroAbove4GbIsNotReached) {
    RecordingMachine machine;
    const platform::Replaced inForce(platform::replaceMachine, machine);
    const std::uintptr_t high = lowText("JI(\"x\",\"low\")") | std::uintptr_t{7} << 32;
    EXPECT_EQ(MyWinhelp(nullptr, "m.chm", helpCommand, high), 1);
    EXPECT_EQ(machine.calls, std::vector<std::string>{"html|m.chm|low"});
    EXPECT_EQ(MyWinhelp(nullptr, "m.chm", helpCommand, 16), 0);  // nothing can be read there
}

#ifndef _WIN32
TEST(HelpDispatch, ClassicHelpGoesToTheMachinesViewerWhereThereIsNoWinHelp) {
    RecordingMachine machine;
    const platform::Replaced inForce(platform::replaceMachine, machine);
    EXPECT_EQ(MyWinhelp(nullptr, "manuel.hlp", helpContext, 3), 1);
    EXPECT_EQ(MyWinhelp(nullptr, nullptr, helpContext, 3), 0);
    EXPECT_EQ(machine.calls, std::vector<std::string>{"help|manuel.hlp|"});
}
#endif
