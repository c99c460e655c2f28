// The steps of a control's lifetime that need no window.
#pragma once

#include <functional>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Prepares the grid when it is first shown in run mode: `loadCombo` makes a combo for every list column, the invisible
// columns get no width, and with AutoRecordNumber rows are numbered. Runs once; an error ends it midway, marks nothing
// as done, and is passed on.
void Show(flexgrid::Grid& grid, ControlState& state, bool userMode, const std::function<void(int col)>& loadCombo);

// Unloads the combos of the list columns and clears the index at the end of the control.
void Terminate(const flexgrid::Grid& grid, ControlState& state, const std::function<void(int col)>& unloadCombo);

// Writes row numbers into column 0 of all rows from 1 on, regardless of the number of fixed rows; only with
// AutoRecordNumber, and in a grid that has such a column.
void Renumber(flexgrid::Grid& grid, const ControlState& state);
// Does the same from row `first` on, when those above it have kept their numbers.
void RenumberFrom(flexgrid::Grid& grid, const ControlState& state, int first);

// Applies a changed list of invisible columns: gives every column the width of the format string again, then hides the
// listed ones.
void ApplyInVisibleColumns(flexgrid::Grid& grid, const ControlState& state);

}  // namespace qvx::grid
