// The index from captions to column numbers.
#pragma once

#include <utility>
#include <vector>

#include "common/text.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

struct ColumnIndex {
    // Column numbers with their final keys, in column order; keys differ in more than case.
    std::vector<std::pair<Text, int>> entries;
    // All keys as "[key],[key]".
    Text stringFormat;
};

// Makes the index of all columns. A caption that is already a key gets the first free of the suffixes 1, 2, 3 ...,
// counted separately for each column: Qty, Qty, Qty give Qty, Qty1, Qty2.
ColumnIndex RefreshColIndex(const flexgrid::Grid& grid);

}  // namespace qvx::grid
