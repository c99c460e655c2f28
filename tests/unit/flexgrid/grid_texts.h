// The common parts of the grid's tests: filling and reading it, and the errors that it raises.
#pragma once

#include <string>

#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

// Returns the number of the error that a call raises, 0 when it raises none.
template <class Call>
int ErrorOf(Call call) {
    try {
        call();
    } catch (const RunTimeError& error) {
        return error.Number();
    }
    return 0;
}

// Returns all rows as one text, "a,b/c,d".
inline std::string Shown(const Grid& grid) {
    std::string shown;
    for (int row = 0; row < grid.Rows(); ++row) {
        shown += row > 0 ? "/" : "";
        for (int col = 0; col < grid.Cols(); ++col) {
            shown += col > 0 ? "," : "";
            for (const char16_t unit : grid.TextMatrix(row, col)) {
                shown += static_cast<char>(unit);
            }
        }
    }
    return shown;
}

inline void Load(Grid& grid, int fixedRows, int fixedCols, int cols, TextView block) {
    grid.SetFixedRows(0);
    grid.SetFixedCols(0);
    grid.SetRows(0);
    grid.SetCols(cols);
    grid.AddItems(block);
    grid.SetFixedRows(fixedRows);
    grid.SetFixedCols(fixedCols);
}

}  // namespace qvx::flexgrid
