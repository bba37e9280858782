#include <platform/thread_messages.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include <platform/system_timers.h>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

struct Timer {
    std::uint64_t id;
    Clock::time_point due;
};

std::vector<Timer>& timers() {
    thread_local std::vector<Timer> timers;
    return timers;
}

auto find(std::uint64_t id) {
    return std::find_if(timers().begin(), timers().end(),
                        [id](const Timer& timer) { return timer.id == id; });
}

}  // namespace

std::uint64_t startThreadTimer(unsigned milliseconds) {
    const std::uint64_t id = startSystemTimer(milliseconds);
    if (id != 0) timers().push_back({id, Clock::now() + std::chrono::milliseconds(milliseconds)});
    return id;
}

bool stopThreadTimer(std::uint64_t timer) {
    const auto found = find(timer);
    if (found == timers().end()) return false;
    timers().erase(found);
    return stopSystemTimer(timer);
}

bool takeThreadTimer(std::uint64_t timer) {
    const auto found = find(timer);
    return found != timers().end() && (takeSystemTimer(timer) || Clock::now() >= found->due);
}

std::int64_t untilThreadTimer() {
    const auto next = std::min_element(timers().begin(), timers().end(),
                                       [](const Timer& a, const Timer& b) { return a.due < b.due; });
    if (next == timers().end()) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(next->due - Clock::now()).count();
    return std::max<std::int64_t>(left, 0);
}

}  // namespace platform
