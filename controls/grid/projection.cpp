#include "controls/grid/projection.h"

namespace qvx::grid {
namespace {

bool Projects(const flexgrid::Grid& grid, const ControlState& state) {
    return state.projectSelection && state.initialised && grid.Rows() > 0 && grid.Cols() > 0;
}

}  // namespace

void Project(flexgrid::Grid& grid, const ControlState& state) {
    if (!Projects(grid, state)) return;
    grid.SetCellForeColor(grid.ForeColorSel());
    if (state.projectionBold) grid.SetCellFontBold(true);
}

void EndProjection(flexgrid::Grid& grid, const ControlState& state) {
    if (!Projects(grid, state)) return;
    grid.SetCellFontBold(false);
    grid.SetCellForeColor(grid.ForeColor());
}

}  // namespace qvx::grid
