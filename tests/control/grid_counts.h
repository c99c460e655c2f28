// A grid's counts of rows and columns, brought about and read as a host does.
#pragma once

#include <string>

#include "tests/support/server_under_test.h"

namespace qvx::test {

// A fixed count of 1 where there are no rows (no column, or one) is one that waits for others.
struct GridCounts {
    int rows, fixedRows, cols, fixedCols;
};

inline void SetCounts(IDispatch* grid, const GridCounts& counts) {
    const auto put = [&](const wchar_t* name, int count) { Put(grid, name, {Variant(count)}); };
    put(L"FixedRows", 0);
    put(L"FixedCols", 0);
    // Rows may go down to the fixed ones, but fixed ones may not come up to the rows.
    put(L"Rows", counts.rows > 0 && counts.rows == counts.fixedRows ? counts.rows + 1 : counts.rows);
    put(L"FixedRows", counts.fixedRows);
    put(L"Rows", counts.rows);
    put(L"Cols", counts.cols == 1 && counts.fixedCols == 1 ? 0 : counts.cols);
    put(L"FixedCols", counts.fixedCols);
    put(L"Cols", counts.cols);
}

// Rows, FixedRows, Cols and FixedCols.
inline std::string CountsOf(IDispatch* grid) {
    std::string counts;
    for (const wchar_t* name : {L"Rows", L"FixedRows", L"Cols", L"FixedCols"})
        counts += std::to_string(*Call(grid, name).ToLong()) + " ";
    return counts;
}

// The same, with five rows and columns from now on.
inline std::string CountsWhenGrown(IDispatch* grid) {
    for (const wchar_t* name : {L"Rows", L"Cols"}) Put(grid, name, {Variant(5)});
    return CountsOf(grid);
}

}  // namespace qvx::test
