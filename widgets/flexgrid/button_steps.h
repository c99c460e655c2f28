// The steps that a press or release of a mouse button takes.
#pragma once

#include <span>

namespace qvx::flexgrid {

// Mouse buttons, as hosts number them.
constexpr short leftButton = 1;
constexpr short rightButton = 2;
constexpr short middleButton = 4;

enum class ButtonAction {
    down,
    downTwice,  // pressed again within the system's time for a double click
    up
};

enum class ButtonStep {
    takeFocus,  // comes first: an editor over a cell closes and writes its text before anything changes
    notifyDown,
    press,  // moves the cursor, or starts a selection or the drag of a border
    notifyDblClick,
    release,  // ends what the press began
    notifyUp,
    notifyClick  // when the release ends a press that can be a click
};

// Returns the steps in order. The second press of a double click is handled like any other, since the program or the
// user may have moved the cursor after the first, and is reported as a double click in addition; its release is not
// reported as a click.
std::span<const ButtonStep> StepsOf(short button, ButtonAction action);

}  // namespace qvx::flexgrid
