// How rules over many cells read a single one, without copying it.
#pragma once

#include <string_view>

#include "common/numeric_reading.h"
#include "widgets/flexgrid/cell_view.h"

namespace qvx::grid {

// Reads a number with NumericValue; 0 for a text that is not one.
inline double NumberIn(flexgrid::CellView cell) noexcept {
    return cell.IsLatin1() ? NumericValue(cell.Latin1()) : NumericValue(cell.Wide());
}

inline double NumberIn(std::string_view latin1) noexcept { return NumericValue(latin1); }

// Whether a text is empty or has only blanks. Tabs and other white space are text.
template <class Char>
bool IsBlank(std::basic_string_view<Char> text) noexcept {
    return text.empty() || (text.front() == Char(' ') && text.find_first_not_of(Char(' ')) == text.npos);
}
inline bool IsBlank(flexgrid::CellView cell) noexcept {
    return cell.IsLatin1() ? IsBlank(cell.Latin1()) : IsBlank(cell.Wide());
}

}  // namespace qvx::grid
