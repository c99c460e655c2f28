// A row's key: the texts of its cells one behind the other, with nothing between them, so that "ab" beside "c" is the
// key of "a" beside "bc" as well. Keys are compared without regard to case.
#pragma once

#include <cstdint>

#include "widgets/flexgrid/cell_view.h"
#include "widgets/flexgrid/record.h"

namespace qvx::grid {

// Without a copy, good until the grid is next changed. A record number in column 0 is no part of it: start at 1.
inline flexgrid::CellView RowKey(const flexgrid::RowView& cells, int firstCol) { return cells.TextFrom(firstCol); }

// The same for all keys that are equal, in whatever form they are stored.
std::uint64_t HashOfKey(flexgrid::CellView key) noexcept;

bool EqualKeys(flexgrid::CellView first, flexgrid::CellView second);

}  // namespace qvx::grid
