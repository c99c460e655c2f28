#include "soak/growth.h"

#include <algorithm>
#include <cstddef>

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
    constexpr std::size_t firstTurns = 3;
    if (counts.size() < firstTurns + 4) return std::nullopt;
    // A turn may end while a dialog is open that other turns have closed, so the least of several turns counts.
    constexpr std::ptrdiff_t ends = 3;
    const auto least = [&](auto from, auto to, long Counts::*member) {
        const auto less = [&](const Counts& one, const Counts& other) { return one.*member < other.*member; };
        return (*std::min_element(from, to, less)).*member;
    };
    const auto begin = counts.begin() + firstTurns - 1;
    const auto before = [&](long Counts::*member) { return least(begin, begin + 2, member); };
    const auto after = [&](long Counts::*member) { return least(counts.end() - ends, counts.end(), member); };
    if (mayShowMore && after(&Counts::windows) > before(&Counts::windows)) return std::nullopt;
    // From the second turn that may be the least to the first of the last ones.
    const long turns = counts.end() - begin - ends - 1;
    for (const auto& [name, member] : held) {
        if (after(member) - before(member) < turns) continue;
        return Describe(name, before(member), after(member), firstTurns - 1, counts.size() - 1);
    }
    return std::nullopt;
}

}  // namespace qvx::soak
