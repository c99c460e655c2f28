// The strings that name columns by caption, and the tests that every other rule makes on them.
#pragma once

#include "common/text.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// The codes of ColumnsDataType, in the order in which they are tried.
namespace data_type {
constexpr int digits = 0;
constexpr int numerics = 1;
constexpr int date = 2;
}  // namespace data_type

// Whether ";caption;" occurs anywhere in the list, regardless of case. Lists are never corrected: one that lacks its
// first or last ";" does not match the item there, a caption with a ";" of its own may match across two items, and an
// empty caption matches ";;".
bool IsListedColumn(TextView list, TextView caption);

// Whether ";caption-code;" occurs anywhere in the list, regardless of case. `code` is 0 to 9.
bool HasColumnCode(TextView list, TextView caption, int code);

// Returns the number N of the first item ";caption-N;" in the list, regardless of case: decimal digits, limited to the
// largest int. 0 without such an item.
int ColumnNumber(TextView list, TextView caption);

// Returns the caption of a column: its TextArray(col), "" in a grid without rows. Raises 381 if the grid has no such
// cell.
Text CaptionOf(const flexgrid::Grid& grid, int col);

// Do the same for a column of the grid, by its caption.
bool IsListedColumn(const flexgrid::Grid& grid, TextView list, int col);
bool HasColumnCode(const flexgrid::Grid& grid, TextView list, int col, int code);

}  // namespace qvx::grid
