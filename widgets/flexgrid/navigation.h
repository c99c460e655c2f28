// The effect of keys and the mouse on the cursor and the selection.
#pragma once

#include <optional>

#include "common/keys.h"
#include "widgets/flexgrid/axis.h"
#include "widgets/flexgrid/cell_range.h"
#include "widgets/flexgrid/enums.h"
#include "widgets/flexgrid/hit_test.h"

namespace qvx::flexgrid {

// A step of the cursor, and the resulting position of the view.
struct Step {
    Cursor cursor;
    int topRow = 0;
    int leftCol = 0;
    friend bool operator==(const Step&, const Step&) = default;
};

// Returns the effect of a key; nullopt when the grid does not use it. Arrows move by one shown cell in the direction on
// the screen, Page Up and Page Down by the number of rows that are completely visible, Home and End to the ends of the
// row; with Ctrl, arrows, Home and End go to the ends of the grid and the page keys move across. Shift moves the far
// corner. The moved end is brought into view. `shift` is the shift state of key events.
std::optional<Step> KeyStep(int key, int shift, const Cursor& cursor, const Axis& rows, const Axis& columns);

// The kind of drag that a pressed button starts.
enum class Drag { None, Cells, Rows, Columns };

struct Press {
    Drag drag = Drag::None;
    Cursor cursor;
    friend bool operator==(const Press&, const Press&) = default;
};

// The left button was pressed on `hit`: a cell gets the cursor, or with Shift the far corner; a header selects its
// column, its row or, in the corner, everything when `bigSelection` (the grid's AllowBigSelection property) permits it
// and the selection mode agrees. Drag::None leaves the cursor as it was.
Press MousePress(const Hit& hit, bool extend, bool bigSelection, GridSelectionMode mode, const Cursor& cursor,
                 const Axis& rows, const Axis& columns);

// The pointer moved to `point` during a drag.
Cursor MouseDrag(Drag drag, const Cursor& cursor, Point point, const Axis& rows, const Axis& columns);

}  // namespace qvx::flexgrid
