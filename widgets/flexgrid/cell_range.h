// Rectangles of cells, and the cursor with its selection, by row and column numbers.
#pragma once

#include <algorithm>

namespace qvx::flexgrid {

// Cells from (top, left) to (bottom, right), both included.
struct CellRange {
    int top = 0;
    int left = 0;
    int bottom = -1;
    int right = -1;
    bool Empty() const { return bottom < top || right < left; }
    bool Contains(int row, int col) const { return row >= top && row <= bottom && col >= left && col <= right; }
    // Returns the smallest range around both; an empty one is ignored.
    CellRange Union(const CellRange& o) const {
        if (Empty() || o.Empty()) {
            return Empty() ? o : *this;
        }
        return {std::min(top, o.top), std::min(left, o.left), std::max(bottom, o.bottom), std::max(right, o.right)};
    }
    friend bool operator==(const CellRange&, const CellRange&) = default;
};

// The cursor cell and the far corner of the selection.
struct Cursor {
    int row = 0;
    int col = 0;
    int rowSel = 0;
    int colSel = 0;
    friend bool operator==(const Cursor&, const Cursor&) = default;
};

}  // namespace qvx::flexgrid
