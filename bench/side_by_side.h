#pragma once
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
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

/// One of several that do the same work: `before` is not timed.
struct Contender {
    const char* name;
    std::function<void()> work;
    std::function<void()> before = [] {};
};

/// Times ours and several peers in turn and compares with the best of the peers; without any it prints ours.
inline void againstBest(const char* name, double limit, Contender ours, std::vector<Contender> peers,
                        int rounds = 9) {
    peers.insert(peers.begin(), std::move(ours));
    std::vector<std::vector<double>> times(peers.size());
    for (int round = 0; round <= rounds; ++round) {
        for (std::size_t i = 0; i < peers.size(); ++i) {
            peers[i].before();
            const double time = milliseconds(peers[i].work);
            if (round > 0) times[i].push_back(time);
        }
    }
    std::vector<double> medians;
    for (const auto& series : times) medians.push_back(median(series));
    if (peers.size() == 1) {
        std::printf("%-56s %10.3f ms\n", name, medians[0]);
        std::fflush(stdout);
        return;
    }
    const auto best = std::min_element(medians.begin() + 1, medians.end()) - medians.begin();
    printLine(name, medians[0], peers[static_cast<std::size_t>(best)].name,
              medians[static_cast<std::size_t>(best)], "ms", limit);
}

}  // namespace bench
