// Sums and products over the data rows: those behind the fixed ones.
//
// Every cell is read with NumericValue, so that no text makes them fail: what is no number counts as 0. Cells outside
// the grid raise its error 381, once there is a cell to read at all. Results are doubles of the usual kind: what is too
// large for one becomes infinite.
#pragma once

#include <span>

#include "common/text.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Of the data rows in one column, which may be a fixed one.
double SumOfColumn(const flexgrid::Grid& grid, int col);

// Of the columns behind the fixed ones in one row, which may be a fixed one.
double SumOfRow(const flexgrid::Grid& grid, int row);

// True when there is any data row, and so any product.
inline bool HasDataRows(const flexgrid::Grid& grid) { return grid.FixedRows() < grid.Rows(); }

// The column that a number in a list of columns stands for, given as its text: half to even where it is no whole one.
// Error 6 beyond 32 bits.
int ColumnNumber(TextView text);

// The product of the columns, of which there is at least one, is taken in each data row, written into column `col2Set`
// unless that is below 0, and the sum of the products returned. A column may be in the list twice, and be the one that
// is written.
double SumOfProducts(flexgrid::Grid& grid, int col2Set, std::span<const int> columns);

}  // namespace qvx::grid
