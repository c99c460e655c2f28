// The arrows in the cells of list columns, and the keys that open a list.
#pragma once

#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Whether the cell, which is the current one or not, has an arrow: only a cell whose list could be opened.
bool HasListArrow(const flexgrid::Grid& grid, const ControlState& state, int row, int col, bool current);

// Whether a key on the grid opens the list of the current cell: F4 and Alt+Down, in a grid with arrows.
bool OpensList(int keyCode, int shift, const flexgrid::Grid& grid, const ControlState& state);

}  // namespace qvx::grid
