// The interface of those that are notified of events in a grid: its window, and the control around it.
#pragma once

#include "widgets/flexgrid/cell_range.h"

namespace qvx::flexgrid {

enum class GridChange {
    texts,      // of the cells in the range
    formats,    // of the cells in the range; their texts have not changed
    layout,     // counts, sizes or order: everything from the range's first row and column on may have moved
    selection,  // the range contains the cells selected before and now
    scroll,     // TopRow or LeftCol
    look        // colours, lines, font, anything: the whole grid
};

// Called on the grid's own thread, within the call that made the change. A listener may call the grid back and may
// change it; it may remove itself. An exception from LeaveCell or Compare ends the call that caused it, before that has
// changed anything; the other notifications report completed changes, and exceptions from them are dropped.
class GridListener {
  public:
    virtual ~GridListener() = default;
    // The cursor is about to leave its cell; Row and Col still return that cell.
    virtual void LeaveCell() {}
    virtual void EnterCell() {}
    virtual void RowColChange() {}
    virtual void SelChange() {}
    // Rows or columns are about to be inserted, removed or moved, or all formats to be cleared, and the current cell
    // may become another one though the cursor stays. CellsMoved always follows, after all other notifications of the
    // change.
    virtual void CellsMove() noexcept {}
    virtual void CellsMoved() noexcept {}
    // Returns the order of two rows for the custom sort: below 0, 0 or above 0 in `result`; false leaves the answer to
    // the next listener. The rows keep their numbers until the sort has finished.
    virtual bool Compare(int /*row1*/, int /*row2*/, int& /*result*/) { return false; }
    // A visible part has changed and needs painting, though not at once.
    virtual void Invalidated(GridChange /*change*/, const CellRange& /*range*/) {}
};

}  // namespace qvx::flexgrid
