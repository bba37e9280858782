#include <windows.h>

#include <platform/system_timers.h>
#include <platform/thread_messages.h>

namespace platform {

std::uint64_t startSystemTimer(unsigned milliseconds) {
    return ::SetTimer(nullptr, 0, milliseconds, nullptr);
}

bool stopSystemTimer(std::uint64_t timer) {
    const bool stopped = ::KillTimer(nullptr, timer) != 0;
    // A message that is under way already would count for the next timer of this identifier.
    takeSystemTimer(timer);
    return stopped;
}

bool takeSystemTimer(std::uint64_t timer) {
    MSG message;
    if (!::PeekMessageA(&message, nullptr, WM_TIMER, WM_TIMER, PM_NOREMOVE) || message.wParam != timer)
        return false;
    ::PeekMessageA(&message, message.hwnd, WM_TIMER, WM_TIMER, PM_REMOVE);
    return true;
}

bool dispatchPaint() {
    MSG message;
    if (!::PeekMessageA(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE)) return false;
    ::DispatchMessageA(&message);
    return true;
}

}  // namespace platform
