// Keys, clicks, drags of the selection, and drags of header borders.
#include "widgets/flexgrid/navigation.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "common/keys.h"
#include "tests/unit/flexgrid/axis_of.h"
#include "widgets/flexgrid/button_steps.h"
#include "widgets/flexgrid/column_drag.h"
#include "widgets/flexgrid/resizing.h"
#include "widgets/flexgrid/scrolling.h"
#include "widgets/flexgrid/view.h"

namespace qvx::flexgrid {
namespace {

// 100 rows of 16 pixels with five showing whole behind the header, row 50 hidden; 6 columns of 50 with three showing
// behind the fixed one, column 3 hidden.
Axis Rows(int first) {
    return AxisOf(100, 1, first, 96, [](int i) { return i == 50 ? 0 : 16; });
}
Axis Columns(int first) {
    return AxisOf(6, 1, first, 200, [](int i) { return i == 3 ? 0 : 50; });
}

std::string Show(const Step& s) {
    return std::to_string(s.cursor.row) + "," + std::to_string(s.cursor.col) + ":" + std::to_string(s.cursor.rowSel) +
           "," + std::to_string(s.cursor.colSel) + " top " + std::to_string(s.topRow) + " left " +
           std::to_string(s.leftCol);
}

TEST(Keys, MoveTheCursorAndBringItIntoView) {
    constexpr int shift = keys::shiftMask;
    constexpr int ctrl = keys::controlMask;
    struct Case {
        int key, state;
        Cursor from;
        int top, left;
        const char* to;
    };
    const Case cases[] = {
        {keys::down, 0, {44, 2, 44, 2}, 40, 1, "45,2:45,2 top 41 left 1"},
        {keys::down, 0, {49, 2, 49, 2}, 46, 1, "51,2:51,2 top 46 left 1"},
        {keys::up, 0, {1, 2, 1, 2}, 1, 1, "1,2:1,2 top 1 left 1"},
        {keys::right, 0, {2, 2, 2, 2}, 1, 1, "2,4:2,4 top 1 left 1"},
        {keys::right, 0, {2, 4, 2, 4}, 1, 1, "2,5:2,5 top 1 left 2"},
        {keys::down, shift, {2, 2, 3, 4}, 1, 1, "2,2:4,4 top 1 left 1"},
        {keys::left, 0, {2, 5, 8, 2}, 1, 1, "2,4:2,4 top 1 left 1"},
        {keys::pageDown, 0, {3, 1, 3, 1}, 1, 1, "8,1:8,1 top 6 left 1"},
        {keys::pageDown, 0, {97, 1, 97, 1}, 93, 1, "99,1:99,1 top 95 left 1"},
        {keys::pageUp, shift, {9, 1, 9, 1}, 6, 1, "9,1:4,1 top 1 left 1"},
        {keys::pageDown, 0, {2, 1, 2, 1}, 60, 1, "7,1:7,1 top 7 left 1"},
        {keys::home, 0, {9, 4, 9, 4}, 8, 2, "9,1:9,1 top 8 left 1"},
        {keys::end, 0, {9, 1, 9, 1}, 8, 1, "9,5:9,5 top 8 left 2"},
        {keys::home, ctrl, {60, 4, 60, 4}, 58, 2, "1,1:1,1 top 1 left 1"},
        {keys::end, ctrl | shift, {60, 4, 60, 4}, 58, 2, "60,4:99,5 top 95 left 2"},
        {keys::up, ctrl, {60, 4, 60, 4}, 58, 2, "1,4:1,4 top 1 left 2"},
        {keys::pageDown, ctrl, {2, 1, 2, 1}, 1, 1, "2,5:2,5 top 1 left 2"},
    };
    for (const Case& c : cases) {
        const auto step = KeyStep(c.key, c.state, c.from, Rows(c.top), Columns(c.left));
        ASSERT_TRUE(step) << c.to;
        EXPECT_EQ(Show(*step), c.to);
    }
    EXPECT_FALSE(KeyStep(keys::f2, 0, {}, Rows(1), Columns(1)));
    const Axis mirrored = Mirrored(Columns(1));
    EXPECT_EQ(KeyStep(keys::left, 0, {2, 2, 2, 2}, Rows(1), mirrored)->cursor, (Cursor{2, 4, 2, 4}));
    EXPECT_EQ(KeyStep(keys::right, ctrl, {2, 2, 2, 2}, Rows(1), mirrored)->cursor, (Cursor{2, 1, 2, 1}));
    EXPECT_EQ(KeyStep(keys::home, 0, {2, 2, 2, 2}, Rows(1), mirrored)->cursor, (Cursor{2, 1, 2, 1}));
    EXPECT_FALSE(KeyStep(keys::down, keys::altMask, {1, 1, 1, 1}, Rows(1), Columns(1)));
    EXPECT_FALSE(KeyStep(keys::down, 0, {}, AxisOf(0, 0, 0, 96, [](int) { return 16; }), Columns(1)));
    const Axis noHeader = AxisOf(100, 0, 20, 96, [](int) { return 16; });
    EXPECT_EQ(KeyStep(keys::up, keys::controlMask, {20, 2, 20, 2}, noHeader, Columns(1))->cursor, (Cursor{0, 2, 0, 2}));
    const Axis allHidden = AxisOf(4, 1, 1, 96, [](int) { return 0; });
    EXPECT_EQ(Show(*KeyStep(keys::end, keys::controlMask, {2, 1, 2, 1}, allHidden, Columns(1))),
              "2,5:2,5 top 1 left 2");
}

// Columns 64 wide: one header, two frozen ones, and seven that scroll in a window of five.
TEST(FrozenColumns, TakeTheCursorAndStayWhenTheOthersScroll) {
    Grid grid;
    grid.SetCols(10);
    grid.SetRows(5);
    View view{{320, 100}};
    grid.SetFrozenCols(2);
    EXPECT_EQ(grid.LeftCol(), 3);
    const auto step = [&](int key, int col) {
        const auto to = KeyStep(key, 0, {1, col, 1, col}, RowAxis(grid, view), ColumnAxis(grid, view));
        grid.SetLeftCol(to->leftCol);
        return std::to_string(to->cursor.col) + " at " + std::to_string(grid.LeftCol());
    };
    EXPECT_EQ(step(keys::end, 1), "9 at 8");
    EXPECT_EQ(step(keys::left, 9), "8 at 8");
    EXPECT_EQ(step(keys::home, 8), "1 at 8") << "no need to scroll";
    EXPECT_EQ(step(keys::right, 1), "2 at 8");
    EXPECT_EQ(step(keys::right, 2), "3 at 3");
    const Bar bar = BarOf(ColumnAxis(grid, view));
    EXPECT_EQ(bar.min, 3);
    EXPECT_EQ(LargestFirst(ColumnAxis(grid, view)), 8);
    const Hit hit = HitTest(RowAxis(grid, view), ColumnAxis(grid, view), {70, 20});
    EXPECT_EQ(hit.col, 1);
    EXPECT_FALSE(hit.OnFixed());
    grid.SetLeftCol(6);
    EXPECT_THROW(grid.SetLeftCol(2), RunTimeError);
    grid.SetFrozenCols(1);
    EXPECT_EQ(grid.LeftCol(), 6);
    grid.SetFrozenCols(100);
    EXPECT_EQ(grid.StandingCols(), 9) << "the last column scrolls";
    EXPECT_EQ(grid.LeftCol(), 9);
    grid.SetCols(4);
    EXPECT_EQ(grid.StandingCols(), 3);
    grid.SetCols(10);
    grid.SetFrozenCols(0);
    EXPECT_EQ(grid.LeftCol(), 1) << "a view of the start stays there";
    EXPECT_THROW(grid.SetFrozenCols(-1), RunTimeError);
    grid.SetFrozenCols(3);
    grid.SetFixedCols(0);
    grid.SetCols(0);
    EXPECT_EQ(grid.StandingCols(), 0);
}

TEST(ColumnDrag, DropsIntoTheNearestGapBetweenScrollingColumns) {
    // In the window: 0 (fixed) 1 2 4 without scrolling, 0 2 4 5 with the second column first; column 3 is hidden.
    const struct {
        int left, col, pointer;
        ColumnDrop drop;
    } cases[] = {
        {1, 1, 60, {}},       {1, 1, 120, {}},       {1, 1, 130, {2, 150}}, {1, 1, 210, {4, 200}},
        {1, 4, 60, {1, 50}},  {1, 4, -900, {1, 50}}, {1, 2, 100, {}},       {1, 2, 190, {4, 200}},
        {2, 5, 90, {3, 100}}, {2, 1, 90, {2, 100}},  {2, 1, 30, {}},        {2, 4, 9000, {5, 200}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(DropOf(Columns(c.left), c.col, c.pointer), c.drop) << c.left << " " << c.col << " " << c.pointer;
    EXPECT_EQ(DropOf(AxisOf(2, 2, 2, 96, [](int) { return 16; }), 1, 90), ColumnDrop());
    const int neighbours[][3] = {{1, 1, 2}, {2, 1, 4}, {4, -1, 2}, {1, -1, -1}, {5, 1, -1}, {0, 1, -1}, {6, -1, -1}};
    for (const auto& [col, step, wanted] : neighbours) EXPECT_EQ(NeighbourOf(Columns(1), col, step), wanted) << col;
    const int moves[][4] = {{1, 1, 3, 3}, {2, 1, 3, 1}, {3, 1, 3, 2}, {4, 1, 3, 4},
                            {1, 3, 1, 2}, {3, 3, 1, 1}, {0, 3, 1, 0}};
    for (const auto& [col, from, to, wanted] : moves) EXPECT_EQ(AfterMove(col, from, to), wanted) << col;
}

TEST(Mouse, APressTakesTheCursorAndHeadersSelectWholeLines) {
    const Axis rows = Rows(1);
    const Axis columns = Columns(1);
    const Cursor was{4, 2, 4, 2};
    struct Case {
        Hit hit;
        bool extend, big;
        GridSelectionMode mode;
        Press press;
        const char* what;
    };
    const auto free = GridSelectionMode::free;
    const Hit cell{7, 4};
    const Hit header{0, 4, true, false};
    const Hit side{7, 0, false, true};
    const Hit corner{0, 0, true, true};
    const Case cases[] = {
        {cell, false, true, free, {Drag::Cells, {7, 4, 7, 4}}, "a cell"},
        {cell, true, true, free, {Drag::Cells, {4, 2, 7, 4}}, "a cell with Shift"},
        {header, false, true, free, {Drag::Columns, {1, 4, 99, 4}}, "a column header"},
        {header, true, true, free, {Drag::Columns, {1, 2, 99, 4}}, "a column header with Shift"},
        {header, false, false, free, {Drag::None, was}, "a header when large selections are not allowed"},
        {header, false, true, GridSelectionMode::byRow, {Drag::None, was}, "a column header, by row"},
        {side, false, true, free, {Drag::Rows, {7, 1, 7, 5}}, "a row header"},
        {side, false, true, GridSelectionMode::byRow, {Drag::Rows, {7, 1, 7, 5}}, "a row header, by row"},
        {side, false, true, GridSelectionMode::byColumn, {Drag::None, was}, "a row header, by column"},
        {corner, false, true, free, {Drag::None, {1, 1, 99, 5}}, "the corner"},
        {Hit{-1, 2}, false, true, free, {Drag::None, was}, "below the last row"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(MousePress(c.hit, c.extend, c.big, c.mode, was, rows, columns), c.press) << c.what;
    }
}

TEST(Mouse, ASecondPressIsOneLikeTheFirst) {
    for (const short button : {leftButton, rightButton, middleButton}) {
        const auto once = StepsOf(button, ButtonAction::down);
        const auto twice = StepsOf(button, ButtonAction::downTwice);
        const auto [first, more] = std::mismatch(once.begin(), once.end(), twice.begin(), twice.end());
        EXPECT_EQ(first, once.end()) << button;
        EXPECT_EQ(twice.end() - more, button == leftButton ? 1 : 0) << button;
        EXPECT_EQ(std::count(once.begin(), once.end(), ButtonStep::press), button == leftButton ? 1 : 0) << button;
    }
    EXPECT_EQ(StepsOf(rightButton, ButtonAction::up).size(), 1U) << "told of only";
}

TEST(Mouse, DraggingMovesOnlyWhatTheDragIsAbout) {
    const Axis rows = Rows(10);
    const Axis columns = Columns(1);
    const Cursor from{12, 2, 12, 2};
    EXPECT_EQ(MouseDrag(Drag::Cells, from, {199, 17}, rows, columns), (Cursor{12, 2, 10, 4}));
    EXPECT_EQ(MouseDrag(Drag::Cells, from, {-20, -20}, rows, columns), (Cursor{12, 2, 10, 1})) << "not the header";
    EXPECT_EQ(MouseDrag(Drag::Rows, from, {199, 95}, rows, columns), (Cursor{12, 2, 14, 2}));
    EXPECT_EQ(MouseDrag(Drag::Columns, from, {10, 500}, rows, Mirrored(columns)), (Cursor{12, 2, 12, 4}));
}

TEST(Resizing, BordersAreFoundInTheHeadersOnly) {
    struct Case {
        Point point;
        bool mirrored;
        int allowed;
        Border::Kind kind;
        int index;
    };
    using enum Border::Kind;
    const Case cases[] = {
        {{97, 5}, false, 3, Column, 1}, {{104, 5}, false, 1, Column, 1}, {{105, 5}, false, 1, None, -1},
        {{97, 40}, false, 3, None, -1}, {{97, 5}, false, 2, None, -1},   {{147, 5}, false, 1, Column, 2},
        {{20, 34}, false, 3, Row, 1},   {{20, 34}, false, 1, None, -1},  {{60, 34}, false, 3, None, -1},
        {{102, 5}, true, 1, Column, 1}, {{49, 15}, false, 3, Column, 0}, {{20, 15}, false, 3, Row, 0},
    };
    for (const Case& c : cases) {
        const Border border = BorderAt(Rows(1), c.mirrored ? Mirrored(Columns(1)) : Columns(1), c.point, c.allowed, {});
        EXPECT_EQ(border.kind, c.kind) << c.point.x << "," << c.point.y;
        EXPECT_EQ(border.index, c.index) << c.point.x << "," << c.point.y;
    }
}

TEST(Resizing, TheBorderFollowsThePointerButNeverVanishes) {
    const Border border = BorderAt(Rows(1), Columns(1), {97, 5}, 1, {});
    EXPECT_EQ(border.start, 50);
    EXPECT_EQ(border.grip, 3);
    EXPECT_EQ(DraggedBorder(border, 97, 200, 96), 100) << "nothing jumps when it is taken";
    EXPECT_EQ(DraggedSizeTwips(border, DraggedBorder(border, 117, 200, 96), 96), 70 * 15);
    EXPECT_EQ(DraggedBorder(border, -500, 200, 96), 54);
    EXPECT_EQ(DraggedBorder(border, 900, 200, 96), 200);
    EXPECT_EQ(DraggedSizeTwips(border, 150, 192), 750);
}

}  // namespace
}  // namespace qvx::flexgrid
