// Shortens a failing list of actions as far as possible.
#pragma once

#include <functional>
#include <vector>

#include "soak/action.h"

namespace qvx::soak {

// Whether a list fails in the way under investigation.
using GoesWrong = std::function<bool(const std::vector<Action>&)>;

// `actions` must fail. The shortest tail that still fails is found first, since the last actions matter most; then ever
// smaller pieces are removed. When `inTime` returns false, the result so far is returned.
std::vector<Action> Shortened(std::vector<Action> actions, const GoesWrong& goesWrong,
                              const std::function<bool()>& inTime);

}  // namespace qvx::soak
