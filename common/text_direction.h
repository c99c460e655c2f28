// The direction of a text: scripts are written from left to right or from right to left, and texts mix them.
#pragma once

#include "common/text.h"

namespace qvx {

// Returns true when the first character with a direction of its own (a letter; not a digit, a blank or a mark) belongs
// to a script that is written from right to left. Returns `otherwise` for a text without such a character.
bool ReadsRightToLeft(TextView text, bool otherwise) noexcept;

// Returns whether a text is certain to look the same in surroundings of either direction: a number, or a text that
// begins with an ASCII letter, ends with one or a digit, and contains no other script.
bool LooksSameBothWays(TextView text) noexcept;

}  // namespace qvx
