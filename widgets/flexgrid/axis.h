// One direction of a grid as the view sees it: rows downward or columns across, in whole device pixels.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace qvx::flexgrid {

// Where one row or column lies in the window; `end` is exclusive. Hidden ones have no span.
struct Span {
    int index = 0;
    int start = 0;
    int end = 0;
    constexpr int Size() const { return end - start; }
    friend constexpr bool operator==(const Span&, const Span&) = default;
};

// Positions along an axis count from the window's top edge or from where its columns start: the left edge, or the right
// one where the axis is `mirrored`. Items 0..fixed-1 are fixed: they lie at the start and never scroll. Behind them
// follow the items from `first` on. Invariants: 0 <= fixed <= count, and first >= fixed. The functions cost no more
// than O(log count), so that nothing here walks along runs of hidden items or to far-away ones.
struct Axis {
    int count = 0;
    int fixed = 0;
    int first = 0;
    int extent = 0;                            // room in the window, in pixels
    std::function<int(int)> sizeOf;            // pixels of an item; 0 is hidden
    std::function<std::int64_t(int)> startOf;  // all items laid end to end from 0; for `count` their whole length
    std::function<int(std::int64_t)> shownAt;  // the shown item that covers such a position; `count` behind the last
    bool mirrored = false;

    // A point's coordinate in the window as a position along the axis.
    int Along(int coordinate) const { return mirrored ? extent - 1 - coordinate : coordinate; }
    // Where a stretch of the axis lies in the window.
    Span InWindow(const Span& span) const {
        return mirrored ? Span{span.index, extent - span.end, extent - span.start} : span;
    }

    bool IsHidden(int index) const { return sizeOf(index) <= 0; }
    // Pixels of the fixed items together, beyond the window's room too.
    std::int64_t FixedExtent() const { return startOf(fixed); }
    // Room behind the fixed items.
    std::int64_t ScrolledExtent() const;
    // Whether there is an item to scroll at all.
    bool HasScrollable() const { return fixed < count; }
    // Whether the item is one of them.
    bool CanBeFirst(int index) const { return index >= fixed && index < count; }
};

// The spans that lie at least partly in the window, in order: fixed ones, then scrolled ones.
std::vector<Span> VisibleSpans(const Axis& axis);

// The nearest item that is not hidden, from `index` (itself included) in direction `step` (1 or -1), within
// fixed..count-1; -1 when there is none.
int NearestShown(const Axis& axis, int index, int step);

// `distance` shown items further from `index` in the direction of its sign, stopping at the last that there is; `index`
// when there is none.
int StepShown(const Axis& axis, int index, int distance);

// Distance in pixels from the window's edge to the item's start. Scrolled-away items lie at negative distances from
// the end of the fixed ones or beyond the window, so far that 32 bits do not do. `index` may be `count`.
std::int64_t PositionOf(const Axis& axis, int index);

// Whether any part of the item shows in the window.
bool IsVisible(const Axis& axis, int index);

// Pixels from the window's left or top edge to the item's; as far away as positions are.
std::int64_t StartInWindow(const Axis& axis, int index);

// The visible spans as they lie in the window, still in the items' order.
std::vector<Span> SpansInWindow(const Axis& axis);

}  // namespace qvx::flexgrid
