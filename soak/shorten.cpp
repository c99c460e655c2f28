#include "soak/shorten.h"

#include <algorithm>

namespace qvx::soak {

std::vector<Action> Shortened(std::vector<Action> actions, const GoesWrong& goesWrong,
                              const std::function<bool()>& inTime) {
    for (std::size_t length = 1; length < actions.size() && inTime(); length *= 3) {
        const std::vector<Action> tail(actions.end() - static_cast<std::ptrdiff_t>(length), actions.end());
        // The list is then no longer than `length`, which ends the search.
        if (goesWrong(tail)) actions = tail;
    }
    for (std::size_t piece = std::max<std::size_t>(actions.size() / 2, 1);;) {
        bool shorter = false;
        // From the end, so that removed actions there need not be played while the beginning is tried.
        for (std::size_t end = actions.size(); end > 0 && inTime();) {
            const std::size_t begin = end > piece ? end - piece : 0;
            std::vector<Action> rest = actions;
            rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(begin),
                       rest.begin() + static_cast<std::ptrdiff_t>(end));
            if (goesWrong(rest)) {
                actions = std::move(rest);
                shorter = true;
            }
            end = begin;
        }
        if (!inTime() || (piece == 1 && !shorter)) return actions;
        piece = std::max<std::size_t>(piece / 2, 1);
    }
}

}  // namespace qvx::soak
