#include "widgets/flexgrid/scroll_copy.h"

#include <gtest/gtest.h>

namespace qvx::flexgrid {
namespace {

// Rows 16 pixels high, columns 64 wide, one fixed of each; a client of 10 rows and 5 columns.
constexpr Size client{320, 160};

void MakeLarge(Grid& grid) {
    grid.SetRows(100);
    grid.SetCols(50);
}

TEST(ScrollCopy, MovesWhatStaysAndBaresTheRest) {
    struct {
        const char* name;
        int oldTop, oldLeft, top, left;
        bool rightToLeft;
        std::optional<ScrollCopy> expected;
    } const cases[] = {
        {"a row down", 1, 1, 2, 1, false, ScrollCopy{{0, 16, 320, 160}, 0, -16, {0, 144, 320, 160}}},
        {"two rows up", 5, 1, 3, 1, false, ScrollCopy{{0, 16, 320, 160}, 0, 32, {0, 16, 320, 48}}},
        {"the last row that stays", 1, 1, 9, 1, false, ScrollCopy{{0, 16, 320, 160}, 0, -128, {0, 32, 320, 160}}},
        {"nothing stays", 1, 1, 10, 1, false, std::nullopt},
        {"a column to the right", 1, 1, 1, 2, false, ScrollCopy{{64, 0, 320, 160}, -64, 0, {256, 0, 320, 160}}},
        {"a column to the left", 1, 3, 1, 2, false, ScrollCopy{{64, 0, 320, 160}, 64, 0, {64, 0, 128, 160}}},
        {"right to left", 1, 1, 1, 2, true, ScrollCopy{{0, 0, 256, 160}, 64, 0, {0, 0, 64, 160}}},
        {"both ways", 1, 1, 2, 2, false, std::nullopt},
        {"neither", 2, 2, 2, 2, false, std::nullopt},
        {"from rows that are gone", 500, 1, 95, 1, false, ScrollCopy{{0, 16, 320, 160}, 0, 80, {0, 16, 320, 96}}},
    };
    for (const auto& c : cases) {
        Grid grid;
        MakeLarge(grid);
        grid.SetRightToLeft(c.rightToLeft);
        grid.SetTopRow(c.top);
        grid.SetLeftCol(c.left);
        EXPECT_EQ(FollowScroll(grid, client, c.oldTop, c.oldLeft), c.expected) << c.name;
    }
}

TEST(ScrollCopy, MergedCellsAreDrawnAnew) {
    Grid grid;
    MakeLarge(grid);
    grid.SetMergeCells(GridMerge::free);
    grid.SetTopRow(2);
    EXPECT_FALSE(FollowScroll(grid, client, 1, 1));
}

}  // namespace
}  // namespace qvx::flexgrid
