// The width that a column needs for the texts in it.
#pragma once

#include "drawing/surface.h"
#include "widgets/flexgrid/cell_range.h"
#include "widgets/flexgrid/view.h"

namespace qvx::flexgrid {

// Returns the columns that are fitted when the border of one is double-clicked: it alone or, when it is one of several
// columns that are selected whole, all of these.
CellRange ColumnsToFit(const Grid& grid, int col);

// Returns how many rows are looked at in each of these columns, so that the time is bounded for all of them together.
int RowsToFit(const CellRange& columns);

// Returns the width in twips at which all texts and pictures shown in a column fit, with the marks and buttons beside
// them: at most the width of the window, and at least the smallest that the user can drag a column to. The headers, the
// rows in the window and the first `rows` others that are not hidden are looked at. Cells that are merged with one
// beside them do not count, and neither do line breaks that WordWrap makes. A column without anything in it keeps its
// width.
int FittedWidth(const Grid& grid, const View& view, Surface& surface, int col, int rows);

}  // namespace qvx::flexgrid
