#include "designer/document/placement.h"

#include <gtest/gtest.h>

#include "designer/canvas/drag.h"

namespace qvx::host::designer {
namespace {

TEST(Placement, SnapsToTheNearestPointOfTheGrid) {
    const std::pair<int, int> cases[] = {{0, 0},   {59, 0},     {60, 120},           {179, 120},
                                         {-60, 0}, {-61, -120}, {INT_MAX, farthest}, {INT_MIN, -farthest}};
    for (const auto& [twips, snapped] : cases) EXPECT_EQ(Snapped(twips), snapped) << twips;
}

TEST(Placement, AHandleMovesItsOwnEdgesOnly) {
    const TwipsRect start{1000, 1000, 600, 300};
    const struct {
        Grip grip;
        int dx, dy;
        bool snap;
        TwipsRect expected;
    } cases[] = {
        {Grip::right, 100, 999, false, {1000, 1000, 700, 300}},
        {Grip::right, 100, 999, true, {1000, 1000, 680, 300}},
        {Grip::left, -100, 0, false, {900, 1000, 700, 300}},
        {Grip::left, -100, 0, true, {960, 1000, 640, 300}},
        {Grip::topLeft, 10, 20, false, {1010, 1020, 590, 280}},
        {Grip::bottomRight, 10, 20, false, {1000, 1000, 610, 320}},
        // It stops before it turns inside out.
        {Grip::left, 5000, 0, false, {1540, 1000, smallestSize, 300}},
        {Grip::bottom, 0, -5000, true, {1000, 1000, 600, smallestSize}},
        {Grip::right, INT_MAX, 0, false, {1000, 1000, farthest - 1000, 300}},
    };
    for (const auto& c : cases) EXPECT_EQ(Sized(start, c.grip, c.dx, c.dy, c.snap), c.expected) << int(c.grip);
}

TEST(Placement, SeveralMoveByWhatBringsThePrimaryToTheGrid) {
    const std::vector<TwipsRect> start = {{10, 10, 100, 100}, {130, 130, 100, 100}};
    EXPECT_EQ(Moved(start, 1, 115, 0, true), (std::vector<TwipsRect>{{120, 10, 100, 100}, {240, 130, 100, 100}}));
    EXPECT_EQ(Moved(start, 1, 7, -7, false)[0], (TwipsRect{17, 3, 100, 100}));
}

TEST(Placement, AlignsAndSizesAfterThePrimary) {
    const std::vector<TwipsRect> start = {{0, 0, 100, 100}, {500, 50, 200, 300}, {900, 700, 100, 100}};
    const struct {
        Arrangement arrangement;
        std::size_t at;
        TwipsRect expected;
    } cases[] = {
        {Arrangement::lefts, 0, {500, 0, 100, 100}},
        {Arrangement::centers, 0, {550, 0, 100, 100}},
        {Arrangement::rights, 0, {600, 0, 100, 100}},
        {Arrangement::tops, 2, {900, 50, 100, 100}},
        {Arrangement::middles, 2, {900, 150, 100, 100}},
        {Arrangement::bottoms, 2, {900, 250, 100, 100}},
        {Arrangement::widths, 2, {900, 700, 200, 100}},
        {Arrangement::heights, 2, {900, 700, 100, 300}},
        {Arrangement::sizes, 2, {900, 700, 200, 300}},
        {Arrangement::acrossEvenly, 1, {400, 50, 200, 300}},
        {Arrangement::downEvenly, 1, {500, 250, 200, 300}},
        {Arrangement::toGrid, 1, {480, 0, 240, 360}},
        // The primary stays.
        {Arrangement::lefts, 1, start[1]},
    };
    for (const auto& [arrangement, at, expected] : cases) {
        EXPECT_EQ(Arranged(start, 1, arrangement)[at], expected) << static_cast<int>(arrangement) << " " << at;
    }
}

TEST(Placement, CornersWinOverEdges) {
    const Rect frame{100, 100, 104, 104};
    EXPECT_EQ(GripAt(frame, {95, 95}, 7), Grip::topLeft);
    EXPECT_EQ(GripAt(frame, {105, 105}, 7), Grip::bottomRight);
    EXPECT_EQ(GripAt(frame, {102, 102}, 7), std::nullopt);
}

TEST(Dragging, AClickPlacesTheUsualSizeAndADragDrawsIt) {
    Drag drag;
    drag.Begin(Drag::Kind::place, {40, 40}, {}, {});
    EXPECT_EQ(drag.Bounds({1320, 405}), (std::vector<TwipsRect>{{600, 600, 1320, 405}}));
    EXPECT_TRUE(drag.MoveTo({104, 72}, true));
    EXPECT_EQ(drag.Bounds({1320, 405}), (std::vector<TwipsRect>{{600, 600, 960, 480}}));
    // In a frame everything counts from there; without the grid it stays where it is drawn.
    drag.Begin(Drag::Kind::place, {50, 50}, {40, 30}, {});
    drag.MoveTo({61, 72}, false);
    EXPECT_EQ(drag.Bounds(), (std::vector<TwipsRect>{{150, 300, 165, 330}}));
    EXPECT_EQ(drag.Outlines(), (std::vector<Rect>{{50, 50, 61, 72}}));
}

TEST(Dragging, ATremblingPressMovesNothing) {
    Drag drag;
    drag.Begin(Drag::Kind::move, {40, 40}, {}, {});
    drag.Take({{7, 7, 100, 100}}, 0);
    EXPECT_FALSE(drag.MoveTo({42, 38}, true));
    EXPECT_EQ(drag.Bounds(), (std::vector<TwipsRect>{{7, 7, 100, 100}}));
    EXPECT_TRUE(drag.MoveTo({48, 40}, true));
    EXPECT_EQ(drag.Bounds(), (std::vector<TwipsRect>{{120, 7, 100, 100}}));
}

}  // namespace
}  // namespace qvx::host::designer
