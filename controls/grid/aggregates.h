// Sums and products over the data rows: those after the fixed ones.
//
// Every cell is read with NumericValue, so that no text is an error: what is not a number counts as 0. Cells outside
// the grid raise its error 381, provided that there is a cell to read at all. Results are doubles: what is too large
// for one becomes infinite.
#pragma once

#include <span>

#include "common/text.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Returns the sum of the data rows in one column, which may be a fixed one.
double SumOfColumn(const flexgrid::Grid& grid, int col);

// Returns the sum of the columns after the fixed ones in one row, which may be a fixed one.
double SumOfRow(const flexgrid::Grid& grid, int row);

// Whether there is any data row, and so any product.
inline bool HasDataRows(const flexgrid::Grid& grid) { return grid.FixedRows() < grid.Rows(); }

// Reads the number of a column from its text in a list of columns, rounded half to even where it is not whole. Raises
// error 6 beyond 32 bits.
int ColumnNumber(TextView text);

// Computes the product of the columns (at least one) in each data row, writes it into column `col2Set` unless that is
// below 0, and returns the sum of the products. A column may be in the list twice, and may be the one that is written.
double SumOfProducts(flexgrid::Grid& grid, int col2Set, std::span<const int> columns);

}  // namespace qvx::grid
