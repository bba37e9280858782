#pragma once
#include <exception>

namespace dorsel {

/// The result of `work`, or `neutral` when it ran out of memory or a replaced service threw: no operation of
/// the base library throws toward its callers.
template <class Result, class Work>
Result guarded(Result neutral, Work work) noexcept {
    try {
        return work();
    } catch (const std::exception&) {
        return neutral;
    }
}

}  // namespace dorsel
