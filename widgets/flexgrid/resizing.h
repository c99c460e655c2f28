// Dragging the border of a header cell to give its row or column another size. Positions are device pixels.
#pragma once

#include "common/geometry.h"
#include "widgets/flexgrid/axis.h"

namespace qvx::flexgrid {

// A border under the pointer that may be dragged.
struct Border {
    enum class Kind { None, Column, Row };
    Kind kind = Kind::None;
    int index = -1;  // the row or column that the border ends
    int start = 0;   // where that item starts: its new size is measured from here
    int grip = 0;    // from the pointer to the border, so that the line does not jump when taken
    friend bool operator==(const Border&, const Border&) = default;
};

// Columns are resized in the fixed rows, rows in the fixed columns. `allowed` is the grid's AllowUserResizing property:
// bit 0 columns, bit 1 rows. A grid without fixed rows (columns) offers no border there.
Border BorderAt(const Axis& rows, const Axis& columns, Point point, int allowed, Dpi dpi);

// Where the border would be with the pointer at `position` along the axis: within the window and at least the smallest
// size (4 pixels at 96 dots per inch) from the item's start, since a row or column dragged to nothing could not be
// taken hold of again.
int DraggedBorder(const Border& border, int position, int extent, int dotsPerInch);

// The new size in twips for a border dragged to `line`.
int DraggedSizeTwips(const Border& border, int line, int dotsPerInch);

}  // namespace qvx::flexgrid
