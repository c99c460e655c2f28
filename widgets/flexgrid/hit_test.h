// Finds the part of the grid under a point of the window, in device pixels.
#pragma once

#include "common/geometry.h"
#include "widgets/flexgrid/axis.h"

namespace qvx::flexgrid {

struct Hit {
    int row = -1;  // -1: below the last row (or above a window without rows)
    int col = -1;  // -1: beyond the last column
    bool fixedRow = false;
    bool fixedCol = false;
    bool OnCell() const { return row >= 0 && col >= 0; }
    bool OnFixed() const { return OnCell() && (fixedRow || fixedCol); }
    friend bool operator==(const Hit&, const Hit&) = default;
};

// Returns the item at a position along the axis; -1 for none.
int ItemAt(const Axis& axis, int position);

// Returns the item at a position or, outside, the nearest visible one: the item that a dragged selection extends to. -1
// without any. With `scrollableOnly`, the first scrolled item is returned instead of a fixed one.
int NearestItemAt(const Axis& axis, int position, bool scrollableOnly);

// The point is in the window's client area.
Hit HitTest(const Axis& rows, const Axis& columns, Point point);

}  // namespace qvx::flexgrid
