// Dragging the border of a header cell to resize its row or column. Positions are in device pixels.
#pragma once

#include "common/geometry.h"
#include "widgets/flexgrid/axis.h"

namespace qvx::flexgrid {

// A border under the pointer that can be dragged.
struct Border {
    enum class Kind { None, Column, Row };
    Kind kind = Kind::None;
    int index = -1;  // the row or column that the border ends
    int start = 0;   // where that item starts: its new size is measured from here
    int grip = 0;    // from the pointer to the border, so that the line does not jump when the drag starts
    friend bool operator==(const Border&, const Border&) = default;
};

// Returns the border at a point. Columns are resized in the fixed rows, rows in the fixed columns. `allowed` is the
// grid's AllowUserResizing property: bit 0 columns, bit 1 rows. A grid without fixed rows (columns) has no such border
// for columns (rows).
Border BorderAt(const Axis& rows, const Axis& columns, Point point, int allowed, Dpi dpi);

// Returns the position of the border with the pointer at `position` along the axis: within the window and at least the
// smallest size (4 pixels at 96 dots per inch) from the item's start, since the border of a row or column of size 0
// could not be dragged again.
int DraggedBorder(const Border& border, int position, int extent, int dotsPerInch);

// Returns the new size in twips for a border dragged to `line`.
int DraggedSizeTwips(const Border& border, int line, int dotsPerInch);

}  // namespace qvx::flexgrid
