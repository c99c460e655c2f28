#include "controls/grid/column_order.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <vector>

#include "controls/grid/row_operations.h"
#include "widgets/flexgrid/column_drag.h"

namespace qvx::grid {

using flexgrid::AfterMove;

namespace {

// Whether the order is that of a grid with so many columns.
bool IsOrderOf(const std::vector<int>& order, int columns) { return std::ssize(order) == columns; }

}  // namespace

void MoveColumn(flexgrid::Grid& grid, ControlState& state, EditHistory& history, int from, int to) {
    state.columnOrder.reserve(static_cast<std::size_t>(grid.Cols()));
    history.MoveColumn(from, to);
    FollowColumn(grid, state, from, to);
}

void MoveColumn(flexgrid::Grid& grid, ControlState& state, int from, int to) {
    state.columnOrder.reserve(static_cast<std::size_t>(grid.Cols()));
    grid.SetColPosition(from, to);
    FollowColumn(grid, state, from, to);
}

void FollowColumn(flexgrid::Grid& grid, ControlState& state, int from, int to) {
    if (state.keyColumn >= 0) state.keyColumn = AfterMove(state.keyColumn, from, to);
    std::vector<int>& order = state.columnOrder;
    if (!IsOrderOf(order, grid.Cols())) {
        order.resize(static_cast<std::size_t>(grid.Cols()));
        std::iota(order.begin(), order.end(), 0);
    }
    const auto at = order.begin();
    if (from < to)
        std::rotate(at + from, at + from + 1, at + to + 1);
    else
        std::rotate(at + to, at + from, at + from + 1);

    flexgrid::Cursor cursor = grid.CurrentCursor();
    const int width = std::abs(cursor.colSel - cursor.col);
    cursor.col = AfterMove(cursor.col, from, to);
    cursor.colSel = AfterMove(cursor.colSel, from, to);
    if (std::abs(cursor.colSel - cursor.col) != width) {
        cursor.rowSel = cursor.row;
        cursor.colSel = cursor.col;
    }
    grid.Select(cursor);
}

int FirstMovableColumn(const flexgrid::Grid& grid, const ControlState& state, bool tracksRows) {
    return std::max({grid.FixedCols(), FirstRecordColumn(state), tracksRows ? state.bindFrom : 0});
}

bool ColumnsAreMoved(const flexgrid::Grid& grid, const ControlState& state) {
    return IsOrderOf(state.columnOrder, grid.Cols()) &&
           !std::is_sorted(state.columnOrder.begin(), state.columnOrder.end());
}

int FieldPlaceOf(const flexgrid::Grid& grid, const ControlState& state, int col) {
    return IsOrderOf(state.columnOrder, grid.Cols()) ? state.columnOrder[static_cast<std::size_t>(col)] : col;
}

int ColumnAtPlace(const flexgrid::Grid& grid, const ControlState& state, int place) {
    const std::vector<int>& order = state.columnOrder;
    if (!IsOrderOf(order, grid.Cols())) return place;
    return static_cast<int>(std::find(order.begin(), order.end(), place) - order.begin());
}

}  // namespace qvx::grid
