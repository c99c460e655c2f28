// Where the focus goes on a form: by Tab, and by the access keys of captions.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "common/text.h"

namespace qvx::host {

// A control as far as the keyboard is concerned, in the order of the form file.
struct TabStop {
    int tabIndex = 0;
    bool reachable = false;  // visible, enabled, a tab stop, and something that can take the focus
};

// The position of the control that Tab (`forward`) or Shift+Tab reaches from `from`, or from outside all of them
// (nullopt). Goes by tabIndex, equal ones in the order of the form, around the end; nullopt when nothing is reachable.
std::optional<std::size_t> NextTabStop(const std::vector<TabStop>& stops, std::optional<std::size_t> from,
                                       bool forward);

// The character after the first single "&" of a caption ("&&" is the sign itself), in lower case for A to Z; 0 when
// there is none.
char16_t AccessKey(TextView caption);

struct AccessStop {
    int tabIndex = 0;
    Text keys;               // that it can be reached by; mostly one or none
    bool available = false;  // visible and enabled
};

// The control that Alt+`key` selects: the first with that access key after `from` in tab order, and round the end, so
// that repeated presses visit the controls that share a key in turn.
std::optional<std::size_t> FindAccessKey(const std::vector<AccessStop>& stops, char16_t key,
                                         std::optional<std::size_t> from);

}  // namespace qvx::host
