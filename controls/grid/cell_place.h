// The place of a cell in a grid, in the order of reading.
#pragma once

namespace qvx::grid {

struct CellPlace {
    int row = 0;
    int col = 0;
    friend bool operator==(const CellPlace&, const CellPlace&) = default;
    friend bool operator<(const CellPlace& a, const CellPlace& b) {
        return a.row < b.row || (a.row == b.row && a.col < b.col);
    }
};

}  // namespace qvx::grid
