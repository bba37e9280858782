#pragma once
#include <cstdint>

#include <platform/export.h>

/// What a thread does while it blocks: its timers, and the painting of its windows. On Windows these are the
/// timer and paint messages of the thread; elsewhere there are no messages, and timers are moments only.
namespace platform {

/// Starts a timer of the calling thread; returns its identifier, 0 on failure.
DORSEL_API std::uint64_t startThreadTimer(unsigned milliseconds);
/// Ends a timer of the calling thread. False when there is none of this identifier.
DORSEL_API bool stopThreadTimer(std::uint64_t timer);
/// True when the timer's time is up. On Windows that is when the thread's next timer message is this timer's,
/// which is then taken off the queue; or when its time has passed while the message of a timer that nobody
/// serves stands before it.
DORSEL_API bool takeThreadTimer(std::uint64_t timer);
/// Milliseconds until the next timer of the thread is due, 0 when one is; -1 when there is none.
DORSEL_API std::int64_t untilThreadTimer();

/// Lets one window of the thread that waits to be painted paint itself. False when none does.
DORSEL_API bool dispatchPaint();

}  // namespace platform
