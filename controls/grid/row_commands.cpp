#include "controls/grid/row_commands.h"

#include <algorithm>
#include <vector>

#include "common/number_text.h"
#include "controls/grid/lifecycle.h"

namespace qvx::grid {

bool SelectionIsRow(const flexgrid::Grid& grid) {
    const flexgrid::CellRange selected = grid.Selection();
    return selected.left != selected.right && selected.top == selected.bottom && selected.top >= grid.FixedRows();
}

namespace {

// Executes a change of rows and then numbers them again from row `first` on: both or neither.
template <class Change>
void ChangeNumbered(flexgrid::Grid& grid, const ControlState& state, EditHistory& history, int first, Change change) {
    if (!state.autoRecordNumber) {
        change();
        return;
    }
    EditHistory::WholeGroup whole(history, flexgrid::Grid::AllOrNothing::Reach::all);
    change();
    RenumberFrom(grid, state, first);
    whole.Commit();
}

}  // namespace

void InsertRow(flexgrid::Grid& grid, const ControlState& state, EditHistory& history) {
    const int row = grid.Row();
    ChangeNumbered(grid, state, history, row + 1, [&] {
        history.InsertRows(row, 1, [&] { grid.AddItem(state.autoRecordNumber ? IntegerToText(row) : Text(), row); });
    });
}

int DeleteRow(flexgrid::Grid& grid, const ControlState& state, EditHistory& history) {
    const int row = grid.Row();
    const int lastDataRow = grid.Rows() == 2 && grid.RowFiltered(1) ? row : 1;
    if (grid.Rows() >= 3) {
        ChangeNumbered(grid, state, history, 1, [&] { history.RemoveRows(row, 1, [&] { grid.RemoveItem(row); }); });
        return row;
    }
    const int first = grid.FixedCols();
    const flexgrid::RowView empty(nullptr);
    const int count = std::max(grid.Cols() - first, 0);
    EditHistory::WholeGroup whole(history, flexgrid::Grid::AllOrNothing::Reach::texts);
    grid.ForEachRow(lastDataRow, lastDataRow, [&](int, const flexgrid::RowView& cells) {
        history.CellsChanged(grid.StructureVersion(), lastDataRow, first, cells, empty, count);
    });
    grid.SetCells(lastDataRow, first, empty, count);
    whole.Commit();
    return lastDataRow;
}

void AppendRows(flexgrid::Grid& grid, const ControlState& state, EditHistory& history, int count) {
    const int at = grid.Rows();
    count = std::min(count, flexgrid::Grid::maxRows);  // the grid refuses it like any larger number
    Text block;
    for (int row = at; row < at + count; ++row) {
        if (state.autoRecordNumber) block += IntegerToText(row);
        block += u'\r';
    }
    history.InsertRows(at, count, [&] { grid.AddItems(block); });
}

}  // namespace qvx::grid
