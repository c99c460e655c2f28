#include "controls/grid/projection.h"

#include <gtest/gtest.h>

namespace qvx::grid {
namespace {

constexpr OleColor selected = Rgb(1, 2, 3);
constexpr OleColor plain = Rgb(4, 5, 6);

TEST(Projection, PaintsTheCurrentCellAndTakesItBack) {
    struct {
        const char* name;
        bool on, bold, shown;
        OleColor color;
        bool weight;
    } const cases[] = {
        {"colour only", true, false, true, selected, false},
        {"bold too", true, true, true, selected, true},
        {"off", false, true, true, 0, false},
        {"before the first show", true, true, false, 0, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        flexgrid::Grid grid;
        grid.SetForeColor(plain);
        grid.SetForeColorSel(selected);
        ControlState state;
        state.projectSelection = c.on;
        state.projectionBold = c.bold;
        state.initialised = c.shown;
        Project(grid, state);
        EXPECT_EQ(grid.CellForeColor(), c.color);
        EXPECT_EQ(grid.CellFontBold(), c.weight);
        // Turned off while the cell is the current one: the bold goes all the same.
        state.projectionBold = false;
        EndProjection(grid, state);
        EXPECT_EQ(grid.CellForeColor(), c.color == 0 ? 0 : plain);
        EXPECT_FALSE(grid.CellFontBold());
    }
}

TEST(Projection, AGridWithoutCellsHasNothingToPaint) {
    flexgrid::Grid grid;
    grid.SetFixedCols(0);
    grid.SetCols(0);
    ControlState state;
    state.initialised = true;
    EXPECT_NO_THROW(Project(grid, state));
    EXPECT_NO_THROW(EndProjection(grid, state));
}

}  // namespace
}  // namespace qvx::grid
