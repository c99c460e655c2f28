// The keys of the find bar: those that open it and go from hit to hit on the grid, and those in the bar itself.
#pragma once

#include "controls/grid/control_state.h"

namespace qvx::grid {

enum class FindAction {
    None,
    Find,     // into the field of the searched text
    Replace,  // into that of the replacement
    Next,     // to the next hit
    Previous,
    // These in the bar only.
    ReplaceThis,
    ReplaceAll,
    Close,
    NextField,
    PreviousField,
    SelectAll,
    Push,  // the button that has the focus
};

// Returns the action of a key on the grid or in an open editor; without FindBar there is none. In an editor, Ctrl+H
// deletes a character.
FindAction DecideFindKey(int keyCode, int shift, const ControlState& state);

enum class BarField { Text, Replacement, Choice, Button };
FindAction DecideBarKey(int keyCode, int shift, BarField field);

// Whether a key that the host could use too belongs to the bar, which has the focus.
bool BarKeepsKey(int keyCode, int shift);

}  // namespace qvx::grid
