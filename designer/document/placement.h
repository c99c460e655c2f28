// Where controls go when they are dragged, nudged and arranged: the grid, the eight handles, and arranging several
// controls together. In twips unless a comment says pixels.
#pragma once

#include <optional>
#include <vector>

#include "common/geometry.h"
#include "host/twips_rect.h"

namespace qvx::host::designer {

constexpr int gridStep = 120;
constexpr int smallestSize = 60;
// The limit of stored positions and of drags, far beyond any screen.
constexpr int farthest = 1 << 20;

// The nearest point of the grid; halves round up.
int Snapped(int twips);

// In reading order around the frame, beginning top left.
enum class Grip { topLeft, top, topRight, right, bottomRight, bottom, bottomLeft, left };
constexpr int handleCount = 8;

// The square of one handle on a frame, in pixels, `size` wide and outside the frame's edge.
Rect GripArea(const Rect& frame, Grip handle, int size);
// The handle at a point in pixels; those in the corners win.
std::optional<Grip> GripAt(const Rect& frame, Point point, int size);

// The rectangle after one of its handles has been dragged by (dx, dy): the edges that move land on the grid when `snap`
// is set, and stop before the rectangle turns inside out.
TwipsRect Sized(const TwipsRect& start, Grip handle, int dx, int dy, bool snap);

// All moved by the same distance; with `snap`, by the one that brings `primary` to the grid.
std::vector<TwipsRect> Moved(const std::vector<TwipsRect>& start, std::size_t primary, int dx, int dy, bool snap);

// The rectangle of a control that is placed by a drag from one point to another. `usual` is its size when the drag is
// shorter than half a step of the grid both ways, and counts as a click.
TwipsRect Drawn(Point from, Point to, Size usual, bool snap);

// How several selected controls are arranged. The primary stays as it is.
enum class Arrangement {
    lefts,
    centers,
    rights,
    tops,
    middles,
    bottoms,  // aligned
    widths,
    heights,
    sizes,  // made the same
    acrossEvenly,
    downEvenly,  // equal gaps between the outermost two
    toGrid
};
std::vector<TwipsRect> Arranged(const std::vector<TwipsRect>& start, std::size_t primary, Arrangement arrangement);

}  // namespace qvx::host::designer
