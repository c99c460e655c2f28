// A grid in a window: where its cells lie, in device pixels of the window's client area.
#pragma once

#include <vector>

#include "common/geometry.h"
#include "widgets/flexgrid/axis.h"
#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/merge.h"

namespace qvx::flexgrid {

// What the window knows and the grid does not.
struct View {
    Size client;           // without bars and border
    bool focused = false;  // whether the window has the keyboard focus
    // Where the border of a row or column is being dragged to; -1 is no drag. Along its axis.
    int draggedColumn = -1;
    int draggedRow = -1;
};

// The grid must outlive the axes, which answer from it.
Axis RowAxis(const Grid& grid, const View& view);
Axis ColumnAxis(const Grid& grid, const View& view);

// The rectangle of a cell, or of the part that shows of the merged cells it belongs to; grid lines included. It may
// reach beyond the window. For a cell that does not show: where it would lie, no further than 2^30 pixels away.
Rect CellArea(const Grid& grid, const View& view, int row, int col);

// What shows in a window at one time: the spans down and across, as they lie there, and which cells are drawn as one.
struct Shown {
    Shown(const Grid& grid, const View& view);

    // The cells drawn as one with this one, as far as they show; the cell alone when nothing is merged with it.
    CellRange Merged(int row, int col) const { return merges.RangeOf(row, col); }
    // The smallest rectangle around the cells of the range that show, which may reach beyond the window; empty for
    // none.
    Rect AreaOf(const CellRange& range) const;

    std::vector<Span> rows;
    std::vector<Span> columns;
    MergeMap merges;
};

// Pixels of a grid line on this grid's device; 0 for no lines. Fixed cells have lines of their own kind.
int LineWidth(const Grid& grid, bool fixed);

}  // namespace qvx::flexgrid
