// Whether a program keeps what it should have given back.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qvx::soak {

// Taken while the program waits for input.
struct Counts {
    long windows = 0;
    long graphics = 0;  // pens, brushes, fonts, bitmaps, regions, device contexts
    long menus = 0;
};

struct Grown {
    std::string what;  // and by how much
    std::size_t from = 0;
    std::size_t to = 0;
};

// Looks for two moments of one session of which the later has far more, though it shows no more windows; the two of
// them that are nearest to each other.
std::optional<Grown> Growth(const std::vector<Counts>& counts);

// For a list that is gone through again and again: nothing may be left behind by every turn. `counts` holds what there
// was behind each turn. Where every turn may add something to see, as in a designer, more windows excuse more of
// everything.
std::optional<Grown> GrowthByTurns(const std::vector<Counts>& counts, bool mayShowMore);

}  // namespace qvx::soak
