// The line below the rows of a grid, with a text for each column. It does not scroll with the rows.
#pragma once

#include "drawing/surface.h"
#include "widgets/flexgrid/cell_footer.h"
#include "widgets/flexgrid/view.h"

namespace qvx::flexgrid {

// Returns the height of the line in pixels: that of a row, and the rule above it.
int FooterHeight(const Grid& grid);

// Draws the line into an area of the surface that is as wide as the view. Columns are where the view has them.
void PaintFooter(const Grid& grid, const View& view, const CellFooter& footer, Surface& surface, const Rect& area);

}  // namespace qvx::flexgrid
