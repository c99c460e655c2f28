// The current cell shown in the colour of selected text, and in bold when that is wanted.
#pragma once

#include "controls/grid/control_state.h"
#include "elements/flexgrid/grid.h"

namespace qvx::grid {

// For a cell that has just become the current one. Does nothing with ProjectSelection off, before the control was first
// shown, and in a grid without cells.
void Project(flexgrid::Grid& grid, const ControlState& state);

// For a cell about to be left: its weight and colour are the grid's again. Bold goes whether ProjectionBold is on or
// not, as it may have been turned off while the cell was the current one.
void EndProjection(flexgrid::Grid& grid, const ControlState& state);

}  // namespace qvx::grid
