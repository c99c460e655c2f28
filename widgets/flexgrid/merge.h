// Decides which adjacent visible cells are drawn as one.
//
// Across, the cells of a row with MergeRow merge where their texts are equal; down, those of a column with MergeCol.
// Restricting rows lets two cells of a row merge only when the two above them do as well; restricting columns lets two
// cells of a column merge only when the two to their left do. Empty cells never merge, and nothing merges across the
// border between fixed and scrolling cells.
#pragma once

#include <vector>

#include "widgets/flexgrid/grid_listener.h"

namespace qvx::flexgrid {

class Grid;

class MergeMap {
  public:
    // For the cells where the given rows and columns cross; both lists ascend and exclude hidden ones. Takes time in
    // proportion to the product of their lengths.
    MergeMap(const Grid& grid, std::vector<int> rows, std::vector<int> cols);

    // Returns the cells drawn as one with this one, itself included; all are within the first and last listed row and
    // column.
    CellRange RangeOf(int row, int col) const;

  private:
    std::vector<int> rows_;
    std::vector<int> cols_;
    std::vector<CellRange> ranges_;  // row by row; empty when nothing merges
};

}  // namespace qvx::flexgrid
