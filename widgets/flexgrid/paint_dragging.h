// What shows on a grid while the pointer drags a border or a column.
#pragma once

#include "drawing/surface.h"
#include "widgets/flexgrid/view.h"

namespace qvx::flexgrid {

// Draws over the cells: the border that is dragged as a line across the window; the header of a column that is dragged
// inverted, and a thick line where the column would go.
void PaintDragging(const Grid& grid, const View& view, Surface& surface);

}  // namespace qvx::flexgrid
