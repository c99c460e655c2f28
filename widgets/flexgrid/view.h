// A grid in a window: the positions of its cells, in device pixels of the window's client area.
#pragma once

#include <algorithm>
#include <vector>

#include "common/geometry.h"
#include "widgets/flexgrid/axis.h"
#include "widgets/flexgrid/cell_buttons.h"
#include "widgets/flexgrid/cell_marks.h"
#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/merge.h"

namespace qvx::flexgrid {

// The state that the window knows and the grid does not.
struct View {
    Size client;           // without bars and border
    bool focused = false;  // whether the window has the keyboard focus
    // On paper, these are the first row and column that are not fixed, instead of those that the grid is scrolled to,
    // and neither a selection nor a disabled grid is to be seen.
    bool onPaper = false;
    int topRow = 0;
    int leftCol = 0;
    // The position along its axis of a row's or column's border that is being dragged; -1 without a drag.
    int draggedColumn = -1;
    int draggedRow = -1;
    // The column that is being dragged to another place, and the gap along the axis where it would go; -1 for none.
    int movedColumn = -1;
    int dropLine = -1;
    const CellHits* hits = nullptr;        // null while no search is on
    const CellMarks* marks = nullptr;      // null for none
    const CellButtons* buttons = nullptr;  // null without any
    int buttonWidth = 0;
    // The cell whose button is pressed; -1 for none.
    int pressedRow = -1;
    int pressedCol = -1;
};

// The grid must outlive the axes, which refer to it.
Axis RowAxis(const Grid& grid, const View& view);
Axis ColumnAxis(const Grid& grid, const View& view);

// Returns the rectangle of a cell, or of the visible part of the merged cells that it belongs to; grid lines included.
// It may extend beyond the window. A cell that is not visible is where it would be, but at most 2^30 pixels away.
Rect CellArea(const Grid& grid, const View& view, int row, int col);

// The visible part of a grid at one time: the spans down and across, in window coordinates, and which cells are drawn
// as one.
struct Shown {
    Shown(const Grid& grid, const View& view);

    // Returns the visible cells drawn as one with this one; the cell alone when nothing is merged with it.
    CellRange Merged(int row, int col) const { return merges.RangeOf(row, col); }
    // Returns the smallest rectangle around the visible cells of the range, which may extend beyond the window; empty
    // for none.
    Rect AreaOf(const CellRange& range) const;

    std::vector<Span> rows;
    std::vector<Span> columns;
    MergeMap merges;
};

// Converts pixels at 96 dots per inch to those of a device; at least 1.
inline int ScaledAtLeastOne(int pixels, int dotsPerInch) { return std::max(1, Scaled(pixels, dotsPerInch)); }

// Returns the width of a grid line in pixels on this grid's device; 0 without lines. Fixed cells have lines of their
// own kind.
int LineWidth(const Grid& grid, bool fixed);

}  // namespace qvx::flexgrid
