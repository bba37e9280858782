#include <kestra/containers/line_order.h>

#include <algorithm>

namespace line_order {
namespace {

constexpr std::size_t keyBytes = sizeof(Line::key);

constexpr auto before = [](const Line& first, const Line& second) {
    return first.key != second.key ? first.key < second.key : first.text < second.text;
};

/// The text has ended within these eight bytes.
bool isLast(std::uint64_t key) {
    return (key & 0xFF) == 0;
}

int compareTexts(const char* first, const char* second) {
    for (;; first += keyBytes, second += keyBytes) {
        const std::uint64_t left = keyAt(first), right = keyAt(second);
        if (left != right) return left < right ? -1 : 1;
        if (isLast(left)) return 0;
    }
}

/// Lines whose texts are the same up to `depth` and go on there.
struct Run {
    Line* first;
    Line* last;
    std::size_t depth;
};

/// Sorts a few lines by what follows: comparing costs less here than reading all keys anew.
void finish(const Run& run) {
    const auto order = [&](const Line& first, const Line& second) {
        return compareTexts(first.text + run.depth, second.text + run.depth);
    };
    run.first->key = Line::differs;
    for (Line* next = run.first + 1; next != run.last; ++next) {
        Line line = *next;
        Line* place = next;
        int found = -1;
        while (place != run.first && (found = order(place[-1], line)) > 0) --place;
        // Equal lines are next to each other, in the order of their addresses.
        line.key = place != run.first && found == 0 ? Line::equalToPrevious : Line::differs;
        std::move_backward(place, next, next + 1);
        *place = line;
    }
}

/// Settles a run of equal keys, or leaves it in `open` with its next keys.
void settle(const Run& run, std::vector<Run>& open) {
    constexpr std::ptrdiff_t few = 16;
    const std::ptrdiff_t count = run.last - run.first;
    const Run deeper{run.first, run.last, run.depth + keyBytes};
    if (count == 1 || isLast(run.first->key)) {
        for (Line* line = run.first; line != run.last; ++line) line->key = Line::equalToPrevious;
        run.first->key = Line::differs;
    } else if (count <= few) {
        finish(deeper);
    } else {
        for (Line* line = run.first; line != run.last; ++line) line->key = keyAt(line->text + deeper.depth);
        open.push_back(deeper);
    }
}

/// Fetches what a line will be compared by, if another one has its key.
void prefetchShared(const Line* line, const Run& run) {
    const bool shared = (line + 1 != run.last && line[1].key == line->key) ||
                        (line != run.first && line[-1].key == line->key);
    if (shared) __builtin_prefetch(line->text + run.depth + keyBytes);
}

}  // namespace

void sort(std::vector<Line>& lines) {
    constexpr std::ptrdiff_t ahead = 32;
    if (lines.empty()) return;
    std::vector<Run> open{{lines.data(), lines.data() + lines.size(), 0}};
    while (!open.empty()) {
        const Run run = open.back();
        open.pop_back();
        if (!std::is_sorted(run.first, run.last, before)) std::sort(run.first, run.last, before);
        const Line* fetched = run.first;
        for (Line* first = run.first; first != run.last;) {
            for (; fetched != run.last && fetched - first < ahead; ++fetched) prefetchShared(fetched, run);
            Line* behind = first + 1;
            while (behind != run.last && behind->key == first->key) ++behind;
            settle({first, behind, run.depth}, open);
            first = behind;
        }
    }
}

}  // namespace line_order
