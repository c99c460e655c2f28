// The steps of a control's life that need no window.
#pragma once

#include <functional>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// The preparation at the first show in run mode: a combo for every list column, made by `loadCombo`; no width for the
// invisible ones; row numbers with AutoRecordNumber. Runs once; an error ends it half way with nothing marked as done,
// and comes out of here.
void Show(flexgrid::Grid& grid, ControlState& state, bool userMode, const std::function<void(int col)>& loadCombo);

// The end: unloads the combos that the list columns have, and forgets the index.
void Terminate(const flexgrid::Grid& grid, ControlState& state, const std::function<void(int col)>& unloadCombo);

// Row numbers into column 0 of all rows from 1 on, whatever the number of fixed rows; with AutoRecordNumber only.
void Renumber(flexgrid::Grid& grid, const ControlState& state);
// The same from a row on, when those above it have kept their numbers.
void RenumberFrom(flexgrid::Grid& grid, const ControlState& state, int first);

// For a changed list of invisible columns: gives every column the width of the format string again, then hides the
// listed ones.
void ApplyInVisibleColumns(flexgrid::Grid& grid, const ControlState& state);

}  // namespace qvx::grid
