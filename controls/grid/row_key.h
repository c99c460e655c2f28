// A row's key: the texts of its cells one after the other, with nothing between them, so that "ab" beside "c" has the
// same key as "a" beside "bc". Keys are compared without regard to case.
#pragma once

#include <cstdint>

#include "widgets/flexgrid/cell_view.h"
#include "widgets/flexgrid/record.h"

namespace qvx::grid {

// Returns the key without a copy, valid until the grid is next changed. A record number in column 0 is not part of it:
// `firstCol` is then 1.
inline flexgrid::CellView RowKey(const flexgrid::RowView& cells, int firstCol) { return cells.TextFrom(firstCol); }

// Returns a hash that is the same for all equal keys, in whatever form they are stored.
std::uint64_t HashOfKey(flexgrid::CellView key) noexcept;

// Whether two keys are equal without regard to case.
bool EqualKeys(flexgrid::CellView first, flexgrid::CellView second);

}  // namespace qvx::grid
