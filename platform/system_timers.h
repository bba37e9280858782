#pragma once
#include <cstdint>

/// The system's own timers behind `platform/thread_messages.h`.
namespace platform {

/// Identifier, 0 on failure.
std::uint64_t startSystemTimer(unsigned milliseconds);
bool stopSystemTimer(std::uint64_t timer);
/// True when the thread's next timer message is this timer's; it is then taken off the queue.
bool takeSystemTimer(std::uint64_t timer);

}  // namespace platform
