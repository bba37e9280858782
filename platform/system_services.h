#pragma once
#include <platform/clock.h>
#include <platform/files.h>
#include <platform/machine.h>
#include <platform/prompt.h>
#include <platform/sockets.h>

/// What each system gives: its own services, made at their first use. Everybody else asks `theFiles()` and
/// its like, which may have been replaced.
namespace platform {

FileSystem& systemFiles();
Sockets& systemSockets();
Clock& systemClock();
Machine& systemMachine();
Prompt& systemPrompt();

}  // namespace platform
