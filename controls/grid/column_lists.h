// The strings that name columns by caption, and the two tests every other rule makes on them.
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

// True when ";caption;" stands anywhere in the list, whatever its case. Lists are never repaired: one that lacks its
// first or last ";" does not match the item there, a caption with a ";" of its own may match across two items, and an
// empty caption is matched by ";;".
bool IsListedColumn(TextView list, TextView caption);

// True when ";caption-code;" stands anywhere in the list, whatever its case. `code` is 0 to 9.
bool HasColumnCode(TextView list, TextView caption, int code);

// The number N of the first item ";caption-N;" in the list, whatever its case: decimal digits, and the largest int for
// more than it holds. 0 without such an item.
int ColumnNumber(TextView list, TextView caption);

// What stands above a column: its TextArray(col), nothing in a grid without rows. Raises 381 where the grid has no such
// cell.
Text CaptionOf(const flexgrid::Grid& grid, int col);

// The same for a column of the grid, by its caption.
bool IsListedColumn(const flexgrid::Grid& grid, TextView list, int col);
bool HasColumnCode(const flexgrid::Grid& grid, TextView list, int col, int code);

}  // namespace qvx::grid
