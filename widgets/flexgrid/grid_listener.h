// Who wants to know what happens in a grid: its window, and the control around it.
#pragma once

#include "widgets/flexgrid/cell_range.h"

namespace qvx::flexgrid {

enum class GridChange {
    texts,      // of the cells in the range
    formats,    // of the cells in the range, their texts as they were
    layout,     // counts, sizes or order: everything from the range's first row and column on may have moved
    selection,  // the range holds the cells selected before and now
    scroll,     // TopRow or LeftCol
    look        // colours, lines, font, anything: all of it
};

// Called on the grid's own thread, within the call that made the change. A listener may call the grid back and may
// change it; it may remove itself. What it throws out of LeaveCell or Compare ends the call that asked it, before that
// has changed anything; the others tell of what is done, and what is thrown out of them is lost.
class GridListener {
  public:
    virtual ~GridListener() = default;
    // The cursor is about to leave its cell; Row and Col still tell which.
    virtual void LeaveCell() {}
    virtual void EnterCell() {}
    virtual void RowColChange() {}
    virtual void SelChange() {}
    // Rows or columns are about to come, go or change places, or all formats to go, and the current cell may become
    // another one though the cursor stays. CellsMoved always follows, after all else that is told of the change.
    virtual void CellsMove() noexcept {}
    virtual void CellsMoved() noexcept {}
    // Order of two rows for the custom sort: below 0, 0 or above 0 in `result`; false leaves the answer to the next
    // listener. The rows keep their numbers until the sort is over.
    virtual bool Compare(int /*row1*/, int /*row2*/, int& /*result*/) { return false; }
    // Something shown has changed and wants painting; nothing need be done at once.
    virtual void Invalidated(GridChange /*change*/, const CellRange& /*range*/) {}
};

}  // namespace qvx::flexgrid
