#include "designer/document/placement.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace qvx::host::designer {

namespace {

bool MovesLeft(Grip h) { return h == Grip::topLeft || h == Grip::left || h == Grip::bottomLeft; }
bool MovesRight(Grip h) { return h == Grip::topRight || h == Grip::right || h == Grip::bottomRight; }
bool MovesTop(Grip h) { return h == Grip::topLeft || h == Grip::top || h == Grip::topRight; }
bool MovesBottom(Grip h) { return h == Grip::bottomLeft || h == Grip::bottom || h == Grip::bottomRight; }

int Limited(std::int64_t value) { return static_cast<int>(std::clamp<std::int64_t>(value, -farthest, farthest)); }

// Moves one pair of edges; `size` never falls below the smallest.
void MoveEdges(int& position, int& size, bool first, bool second, int by, bool snap) {
    const std::int64_t end = std::int64_t{position} + size;
    if (first) {
        int moved = Limited(std::int64_t{position} + by);
        if (snap) moved = Snapped(moved);
        moved = static_cast<int>(std::min<std::int64_t>(moved, end - smallestSize));
        size = Limited(end - moved);
        position = moved;
    } else if (second) {
        int moved = Limited(end + by);
        if (snap) moved = Snapped(moved);
        size = static_cast<int>(std::max<std::int64_t>(std::int64_t{moved} - position, smallestSize));
    }
}

// Equal gaps between neighbours in their present order; the first and the last stay.
void Spread(std::vector<TwipsRect>& all, int TwipsRect::*position, int TwipsRect::*size) {
    if (all.size() < 3) return;
    std::vector<std::size_t> order(all.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return all[a].*position < all[b].*position; });
    const TwipsRect& first = all[order.front()];
    const TwipsRect& last = all[order.back()];
    std::int64_t taken = 0;
    for (std::size_t i = 1; i + 1 < order.size(); ++i) taken += all[order[i]].*size;
    const std::int64_t room = std::int64_t{last.*position} - first.*position - first.*size - taken;
    std::int64_t at = std::int64_t{first.*position} + first.*size;
    const auto gaps = static_cast<std::int64_t>(order.size()) - 1;
    for (std::size_t i = 1; i + 1 < order.size(); ++i) {
        TwipsRect& rect = all[order[i]];
        rect.*position = Limited(at + room * static_cast<std::int64_t>(i) / gaps);
        at += rect.*size;
    }
}

}  // namespace

int Snapped(int twips) {
    const std::int64_t shifted = std::int64_t{twips} + gridStep / 2;
    const std::int64_t steps = shifted >= 0 ? shifted / gridStep : -((-shifted + gridStep - 1) / gridStep);
    return Limited(steps * gridStep);
}

Rect GripArea(const Rect& frame, Grip handle, int size) {
    const int x = MovesLeft(handle)    ? frame.left - size
                  : MovesRight(handle) ? frame.right
                                       : (frame.left + frame.right - size) / 2;
    const int y = MovesTop(handle)      ? frame.top - size
                  : MovesBottom(handle) ? frame.bottom
                                        : (frame.top + frame.bottom - size) / 2;
    return {x, y, x + size, y + size};
}

std::optional<Grip> GripAt(const Rect& frame, Point point, int size) {
    constexpr Grip order[] = {Grip::topLeft, Grip::topRight, Grip::bottomRight, Grip::bottomLeft,
                              Grip::top,     Grip::right,    Grip::bottom,      Grip::left};
    for (const Grip handle : order) {
        if (GripArea(frame, handle, size).Contains(point)) return handle;
    }
    return std::nullopt;
}

TwipsRect Sized(const TwipsRect& start, Grip handle, int dx, int dy, bool snap) {
    TwipsRect rect = start;
    MoveEdges(rect.left, rect.width, MovesLeft(handle), MovesRight(handle), dx, snap);
    MoveEdges(rect.top, rect.height, MovesTop(handle), MovesBottom(handle), dy, snap);
    return rect;
}

std::vector<TwipsRect> Moved(const std::vector<TwipsRect>& start, std::size_t primary, int dx, int dy, bool snap) {
    if (primary >= start.size()) return start;
    const TwipsRect& lead = start[primary];
    // A control off the grid that is not moved in one direction is not snapped in it either.
    if (snap && dx != 0) dx = Snapped(Limited(std::int64_t{lead.left} + dx)) - lead.left;
    if (snap && dy != 0) dy = Snapped(Limited(std::int64_t{lead.top} + dy)) - lead.top;
    std::vector<TwipsRect> moved = start;
    for (TwipsRect& rect : moved) {
        rect.left = Limited(std::int64_t{rect.left} + dx);
        rect.top = Limited(std::int64_t{rect.top} + dy);
    }
    return moved;
}

TwipsRect Drawn(Point from, Point to, Size usual, bool snap) {
    const auto at = [&](int value) { return snap ? Snapped(value) : Limited(value); };
    if (std::abs(to.x - from.x) < gridStep / 2 && std::abs(to.y - from.y) < gridStep / 2) {
        return {at(from.x), at(from.y), usual.width, usual.height};
    }
    const int left = at(std::min(from.x, to.x));
    const int top = at(std::min(from.y, to.y));
    return {left, top, std::max(at(std::max(from.x, to.x)) - left, smallestSize),
            std::max(at(std::max(from.y, to.y)) - top, smallestSize)};
}

std::vector<TwipsRect> Arranged(const std::vector<TwipsRect>& start, std::size_t primary, Arrangement arrangement) {
    if (primary >= start.size()) return start;
    const TwipsRect lead = start[primary];
    std::vector<TwipsRect> all = start;
    if (arrangement == Arrangement::acrossEvenly) Spread(all, &TwipsRect::left, &TwipsRect::width);
    if (arrangement == Arrangement::downEvenly) Spread(all, &TwipsRect::top, &TwipsRect::height);
    for (TwipsRect& rect : all) {
        switch (arrangement) {
            case Arrangement::lefts:
                rect.left = lead.left;
                break;
            case Arrangement::centers:
                rect.left = Limited(std::int64_t{lead.left} + (lead.width - rect.width) / 2);
                break;
            case Arrangement::rights:
                rect.left = Limited(std::int64_t{lead.left} + lead.width - rect.width);
                break;
            case Arrangement::tops:
                rect.top = lead.top;
                break;
            case Arrangement::middles:
                rect.top = Limited(std::int64_t{lead.top} + (lead.height - rect.height) / 2);
                break;
            case Arrangement::bottoms:
                rect.top = Limited(std::int64_t{lead.top} + lead.height - rect.height);
                break;
            case Arrangement::widths:
                rect.width = lead.width;
                break;
            case Arrangement::heights:
                rect.height = lead.height;
                break;
            case Arrangement::sizes:
                rect.width = lead.width;
                rect.height = lead.height;
                break;
            case Arrangement::toGrid:
                rect = {Snapped(rect.left), Snapped(rect.top), std::max(Snapped(rect.width), gridStep),
                        std::max(Snapped(rect.height), gridStep)};
                break;
            case Arrangement::acrossEvenly:
            case Arrangement::downEvenly:
                break;
        }
    }
    return all;
}

}  // namespace qvx::host::designer
