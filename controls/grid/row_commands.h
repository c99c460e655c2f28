// What the keyboard does to whole rows: a row inserted above the current one, the selected row deleted, rows added at
// the end. Each is a step of the history.
#pragma once

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "controls/grid/edit_history.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Whether the Delete key means the row: what is highlighted spans columns and stays within one row that is not fixed,
// as it always does while rows are selected whole (SelectionMode). Else it means the current cell.
bool SelectionIsRow(const flexgrid::Grid& grid);

// An empty row above the current one, which gets its number and moves those below on by one when rows are numbered. The
// cursor stays where it is, on the new row. Raises the grid's error for a fixed row.
void InsertRow(flexgrid::Grid& grid, const ControlState& state, EditHistory& history);

// Removes the current row and numbers the others anew. A grid of fewer than three rows keeps its last: row 1 is emptied
// from the first scrolling column on. Returns the number of the row that went, which hosts are told as it was noted.
// Raises the grid's errors; nothing has changed then.
int DeleteRow(flexgrid::Grid& grid, const ControlState& state, EditHistory& history);

// Rows at the end, numbered when rows are. Raises the grid's error when there cannot be so many.
void AppendRows(flexgrid::Grid& grid, const ControlState& state, EditHistory& history, int count);

}  // namespace qvx::grid
