// Rows managed as records. Members of the control's of these names come down to this; the grid's errors come out unless
// it says otherwise.
#pragma once

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "controls/grid/edit_history.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// With `byKeyColumn` and a key column, removes the data rows whose cell there holds nothing at all: a blank keeps its
// row. Otherwise those in which every cell is empty: of digits or numerics, when it reads as 0; of any other kind, when
// it holds nothing but blanks; record numbers do not count. Then numbers the rows anew. The last data row cannot go:
// where all are empty the first of them stays. No error comes out; one keeps the rows that it is about.
void RemoveEmptyRows(flexgrid::Grid& grid, const ControlState& state, bool byKeyColumn);

// Leaves one data row, emptied but for its fixed columns, in a grid that counts as unchanged. The history begins anew:
// no record of before is there, even where the row is the same.
void RemoveAllRecords(flexgrid::Grid& grid, ControlState& state, EditHistory& history);

inline constexpr TextView allColumns = u"All";

// Empties the cells of a row, a fixed one as well. With `avoidCols`, or when `clearCols` says "All": those behind the
// fixed columns that `avoidCols` does not list. Else those that `clearCols` lists, fixed ones included.
void ClearRow(flexgrid::Grid& grid, int row, TextView clearCols, TextView avoidCols);

// The first column that belongs to a record: record numbers do not.
inline int FirstRecordColumn(const ControlState& state) { return state.autoRecordNumber ? 1 : 0; }

}  // namespace qvx::grid
