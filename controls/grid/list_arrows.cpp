#include "controls/grid/list_arrows.h"

#include "common/keys.h"
#include "controls/grid/cell_edit.h"
#include "controls/grid/column_lists.h"

namespace qvx::grid {

bool HasListArrow(const flexgrid::Grid& grid, const ControlState& state, int row, int col, bool current) {
    if (state.listArrows == ListArrows::none || (state.listArrows == ListArrows::currentCell && !current)) return false;
    return IsListedColumn(grid, state.listColumns, col) && MayEdit(grid, state, row, col);
}

bool OpensList(int keyCode, int shift, const flexgrid::Grid& grid, const ControlState& state) {
    const bool opens = keyCode == keys::f4 ? shift == 0 : keyCode == keys::down && shift == keys::altMask;
    return opens && grid.Row() < grid.Rows() && grid.Col() < grid.Cols() &&
           HasListArrow(grid, state, grid.Row(), grid.Col(), true);
}

}  // namespace qvx::grid
