#include <platform/system_timers.h>
#include <platform/thread_messages.h>

namespace platform {

std::uint64_t startSystemTimer(unsigned) {
    thread_local std::uint64_t last = 0;
    return ++last;
}
bool stopSystemTimer(std::uint64_t) {
    return true;
}
bool takeSystemTimer(std::uint64_t) {
    return false;
}
bool dispatchPaint() {
    return false;
}

}  // namespace platform
