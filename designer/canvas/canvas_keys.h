// What keys mean on a form under design.
#pragma once

#include <vector>

#include "designer/document/placement.h"

namespace qvx::host::designer {

enum class CanvasAction {
    none,  // the key is not the form's
    idle,  // it is, but has nothing to do now
    nudge,
    selectNext,
    selectPrevious,
    selectContainer,
    cancelDrag,
    disarm,
    endTabOrder,
    placeTool,
    showPages,
};

struct CanvasKeyState {
    bool dragging = false;
    bool armed = false;       // a tool is chosen
    bool ordersTabs = false;  // presses give the tab order
    bool selected = false;    // there is a primary
};

CanvasAction CanvasActionOf(int key, int shift, const CanvasKeyState& state);

// What an arrow key does to the selected controls: by the grid, or with Ctrl by a pixel; with Shift to their sizes.
struct Nudge {
    int dx = 0;
    int dy = 0;
    bool fine = false;
    bool sizes = false;
};
Nudge NudgeOf(int key, int shift, Dpi dpi);
// The last of the controls is the primary.
std::vector<TwipsRect> Nudged(const std::vector<TwipsRect>& bounds, const Nudge& nudge);

}  // namespace qvx::host::designer
