// What the user is doing on the form with the mouse at present.
#pragma once

#include <optional>
#include <vector>

#include "designer/canvas/drag.h"
#include "designer/document/selection.h"

namespace qvx::host::designer {

struct Interaction {
    Drag drag;
    std::optional<ObjectId> container;  // the control that the drag began in; nothing for the form
    bool adds = false;                  // a rubber band adds to what is selected

    bool ordersTabs = false;         // presses give the controls their places in the tab order
    std::vector<ObjectId> tabsDone;  // the controls that have been pressed so far

    // Whether the drag is one that moves, sizes or places controls.
    bool MovesControls() const { return drag.Under() && drag.Moved() && drag.What() != Drag::Kind::band; }
    void OrderTabs(bool on) {
        ordersTabs = on;
        tabsDone.clear();
    }
};

}  // namespace qvx::host::designer
