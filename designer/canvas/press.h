// What a press of the mouse on a form under design begins.
#pragma once

#include <optional>

#include "designer/document/placement.h"
#include "designer/document/selection.h"

namespace qvx::host::designer {

struct PressState {
    bool ordersTabs = false;  // presses give the tab order
    bool armed = false;       // a tool is chosen
    bool shift = false;
    bool control = false;
    int handleSize = 0;  // pixels
};

struct Press {
    enum class Kind {
        idle,
        orderTab,
        place,   // a new control is drawn
        size,    // the selected controls are sized by a handle of the primary
        band,    // a rubber band selects
        toggle,  // the control is added to the selection or taken out
        move,    // the control is selected, and dragging moves it
    };
    Kind kind = Kind::idle;
    std::optional<std::size_t> shape{};      // the control that was pressed
    std::optional<std::size_t> container{};  // the one that the drag is in; nothing for the form
    Grip grip{};                             // of `size`
};

Press PressAt(const Shapes& shapes, const Selection& selection, Point at, const PressState& state);

// The handle of the primary at a point.
std::optional<Grip> PrimaryGripAt(const Shapes& shapes, const Selection& selection, Point at, int handleSize);

}  // namespace qvx::host::designer
