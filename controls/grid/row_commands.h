// The keyboard's commands for whole rows: insert a row above the current one, delete the selected row, add rows at the
// end. Each is a step of the history.
#pragma once

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "controls/grid/edit_history.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Whether the Delete key means the row: the selection spans columns and stays within one row that is not fixed, which
// always holds while whole rows are selected (SelectionMode). Otherwise the key means the current cell.
bool SelectionIsRow(const flexgrid::Grid& grid);

// Inserts an empty row above the current one; when rows are numbered it gets the current row's number and those below
// are renumbered. The cursor stays where it is, on the new row. Raises the grid's error for a fixed row.
void InsertRow(flexgrid::Grid& grid, const ControlState& state, EditHistory& history);

// Removes the current row and numbers the others again. A grid of fewer than three rows keeps its last one: row 1 is
// emptied from the first scrolling column on. Returns the number of the removed or emptied row, for the event. Raises
// the grid's errors; nothing has changed then.
int DeleteRow(flexgrid::Grid& grid, const ControlState& state, EditHistory& history);

// Adds rows at the end, numbered when rows are. Raises the grid's error when there cannot be so many.
void AppendRows(flexgrid::Grid& grid, const ControlState& state, EditHistory& history, int count);

}  // namespace qvx::grid
