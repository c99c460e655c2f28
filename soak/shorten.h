// Makes a list of actions that goes wrong as short as it can be.
#pragma once

#include <functional>
#include <vector>

#include "soak/action.h"

namespace qvx::soak {

// Whether a list goes wrong in the way that is looked into.
using GoesWrong = std::function<bool(const std::vector<Action>&)>;

// `actions` goes wrong. First the shortest tail that still does is looked for, since what matters is mostly what came
// last; then ever smaller pieces are left out. `inTime` ends it with what it has by then.
std::vector<Action> Shortened(std::vector<Action> actions, const GoesWrong& goesWrong,
                              const std::function<bool()>& inTime);

}  // namespace qvx::soak
