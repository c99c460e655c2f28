// One direction of a grid as the view sees it: rows from top to bottom or columns from left to right, in whole device
// pixels.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace qvx::flexgrid {

// The extent of one row or column in the window; `end` is exclusive. Hidden ones have no span.
struct Span {
    int index = 0;
    int start = 0;
    int end = 0;
    constexpr int Size() const { return end - start; }
    friend constexpr bool operator==(const Span&, const Span&) = default;
};

// Positions along an axis count from the window's top edge or from where its columns start: the left edge, or the right
// one where the axis is `mirrored`. Items 0..standing-1 are at the start and never scroll; the `fixed` first of them
// are headers. They are followed by the items from `first` on. Invariants: 0 <= fixed <= standing <= count, and first
// >= standing. The functions take O(log count) at most, so that nothing here has to walk along runs of hidden items or
// to distant ones.
struct Axis {
    int count = 0;
    int fixed = 0;
    int standing = 0;
    int first = 0;
    int extent = 0;                            // room in the window, in pixels
    std::function<int(int)> sizeOf;            // pixels of an item; 0 means hidden
    std::function<std::int64_t(int)> startOf;  // start of an item, laid end to end from 0; for `count`, the end
    std::function<int(std::int64_t)> shownAt;  // the shown item that covers such a position; `count` after the last one
    bool mirrored = false;

    // Converts a point's coordinate in the window to a position along the axis.
    int Along(int coordinate) const { return mirrored ? extent - 1 - coordinate : coordinate; }
    // Converts a span of the axis to coordinates in the window.
    Span InWindow(const Span& span) const {
        return mirrored ? Span{span.index, extent - span.end, extent - span.start} : span;
    }

    bool IsHidden(int index) const { return sizeOf(index) <= 0; }
    // Pixels of all headers, even if that is more than the window's extent.
    std::int64_t FixedExtent() const { return startOf(fixed); }
    // Pixels of all items that never scroll, even if that is more than the window's extent.
    std::int64_t StandingExtent() const { return startOf(standing); }
    // Pixels that remain after them.
    std::int64_t ScrolledExtent() const;
    // Whether any item is not a header.
    bool HasScrollable() const { return fixed < count; }
    // Whether `first` may be this item.
    bool CanBeFirst(int index) const { return index >= standing && index < count; }
};

// Returns the spans that are at least partly in the window, in order: those that never scroll, then the scrolled ones.
std::vector<Span> VisibleSpans(const Axis& axis);

// Returns the nearest item that is not hidden, from `index` (itself included) in direction `step` (1 or -1), within
// fixed..count-1; -1 when there is none.
int NearestShown(const Axis& axis, int index, int step);

// Returns the item that is `distance` shown items away from `index` in the direction of its sign, or the last one
// before the end; `index` when there is none.
int StepShown(const Axis& axis, int index, int distance);

// Returns the distance in pixels from the window's edge to the item's start. Items that are scrolled away are at
// negative distances from the end of those that never scroll or beyond the window, which may exceed 32 bits. `index`
// may be `count`.
std::int64_t PositionOf(const Axis& axis, int index);

// Whether any part of the item is visible in the window.
bool IsVisible(const Axis& axis, int index);

// Returns the pixels from the window's left or top edge to the item's start; the range is that of positions.
std::int64_t StartInWindow(const Axis& axis, int index);

// Returns the visible spans in the window's coordinates, in the items' order.
std::vector<Span> SpansInWindow(const Axis& axis);

}  // namespace qvx::flexgrid
