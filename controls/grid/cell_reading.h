// What the rules over many cells read out of one, where it lies.
#pragma once

#include "common/numeric_reading.h"
#include "elements/flexgrid/cell_view.h"

namespace qvx::grid {

inline double NumberIn(flexgrid::CellView cell) noexcept {
    return cell.IsLatin1() ? NumericValue(cell.Latin1()) : NumericValue(cell.Wide());
}

// Nothing but blanks, or nothing at all. Tabs and other white space are text.
inline bool IsBlank(flexgrid::CellView cell) noexcept {
    for (std::size_t i = 0; i < cell.Size(); ++i)
        if (cell[i] != u' ') return false;
    return true;
}

}  // namespace qvx::grid
