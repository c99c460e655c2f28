#include "soak/growth.h"

#include <algorithm>

namespace qvx::soak {

namespace {

// The growth that a session is allowed: objects created at first use, and those visible at the moment.
constexpr long kept = 120;

constexpr struct {
    const char* name;
    long Counts::*member;
} held[] = {{"windows", &Counts::windows}, {"graphics objects", &Counts::graphics}, {"menus", &Counts::menus}};

Grown Describe(const char* name, long before, long after, std::size_t from, std::size_t to) {
    return {std::string(name) + " grew from " + std::to_string(before) + " to " + std::to_string(after), from, to};
}

}  // namespace

std::optional<Grown> Growth(const std::vector<Counts>& counts) {
    for (std::size_t distance = 1; distance < counts.size(); ++distance) {
        for (std::size_t from = 0; from + distance < counts.size(); ++from) {
            const Counts& before = counts[from];
            const Counts& after = counts[from + distance];
            if (after.windows > before.windows) continue;
            for (const auto& [name, member] : held) {
                if (after.*member <= before.*member + kept) continue;
                return Describe(name, before.*member, after.*member, from, from + distance);
            }
        }
    }
    return std::nullopt;
}

std::optional<Grown> GrowthByTurns(const std::vector<Counts>& counts, bool mayShowMore) {
    // The first turns create the objects that are created once.
    constexpr std::size_t firstTurns = 2;
    constexpr std::size_t span = 3;
    if (counts.size() < firstTurns + 3 * span) return std::nullopt;
    // A turn may end while a dialog is open that other turns have closed, so the least of three turns counts; and from
    // some turn on all may end so, hence what grows has to grow twice.
    const std::size_t starts[] = {firstTurns, (firstTurns + counts.size() - span) / 2, counts.size() - span};
    const auto least = [&](std::size_t start, long Counts::*member) {
        long result = counts[start].*member;
        for (std::size_t i = start; i < start + span; ++i) result = std::min(result, counts[i].*member);
        return result;
    };
    if (mayShowMore && least(starts[2], &Counts::windows) > least(starts[0], &Counts::windows)) return std::nullopt;
    for (const auto& [name, member] : held) {
        const long first = least(starts[0], member);
        const long middle = least(starts[1], member);
        const long last = least(starts[2], member);
        // One with every turn, but for the two that the least may leave out on either side.
        const auto grows = [](long before, long after, std::size_t turns) {
            return after - before + 1 >= static_cast<long>(turns);
        };
        if (!grows(first, middle, starts[1] - starts[0]) || !grows(middle, last, starts[2] - starts[1])) continue;
        // Dialogs that open one after the other and stay make a few steps; what every turn leaves behind makes many.
        std::size_t steps = 0;
        for (std::size_t i = firstTurns; i + 1 < counts.size(); ++i) {
            if (counts[i + 1].*member > counts[i].*member) ++steps;
        }
        if (2 * steps < counts.size() - firstTurns - 1) continue;
        Grown grown = Describe(name, first, last, starts[0], counts.size() - 1);
        grown.what += ", turn by turn:";
        for (const Counts& turn : counts) grown.what += " " + std::to_string(turn.*member);
        return grown;
    }
    return std::nullopt;
}

}  // namespace qvx::soak
