#include "controls/grid/tab_way.h"

namespace qvx::grid {

CellStep StepOf(const PressedKey& tab, const flexgrid::Grid& grid, const ControlState& state) {
    const bool modified = (tab.shift & ~keys::shiftMask) != 0;
    if (tab.endsEntry || modified || !state.autoTab) return {CellStep::Kind::Leave, -1, -1};
    return tab.Backwards() ? StepBack(grid, state) : StepForward(grid, state, true);
}

}  // namespace qvx::grid
