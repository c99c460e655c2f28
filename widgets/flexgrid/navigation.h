// What keys and the mouse do to the cursor and the selection.
#pragma once

#include <optional>

#include "common/keys.h"
#include "widgets/flexgrid/axis.h"
#include "widgets/flexgrid/cell_range.h"
#include "widgets/flexgrid/enums.h"
#include "widgets/flexgrid/hit_test.h"

namespace qvx::flexgrid {

// A step of the cursor and where the view goes with it.
struct Step {
    Cursor cursor;
    int topRow = 0;
    int leftCol = 0;
    friend bool operator==(const Step&, const Step&) = default;
};

// What a key does; nothing when the grid has no use for it. Arrows move by one shown cell as the eye does, Page Up and
// Page Down by the rows that show whole, Home and End to the ends of the row; with Ctrl arrows, Home and End go to the
// ends of the grid and the page keys move across. Shift moves the far corner. The moved end is brought into view.
// `shift` is the shift state of key events.
std::optional<Step> KeyStep(int key, int shift, const Cursor& cursor, const Axis& rows, const Axis& columns);

// What a pressed button starts to drag.
enum class Drag { None, Cells, Rows, Columns };

struct Press {
    Drag drag = Drag::None;
    Cursor cursor;
    friend bool operator==(const Press&, const Press&) = default;
};

// The left button pressed on `hit`: a cell takes the cursor, or with Shift the far corner; a header selects its column,
// its row or, in the corner, everything when `bigSelection` (the grid's AllowBigSelection property) permits and the
// selection mode agrees. Drag::None leaves the cursor as it was.
Press MousePress(const Hit& hit, bool extend, bool bigSelection, GridSelectionMode mode, const Cursor& cursor,
                 const Axis& rows, const Axis& columns);

// The pointer moved to `point` with a drag going on.
Cursor MouseDrag(Drag drag, const Cursor& cursor, Point point, const Axis& rows, const Axis& columns);

}  // namespace qvx::flexgrid
