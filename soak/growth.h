// Detects whether a program keeps resources that it should have released.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qvx::soak {

// The counts are taken while the program waits for input.
struct Counts {
    long windows = 0;
    long graphics = 0;  // pens, brushes, fonts, bitmaps, regions, device contexts
    long menus = 0;
};

struct Grown {
    std::string what;  // the kind of resource, and the growth
    std::size_t from = 0;
    std::size_t to = 0;
};

// Looks for two moments of one session of which the later has far more resources, though it shows no more windows;
// returns the two of them that are nearest to each other.
std::optional<Grown> Growth(const std::vector<Counts>& counts);

// For a list that is played repeatedly, 11 times or more (fewer turns show nothing): it must not leave something behind
// with every turn. `counts` contains the counts after each turn. Where every turn may add something visible, as in a
// designer (`mayShowMore`), more windows excuse more of everything.
std::optional<Grown> GrowthByTurns(const std::vector<Counts>& counts, bool mayShowMore);

}  // namespace qvx::soak
