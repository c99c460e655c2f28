// The errors that the grid raises, with the texts that hosts know or in the same style.
#pragma once

#include "common/run_time_error.h"

namespace qvx::flexgrid {

namespace grid_errors {
constexpr int addToFixedRow = 30002;
constexpr int tooManyCells = 30006;
constexpr int fixedRowRemoval = 30011;
}  // namespace grid_errors

[[noreturn]] inline void Refuse(int number, const char16_t* description) { throw RunTimeError(number, description); }

[[noreturn]] inline void RefuseValue() { Refuse(errors::invalidPropertyValue, u"Invalid property value"); }
[[noreturn]] inline void RefuseSubscript() { Refuse(errors::invalidPropertyArrayIndex, u"Subscript out of range"); }
[[noreturn]] inline void RefuseRow() { Refuse(errors::invalidRowValue, u"Invalid Row value."); }
[[noreturn]] inline void RefuseCol() { Refuse(errors::invalidColValue, u"Invalid Col value."); }
[[noreturn]] inline void RefuseFixedRows() {
    Refuse(errors::fixedCountTooLarge, u"FixedRows must be less than the Rows value.");
}
[[noreturn]] inline void RefuseFixedCols() {
    Refuse(errors::fixedCountTooLarge, u"FixedCols must be less than the Cols value.");
}
[[noreturn]] inline void RefuseCells() {
    Refuse(grid_errors::tooManyCells, u"Unable to allocate memory for so many rows and columns.");
}
[[noreturn]] inline void RefuseLastRow() { Refuse(errors::lastRowRemoval, u"Cannot remove the last non-fixed row."); }
[[noreturn]] inline void RefuseFixedRowRemoval() {
    Refuse(grid_errors::fixedRowRemoval, u"Cannot use RemoveItem on a fixed row.");
}
[[noreturn]] inline void RefuseFixedRowAddition() {
    Refuse(grid_errors::addToFixedRow, u"Cannot use AddItem on a fixed row.");
}

}  // namespace qvx::flexgrid
