#include "controls/grid/row_commands.h"

#include "common/number_text.h"
#include "controls/grid/lifecycle.h"

namespace qvx::grid {

bool SelectionIsRow(const flexgrid::Grid& grid) {
    return grid.Col() != grid.ColSel() && grid.Row() == grid.RowSel() && grid.Row() >= grid.FixedRows();
}

void InsertRow(flexgrid::Grid& grid, const ControlState& state) {
    const int row = grid.Row();
    grid.AddItem(state.autoRecordNumber ? IntegerToText(row) : Text(), row);
    RenumberFrom(grid, state, row + 1);
}

int DeleteRow(flexgrid::Grid& grid, const ControlState& state) {
    constexpr int lastDataRow = 1;
    const int row = grid.Row();
    if (grid.Rows() >= 3) {
        grid.RemoveItem(row);
        Renumber(grid, state);
        return row;
    }
    for (int col = grid.FixedCols(); col < grid.Cols(); ++col) grid.SetTextMatrix(lastDataRow, col, {});
    return lastDataRow;
}

}  // namespace qvx::grid
