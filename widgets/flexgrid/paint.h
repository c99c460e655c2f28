// Draws a grid.
#pragma once

#include "drawing/surface.h"
#include "widgets/flexgrid/view.h"

namespace qvx::flexgrid {

// Draws the visible parts in `dirty` (pixels of the client area) and nothing outside it. The surface's resolution must
// be that of the grid's text metrics.
void Paint(const Grid& grid, const View& view, Surface& surface, const Rect& dirty);

// Returns the rectangle of the focus frame in a cell's area, and of the editor that is placed over the cell: the area
// without its grid lines.
Rect InsideLines(const Grid& grid, const Rect& area, bool fixed);

// Returns the area of the button at the end of a cell that text runs towards; empty where there is none. A cell that is
// not twice as wide as the button has none.
Rect ButtonArea(const Grid& grid, const View& view, int row, int col);

// Whether a cell's text does not fit into its cell and is cut off.
bool IsCut(const Grid& grid, const View& view, Surface& surface, int row, int col);

}  // namespace qvx::flexgrid
