// Rows and columns in the window: spans, positions, first item, bars, wheel, automatic scrolling, what it moves.
#include "widgets/flexgrid/scrolling.h"

#include <gtest/gtest.h>

#include "tests/unit/flexgrid/axis_of.h"
#include "widgets/flexgrid/hit_test.h"
#include "widgets/flexgrid/scroll_copy.h"
#include "widgets/flexgrid/view.h"

namespace qvx::flexgrid {
namespace {

// Items of the given sizes, the first `fixed` of them fixed.
Axis Make(const std::vector<int>& sizes, int fixed, int first, int extent) {
    return AxisOf(static_cast<int>(sizes.size()), fixed, first, extent,
                  [&](int i) { return sizes[static_cast<std::size_t>(i)]; });
}

Axis Uniform(int count, int fixed, int first, int extent, int size = 16) {
    return AxisOf(count, fixed, first, extent, [&](int) { return size; });
}

std::string Show(const std::vector<Span>& spans) {
    std::string out;
    for (const Span& s : spans) {
        out += std::to_string(s.index) + "@" + std::to_string(s.start) + "-" + std::to_string(s.end) + " ";
    }
    return out;
}

TEST(Axis, SpansLeaveOutHiddenAndScrolledItemsAndStopAtTheWindow) {
    EXPECT_EQ(Show(VisibleSpans(Make({10, 20, 0, 30, 40}, 1, 1, 65))), "0@0-10 1@10-30 3@30-60 4@60-100 ");
    EXPECT_EQ(Show(VisibleSpans(Make({10, 20, 0, 30, 40}, 1, 3, 40))), "0@0-10 3@10-40 ");
    EXPECT_EQ(Show(VisibleSpans(Make({50, 50, 50}, 2, 2, 60))), "0@0-50 1@50-100 ");
    EXPECT_EQ(Show(VisibleSpans(Make({}, 0, 0, 60))), "");
    EXPECT_EQ(Show(SpansInWindow(Mirrored(Make({10, 20}, 1, 1, 100)))), "0@90-100 1@70-90 ");
}

TEST(Axis, PositionsOfScrolledAwayItemsGoOnBeyondTheWindow) {
    const Axis axis = Make({10, 20, 30, 40, 50}, 1, 3, 60);
    const int expected[] = {0, -40, -20, 10, 50};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(PositionOf(axis, i), expected[i]) << i;
    }
    EXPECT_FALSE(IsVisible(axis, 2));
    EXPECT_TRUE(IsVisible(axis, 4));
    EXPECT_FALSE(IsVisible(axis, 5));
    EXPECT_EQ(PositionOf(Uniform(100'000, 1, 1, 100, 30'000), 90'000), 2'700'000'000);
}

TEST(Axis, SteppingSkipsHiddenItemsAndStopsAtTheEnds) {
    const Axis axis = Make({10, 0, 10, 0, 0, 10, 0}, 1, 2, 100);
    EXPECT_EQ(StepShown(axis, 2, 1), 5);
    EXPECT_EQ(StepShown(axis, 5, 1), 5);
    EXPECT_EQ(StepShown(axis, 5, -1), 2);
    EXPECT_EQ(StepShown(axis, 2, -7), 2);
    EXPECT_EQ(NearestShown(axis, 6, 1), -1);
    // From a header on to what scrolls, however many headers lie between.
    EXPECT_EQ(StepShown(Uniform(10, 3, 3, 100), 0, 1), 3);
    EXPECT_EQ(StepShown(Uniform(10, 3, 3, 100), 3, -1), 3);
}

TEST(Scrolling, TheLastPageIsFullAndHiddenItemsAtTheEndDoNotCount) {
    struct Case {
        Axis axis;
        int largest;
        const char* what;
    };
    const Case cases[] = {
        {Uniform(100, 1, 1, 96), 95, "5 of 16 fit behind the header"},
        {Uniform(100, 1, 1, 100), 95, "a partly shown one does not count"},
        {Uniform(5, 1, 1, 96), 1, "everything fits"},
        {Make({10, 50, 50, 500}, 1, 1, 100), 3, "the last alone is too large"},
        {Make({10, 50, 50, 50, 0, 0}, 1, 1, 110), 2, "hidden ones at the end"},
        {Make({10, 0, 50, 50}, 1, 1, 110), 1, "everything just fits, and the first one is hidden"},
        {Make({200, 50, 50}, 1, 1, 100), 2, "no room behind the header"},
        {Uniform(1'000'000, 1, 1, 600), 999'964, "a million rows"},
        {Make({}, 0, 0, 100), 0, "nothing at all"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(LargestFirst(c.axis), c.largest) << c.what;
        EXPECT_EQ(ClampFirst(c.axis, INT32_MAX), c.largest) << c.what;
        EXPECT_EQ(ClampFirst(c.axis, -5), c.axis.fixed) << c.what;
        const Bar bar = BarOf(c.axis);
        EXPECT_EQ(bar.max - bar.page + 1, c.largest) << c.what;
    }
    EXPECT_EQ(ClampFirst(Make({10, 10, 0, 0, 10, 10}, 1, 1, 30), 2), 4);
}

TEST(Scrolling, ShowingAnItemScrollsAsLittleAsNeeded) {
    const Axis axis = Uniform(100, 1, 40, 96);  // rows 40..44 show whole
    for (const auto& [index, first] :
         {std::pair{42, 40}, {40, 40}, {44, 40}, {45, 41}, {99, 95}, {39, 39}, {1, 1}, {0, 40}, {100, 40}}) {
        EXPECT_EQ(FirstToShow(axis, index), first) << index;
    }
    EXPECT_EQ(FirstToShow(Make({10, 20, 500, 20}, 1, 1, 100), 2), 2)
        << "an item larger than the window starts at its edge";
}

TEST(Scrolling, OneBarMayMakeTheOtherNecessary) {
    const Size bar{16, 16};
    struct Case {
        int rows, cols, allowed;
        BarChoice choice;
    };
    // Rows are 16 high, columns 50 wide, the window 200 x 160.
    const Case cases[] = {{10, 4, 3, {false, false}}, {11, 3, 3, {false, true}}, {11, 4, 3, {true, true}},
                          {10, 5, 3, {true, true}},   {9, 5, 3, {true, false}},  {11, 5, 1, {true, false}},
                          {11, 5, 2, {false, true}},  {11, 5, 0, {false, false}}};
    for (const Case& c : cases) {
        EXPECT_EQ(ChooseBars(Uniform(c.rows, 1, 1, 0), Uniform(c.cols, 1, 1, 0, 50), {200, 160}, bar, c.allowed),
                  c.choice)
            << c.rows << " rows " << c.cols << " columns, allowed " << c.allowed;
    }
}

TEST(Scrolling, BarRequestsMoveByShownItemsWithinTheRange) {
    using enum BarRequest;
    const Axis axis = Uniform(100, 1, 40, 96);
    const Axis mirrored = Mirrored(Uniform(31, 1, 4, 176));
    EXPECT_EQ(BarOf(mirrored), (Bar{true, 1, 30, 10, 18})) << "3 columns from the left end are 3 from the right end";
    struct Case {
        const Axis& axis;
        BarRequest request;
        int position;
        int first;
    };
    const Axis atEnd = Uniform(100, 1, 95, 96);
    const Axis hidden = Make({10, 10, 0, 0, 10, 10, 10}, 1, 1, 30);
    const Case cases[] = {{axis, LineBack, 0, 39},     {axis, PageOn, 0, 45},      {axis, PageBack, 0, 35},
                          {axis, Track, 77, 77},       {axis, ThumbSet, 99, 95},   {axis, Start, 0, 1},
                          {axis, End, 0, 95},          {atEnd, LineOn, 0, 95},     {hidden, LineOn, 0, 4},
                          {mirrored, LineBack, 0, 5},  {mirrored, LineOn, 0, 3},   {mirrored, PageOn, 0, 1},
                          {mirrored, PageBack, 0, 14}, {mirrored, Start, 0, 21},   {mirrored, End, 0, 1},
                          {mirrored, Track, 18, 4},    {mirrored, ThumbSet, 1, 21}};
    for (const Case& c : cases) {
        EXPECT_EQ(FirstAfter(c.axis, c.request, c.position), c.first) << static_cast<int>(c.request);
    }
}

TEST(Scrolling, ABarIsDrawnAnewOnlyWhenItsThumbMoves) {
    const Bar bar{true, 1, 100'000, 40, 500};
    const auto at = [&](int position) { return Bar{true, 1, 100'000, 40, position}; };
    EXPECT_FALSE(ThumbMoves(bar, at(501), 500));
    EXPECT_FALSE(ThumbMoves(bar, at(301), 500));
    EXPECT_TRUE(ThumbMoves(bar, at(700), 500)) << "a pixel further";
    EXPECT_TRUE(ThumbMoves(at(2), at(1), 500)) << "against the arrow";
    EXPECT_TRUE(ThumbMoves(at(99'961), at(99'960), 500)) << "away from the arrow";
    EXPECT_TRUE(ThumbMoves({}, bar, 500)) << "not drawn yet";
    EXPECT_TRUE(ThumbMoves(bar, {true, 1, 100'001, 40, 500}, 500)) << "a row more";
}

TEST(Scrolling, WheelMovementAddsUpToWholeSteps) {
    WheelCounter wheel;
    int steps = 0;
    for (int i = 0; i < 8; ++i) {
        steps += wheel.Take(30, 3);  // two notches in eighths
    }
    EXPECT_EQ(steps, 6);
    EXPECT_EQ(wheel.Take(-120, 3), -3);
    EXPECT_EQ(wheel.Take(39, 3), 0);
    EXPECT_EQ(wheel.Take(-39, 3), 0) << "turning back drops the rest";
    EXPECT_EQ(wheel.Take(-1, 3), -1) << "and starts to count anew";
    EXPECT_EQ(wheel.Take(120, 40), 40);
}

TEST(Scrolling, DraggingFurtherOutScrollsFaster) {
    for (const auto& [position, steps] :
         {std::pair{20, 0}, {99, 0}, {19, -1}, {-10, -2}, {100, 1}, {125, 2}, {300, 9}}) {
        EXPECT_EQ(AutoScrollSteps(position, 20, 100, 96), steps) << position;
    }
}

TEST(HitTest, FindsFixedAndScrolledCellsAndTheGroundBeyond) {
    const Axis rows = Uniform(100, 1, 40, 96);
    const Axis columns = Make({30, 50, 0, 60}, 1, 1, 200);
    struct Case {
        Point point;
        bool mirrored;
        Hit hit;
    };
    const Case cases[] = {{{0, 0}, false, {0, 0, true, true}},  {{79, 15}, false, {0, 1, true, false}},
                          {{80, 16}, false, {40, 3}},           {{29, 95}, false, {44, 0, false, true}},
                          {{140, 20}, false, {40, -1}},         {{10, 96}, false, {-1, 0, false, true}},
                          {{199, 0}, true, {0, 0, true, true}}, {{120, 40}, true, {41, 1}},
                          {{119, 40}, true, {41, 3}},           {{-1, 20}, false, {40, -1}}};
    for (const Case& c : cases) {
        const Hit hit = HitTest(rows, c.mirrored ? Mirrored(columns) : columns, c.point);
        EXPECT_EQ(hit, c.hit) << c.point.x << "," << c.point.y << " gives " << hit.row << "," << hit.col;
    }
    EXPECT_EQ(NearestItemAt(rows, -50, true), 40);
    EXPECT_EQ(NearestItemAt(rows, -50, false), 0);
    EXPECT_EQ(NearestItemAt(columns, 900, true), 3);
}

// A million rows as high as a few screens have more pixels than 32 bits can count.
TEST(Scrolling, ReachesRowsBeyondThirtyTwoBitsOfPixels) {
    constexpr int height = 5000;
    constexpr int rows = 1'000'001;
    Grid grid;
    grid.SetRows(rows);
    grid.SetRowHeight(Grid::all, height * 15);
    for (const int top : {1, 500'000, rows - 1}) {
        grid.SetTopRow(top);
        const Axis axis = RowAxis(grid, View{{320, 7000}});
        EXPECT_EQ(axis.startOf(rows), std::int64_t{height} * rows);
        for (const int row : {1, 429'497, 858'994, rows - 1}) {
            EXPECT_EQ(PositionOf(axis, row), height + std::int64_t{row - top} * height) << top << " " << row;
            EXPECT_EQ(axis.shownAt(axis.startOf(row) + height - 1), row);
        }
        EXPECT_TRUE(IsVisible(axis, top));
        EXPECT_EQ(HitTest(axis, ColumnAxis(grid, View{{320, 7000}}), {100, 5500}).row, top);
    }
}

// Rows 16 pixels high, columns 64 wide, one fixed of each; a client of 10 rows and 5 columns.
TEST(ScrollCopy, MovesWhatStaysAndBaresTheRest) {
    struct {
        const char* name;
        int oldTop, oldLeft, top, left;
        bool rightToLeft;
        std::optional<ScrollCopy> expected;
        int frozen = 0;
        int cols = 50;
    } const cases[] = {
        {"a row down", 1, 1, 2, 1, false, ScrollCopy{{0, 16, 320, 160}, 0, -16, {0, 144, 320, 160}}},
        {"two rows up", 5, 1, 3, 1, false, ScrollCopy{{0, 16, 320, 160}, 0, 32, {0, 16, 320, 48}}},
        {"the last row that stays", 1, 1, 9, 1, false, ScrollCopy{{0, 16, 320, 160}, 0, -128, {0, 32, 320, 160}}},
        {"nothing stays", 1, 1, 10, 1, false, std::nullopt},
        {"a column to the right", 1, 1, 1, 2, false, ScrollCopy{{64, 0, 320, 160}, -64, 0, {256, 0, 320, 160}}},
        {"a column to the left", 1, 3, 1, 2, false, ScrollCopy{{64, 0, 320, 160}, 64, 0, {64, 0, 128, 160}}},
        {"right to left", 1, 1, 1, 2, true, ScrollCopy{{0, 0, 256, 160}, 64, 0, {0, 0, 64, 160}}},
        {"beside a frozen column", 1, 2, 1, 3, false, ScrollCopy{{128, 0, 320, 160}, -64, 0, {256, 0, 320, 160}}, 1},
        {"narrower than the window", 1, 1, 2, 1, false, ScrollCopy{{0, 16, 192, 160}, 0, -16, {0, 144, 192, 160}}, 0,
         3},
        {"so, mirrored", 1, 1, 2, 1, true, ScrollCopy{{128, 16, 320, 160}, 0, -16, {128, 144, 320, 160}}, 0, 3},
        {"the last columns alone", 1, 48, 2, 48, false, ScrollCopy{{0, 16, 192, 160}, 0, -16, {0, 144, 192, 160}}},
        {"both ways", 1, 1, 2, 2, false, std::nullopt},
        {"neither", 2, 2, 2, 2, false, std::nullopt},
        {"from rows that are gone", 500, 1, 95, 1, false, ScrollCopy{{0, 16, 320, 160}, 0, 80, {0, 16, 320, 96}}},
    };
    for (const auto& c : cases) {
        Grid grid;
        grid.SetRows(100);
        grid.SetCols(c.cols);
        grid.SetRightToLeft(c.rightToLeft);
        grid.SetFrozenCols(c.frozen);
        grid.SetTopRow(c.top);
        grid.SetLeftCol(c.left);
        EXPECT_EQ(FollowScroll(grid, {320, 160}, c.oldTop, c.oldLeft), c.expected) << c.name;
        grid.SetMergeCells(GridMerge::free);
        EXPECT_FALSE(FollowScroll(grid, {320, 160}, c.oldTop, c.oldLeft)) << "merged cells are drawn anew";
    }
}

}  // namespace
}  // namespace qvx::flexgrid
