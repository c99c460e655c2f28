// The mark in the header of a sorted column.
#pragma once

#include "drawing/surface.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

// Whether the cell is a header with the mark of a sorted column.
bool ShowsSortMark(const Grid& grid, int row, int col);

// The mark of a sorted column: an arrow, and the column's place where there are several of them, at the end of the
// header that text runs towards.
struct SortMarkLayout {
    FontSpec font;
    Text number;  // "" without one
    int height;   // of the arrow, whose width is twice that less 1
    int gap;      // around the arrow
    int numberWidth = 0;
    int Arrow() const { return 2 * height - 1; }
    int Width() const { return gap + Arrow() + gap + numberWidth; }
};

SortMarkLayout LayOutSortMark(const Grid& grid, Surface& surface, int row, int col);

// Returns the room that the mark takes in a header; 0 without one.
int SortMarkWidth(const Grid& grid, Surface& surface, int row, int col);

}  // namespace qvx::flexgrid
