// Columns that the user moves: what refers to a column by its number follows it.
#pragma once

#include "controls/grid/control_state.h"
#include "controls/grid/edit_history.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Moves a column to the place of another one as a step of the history, and does what FollowColumn does. Raises the
// grid's errors for columns that it does not have.
void MoveColumn(flexgrid::Grid& grid, ControlState& state, EditHistory& history, int from, int to);

// Does the same as a change by the host, which is no step of the history.
void MoveColumn(flexgrid::Grid& grid, ControlState& state, int from, int to);

// Follows a column that has moved: the key column, the order of the fields, and the cursor and the selection, which
// collapses to the current cell where it is torn apart.
void FollowColumn(flexgrid::Grid& grid, ControlState& state, int from, int to);

// The first column that the user may move: fixed columns, that of the record numbers and, in a grid that tracks its
// rows, those before BindFrom stay where they are.
int FirstMovableColumn(const flexgrid::Grid& grid, const ControlState& state, bool tracksRows);

// Whether the user has moved any columns, and the number that a column would have otherwise: fields that are known by
// their place belong to that.
bool ColumnsAreMoved(const flexgrid::Grid& grid, const ControlState& state);
int FieldPlaceOf(const flexgrid::Grid& grid, const ControlState& state, int col);
// The reverse: the column that would have that number.
int ColumnAtPlace(const flexgrid::Grid& grid, const ControlState& state, int place);

}  // namespace qvx::grid
