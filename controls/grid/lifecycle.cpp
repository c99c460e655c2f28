#include "controls/grid/lifecycle.h"

#include "common/number_text.h"
#include "controls/grid/column_lists.h"

namespace qvx::grid {

void Show(flexgrid::Grid& grid, ControlState& state, bool userMode, const std::function<void(int col)>& loadCombo) {
    if (!userMode || state.initialised) return;
    for (int col = 0; col < grid.Cols(); ++col) {
        if (IsListedColumn(grid, state.listColumns, col)) loadCombo(col);
        if (IsListedColumn(grid, state.inVisibleColumns, col)) grid.SetColWidth(col, 0);
    }
    Renumber(grid, state);
    state.editRow = -1;
    state.editCol = -1;
    state.initialised = true;
}

void Terminate(const flexgrid::Grid& grid, ControlState& state, const std::function<void(int col)>& unloadCombo) {
    if (state.initialised) {
        for (int col = 0; col < grid.Cols(); ++col)
            if (IsListedColumn(grid, state.listColumns, col)) unloadCombo(col);
    }
    state.stringFormat.clear();
    state.changed = false;
}

void Renumber(flexgrid::Grid& grid, const ControlState& state) { RenumberFrom(grid, state, 1); }

void RenumberFrom(flexgrid::Grid& grid, const ControlState& state, int first) {
    if (!state.autoRecordNumber || grid.Cols() == 0) return;
    flexgrid::Grid::AllOrNothing whole(grid, flexgrid::Grid::AllOrNothing::Reach::texts);
    for (int row = first; row < grid.Rows(); ++row) {
        const Text number = IntegerToText(row);
        // Most rows of a long grid already have their number, and reading is faster than writing.
        if (!(grid.Cell(row, 0) == TextView(number))) grid.SetTextMatrix(row, 0, number);
    }
    whole.Commit();
}

void ApplyInVisibleColumns(flexgrid::Grid& grid, const ControlState& state) {
    flexgrid::Grid::AllOrNothing whole(grid, flexgrid::Grid::AllOrNothing::Reach::all);
    grid.SetFormatString(grid.FormatString());
    for (int col = 0; col < grid.Cols(); ++col)
        if (IsListedColumn(grid, state.inVisibleColumns, col)) grid.SetColWidth(col, 0);
    whole.Commit();
}

}  // namespace qvx::grid
