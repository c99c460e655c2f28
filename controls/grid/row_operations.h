// Rows managed as records. The control's members with these names call these functions; the grid's errors are passed on
// unless noted otherwise.
#pragma once

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "controls/grid/edit_history.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// With `byKeyColumn` and a key column, removes the data rows whose cell there is empty: a blank keeps its row.
// Otherwise removes those in which every cell is empty: a cell of digits or numerics when it reads as 0, any other when
// it has only blanks; record numbers do not count. Then numbers the rows again. The last data row cannot be removed: if
// all are empty, the first of them stays. No error is passed on; the rows that cause one stay.
void RemoveEmptyRows(flexgrid::Grid& grid, const ControlState& state, bool byKeyColumn);

// Leaves one data row, emptied except for its fixed columns, in a grid that counts as unchanged. Clears the history,
// because no earlier record exists any more, even if the row is the same.
void RemoveAllRecords(flexgrid::Grid& grid, ControlState& state, EditHistory& history);

inline constexpr TextView allColumns = u"All";

// Empties the cells of a row, which may be a fixed one. With `avoidCols`, or when `clearCols` is "All": those after the
// fixed columns that `avoidCols` does not list. Otherwise those that `clearCols` lists, including fixed ones.
void ClearRow(flexgrid::Grid& grid, int row, TextView clearCols, TextView avoidCols);

// Whether every cell of the row is empty, as RemoveEmptyRows decides without a key column.
bool IsEmptyRecord(const flexgrid::Grid& grid, const ControlState& state, int row);

// Returns the first column that belongs to a record: record numbers do not.
inline int FirstRecordColumn(const ControlState& state) { return state.autoRecordNumber ? 1 : 0; }

}  // namespace qvx::grid
