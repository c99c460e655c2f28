// The orders that rows can be sorted in.
//
//   generic   numbers before texts, numbers by value, texts without regard to case
//   numeric   by what NumericValue reads, so that a cell without a number counts as 0
//   string    by character numbers; "no case" by those of the folded text
//   custom    by the Compare notification
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "widgets/flexgrid/enums.h"

namespace qvx::flexgrid {

class Grid;

// Row numbers firstRow to lastRow in sorted order by the columns firstCol to lastCol; equal rows keep their order. Not
// for `none` and `custom`.
std::vector<std::uint32_t> SortedRows(const Grid& grid, GridSort order, int firstRow, int lastRow, int firstCol,
                                      int lastCol);

// The same by a comparison that answers below, at or above 0. An answer that contradicts itself gives some order, and
// every row once. About n log2 n questions.
std::vector<std::uint32_t> SortedByQuestion(int firstRow, int lastRow, const std::function<int(int, int)>& compare);

}  // namespace qvx::flexgrid
