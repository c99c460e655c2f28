#include "widgets/flexgrid/stale_area.h"

#include <gtest/gtest.h>

namespace qvx::flexgrid {
namespace {

// Rows 16 pixels high, columns 64 wide; a client of 10 rows and 5 columns.
constexpr Rect client{0, 0, 320, 160};

TEST(StaleArea, IsWhatNoLongerShowsTheGrid) {
    struct Case {
        const char* name;
        void (*change)(Grid&, StaleArea&);
        bool picture;
        Rect stale;
        Rect requested;
    };
    constexpr Rect pixel{0, 0, 1, 1};
    const auto cells = [](Grid&, StaleArea& stale) {
        stale.AddCells({2, 1, 2, 1});
        stale.AddCells({3, 2, 3, 2});
    };
    const auto row = [](Grid& grid, StaleArea&) { grid.SetTopRow(2); };
    const Case cases[] = {
        {"nothing", [](Grid&, StaleArea&) {}, true, {}, pixel},
        {"cells, as one rectangle", cells, true, {64, 32, 192, 64}, pixel},
        {"cells out of sight",
         [](Grid&, StaleArea& stale) {
             stale.AddCells({50, 1, 50, 1});
         },
         true,
         {},
         pixel},
        {"cells beside merged ones",
         [](Grid& grid, StaleArea& stale) {
             grid.SetMergeCells(GridMerge::free), stale.AddCells({2, 1, 2, 1});
         },
         true, client, pixel},
        {"a row that came into sight", row, true, {0, 144, 320, 160}, client},
        {"the same without a picture to move", row, false, client, client},
        {"a row and a cell",
         [](Grid& grid, StaleArea& stale) {
             grid.SetTopRow(2), stale.AddCells({5, 1, 5, 1});
         },
         true, client, client},
        {"all and a cell",
         [](Grid&, StaleArea& stale) {
             stale.AddAll(), stale.AddCells({2, 1, 2, 1});
         },
         true, client, client},
    };
    for (const Case& c : cases) {
        Grid grid;
        grid.SetRows(100);
        grid.SetCols(50);
        StaleArea stale;
        EXPECT_EQ(stale.Take(grid, client), client) << "at first";
        EXPECT_FALSE(stale.Any(grid));
        c.change(grid, stale);
        EXPECT_EQ(stale.AreaToRequest(grid, client), c.requested) << c.name;
        const View view{{client.Width(), client.Height()}};
        stale.SettleCells(grid, view);
        if (stale.Scrolled(grid)) stale.FollowView(grid, view.client, c.picture);
        EXPECT_EQ(stale.Area(client), c.stale) << c.name;
        EXPECT_EQ(stale.Take(grid, client), c.stale) << c.name;
        EXPECT_FALSE(stale.Any(grid)) << c.name;
    }
}

}  // namespace
}  // namespace qvx::flexgrid
