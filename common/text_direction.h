// Which way a text runs: scripts are written from left to right or from right to left, and texts mix them.
#pragma once

#include "common/text.h"

namespace qvx {

// True when the first character with a direction of its own (a letter; not a digit, a blank or a mark) belongs to a
// script that runs from right to left. `otherwise` for a text without any.
bool ReadsRightToLeft(TextView text, bool otherwise) noexcept;

// Whether a text looks the same in surroundings of either direction, for certain: a number, or what begins with an
// ASCII letter and ends with one or a digit, without any other script in it.
bool LooksSameBothWays(TextView text) noexcept;

}  // namespace qvx
