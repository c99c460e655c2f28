// What a mouse button's press or release brings, step by step.
#pragma once

#include <span>

namespace qvx::flexgrid {

// Buttons of mouse events, as hosts number them.
constexpr short leftButton = 1;
constexpr short rightButton = 2;
constexpr short middleButton = 4;

enum class ButtonAction {
    down,
    downTwice,  // again within the system's time for a double click
    up
};

enum class ButtonStep {
    takeFocus,  // first of all: an editor over a cell is left, and its text written, before anything changes
    notifyDown,
    press,  // the cursor, a selection or a border's drag
    notifyDblClick,
    release,  // ends what the press began
    notifyUp,
    notifyClick  // when the release ends a press that can be a click
};

// In their order. The second press of a double click is one like any other, since program or user may have moved the
// cursor after the first, and is told of as a double click besides; of its release no click is told.
std::span<const ButtonStep> StepsOf(short button, ButtonAction action);

}  // namespace qvx::flexgrid
