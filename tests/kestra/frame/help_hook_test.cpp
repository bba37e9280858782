#include <gtest/gtest.h>

#include <windows.h>

#include <array>
#include <cstring>

#include <dorsel/globals.h>
#include <kestra/frame/app.h>
#include <kestra/frame/module.h>

#include "../../support/recorders.h"

namespace {

using Bytes = std::array<unsigned char, 16>;

Bytes bytesOfWinHelp() {
    Bytes bytes;
    std::memcpy(bytes.data(),
                reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("user32.dll"), "WinHelpA")), 16);
    return bytes;
}

}  // namespace

TEST(HelpHook, EveryClassicHelpCallOfTheProcessPassesThroughTheDispatcher) {
    const Bytes before = bytesOfWinHelp();
    {
        CKestraApp app;
        const Bytes hooked = bytesOfWinHelp();
        EXPECT_EQ(std::memcmp(hooked.data(), "\x90\x90\xFF\x25\0\0\0\0", 8), 0);
        const auto target = reinterpret_cast<std::uintptr_t>(&MyWinhelp);
        EXPECT_EQ(std::memcmp(hooked.data() + 8, &target, 8), 0);

        EXPECT_EQ(::WinHelpA(nullptr, "manuel.CHM", HELP_CONTEXT, 5), 1);  // compiled help: nothing opened

        const RecordedTraces traces;
        DOS::Debug = 2;
        ::WinHelpA(nullptr, "aucun.hlp", HELP_QUIT, 0);
        DOS::Debug = 0;
        EXPECT_EQ(traces.lines().back(), " Traite par Aide classique ");
        EXPECT_EQ(bytesOfWinHelp(), hooked);
    }
    EXPECT_EQ(bytesOfWinHelp(), before);
}
