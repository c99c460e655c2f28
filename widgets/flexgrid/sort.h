// The orders that rows can be sorted in.
//
//   generic   numbers before texts, numbers by value, texts without regard to case
//   numeric   by the result of NumericValue, so that a cell without a number counts as 0
//   string    by character numbers; "no case" by those of the folded text
//   custom    by the Compare notification
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "widgets/flexgrid/enums.h"

namespace qvx::flexgrid {

class Grid;

// Returns the row numbers firstRow to lastRow sorted by the columns firstCol to lastCol; equal rows keep their order.
// Not for `none` and `custom`.
std::vector<std::uint32_t> SortedRows(const Grid& grid, GridSort order, int firstRow, int lastRow, int firstCol,
                                      int lastCol);

// Sorts by a comparison that returns a value below, at or above 0. Inconsistent answers give some order that contains
// every row once. Calls the comparison about n log2 n times.
std::vector<std::uint32_t> SortedByQuestion(int firstRow, int lastRow, const std::function<int(int, int)>& compare);

}  // namespace qvx::flexgrid
