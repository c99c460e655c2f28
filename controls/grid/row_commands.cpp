#include "controls/grid/row_commands.h"

#include <algorithm>

#include "common/number_text.h"
#include "controls/grid/lifecycle.h"

namespace qvx::grid {

bool SelectionIsRow(const flexgrid::Grid& grid) {
    return grid.Col() != grid.ColSel() && grid.Row() == grid.RowSel() && grid.Row() >= grid.FixedRows();
}

void InsertRow(flexgrid::Grid& grid, const ControlState& state, EditHistory& history) {
    const int row = grid.Row();
    history.InsertRows(row, 1, [&] { grid.AddItem(state.autoRecordNumber ? IntegerToText(row) : Text(), row); });
    RenumberFrom(grid, state, row + 1);
}

int DeleteRow(flexgrid::Grid& grid, const ControlState& state, EditHistory& history) {
    constexpr int lastDataRow = 1;
    const int row = grid.Row();
    if (grid.Rows() >= 3) {
        history.RemoveRows(row, 1, [&] { grid.RemoveItem(row); });
        Renumber(grid, state);
        return row;
    }
    const EditHistory::Group group(history);
    for (int col = grid.FixedCols(); col < grid.Cols(); ++col) {
        const Text before = grid.TextMatrix(lastDataRow, col);
        grid.SetTextMatrix(lastDataRow, col, {});
        history.CellChanged(grid.StructureVersion(), lastDataRow, col, before, {});
    }
    return lastDataRow;
}

void AppendRows(flexgrid::Grid& grid, const ControlState& state, EditHistory& history, int count) {
    const int at = grid.Rows();
    count = std::min(count, flexgrid::Grid::maxRows);  // which the grid refuses as it would refuse more
    Text block;
    for (int row = at; row < at + count; ++row) {
        if (state.autoRecordNumber) block += IntegerToText(row);
        block += u'\r';
    }
    history.InsertRows(at, count, [&] { grid.AddItems(block); });
}

}  // namespace qvx::grid
