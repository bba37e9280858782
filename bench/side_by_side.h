#pragma once
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

/// One workload timed beside its peer in the same run: the two take turns, so that both see the machine's
/// good and bad moments alike, and the medians are compared.
///
///     sideBySide("Getvar, last of 100,000 lines", 0.5, [&] { ... }, "std::getline loop", [&] { ... });
///
/// prints
///
///     Getvar, last of 100,000 lines        2.104 ms   std::getline loop        6.021 ms   ratio 0.35  (at
///     most 0.5)
namespace bench {

inline double milliseconds(auto&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

/// Keeps a result from being optimised away.
inline void keep(const auto& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

/// Prints a line of figures that were measured elsewhere; `limit` 0 means that no ratio is wanted.
inline void printLine(const char* name, double ours, const char* peer, double theirs, const char* unit,
                      double limit) {
    std::printf("%-56s %10.3f %-3s %-28s %10.3f %-3s ratio %6.3f", name, ours, unit, peer, theirs, unit,
                ours / theirs);
    if (limit > 0) std::printf("  (at most %g)%s", limit, ours / theirs <= limit ? "" : "  MISSED");
    std::printf("\n");
    std::fflush(stdout);
}

void sideBySide(const char* name, double limit, auto&& ours, const char* peer, auto&& theirs,
                int rounds = 9) {
    std::vector<double> oursTimes, peerTimes;
    ours();
    theirs();
    for (int round = 0; round < rounds; ++round) {
        oursTimes.push_back(milliseconds(ours));
        peerTimes.push_back(milliseconds(theirs));
    }
    printLine(name, median(oursTimes), peer, median(peerTimes), "ms", limit);
}

}  // namespace bench
