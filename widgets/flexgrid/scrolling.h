// The scroll position of a grid: first row and column, the ranges of the scroll bars, wheel and automatic scrolling.
// The grid scrolls by whole rows and columns, so a bar's position is an item's number and fits in 32 bits for any
// number of rows.
#pragma once

#include "common/geometry.h"
#include "widgets/flexgrid/axis.h"

namespace qvx::flexgrid {

// Returns the largest useful first item: from it on, everything to the end is completely visible (or it is the last
// shown item, when that alone is larger than the available space). `fixed` when everything fits.
int LargestFirst(const Axis& axis);

// Limits `wanted` to the range from the first scrollable item to LargestFirst; a hidden item is replaced by the next
// shown one.
int ClampFirst(const Axis& axis, int wanted);

// Returns the first item with which `index` is completely visible after the least scrolling; axis.first when it already
// is, is fixed, or does not exist.
int FirstToShow(const Axis& axis, int index);

// Returns how many scrolled items are completely visible, at least 1: a page of the bar and of the page keys.
int PageOf(const Axis& axis);

// Whether all items together need more than the given extent.
bool Overflows(const Axis& axis, int extent);

// A scroll bar with the values that the system expects: positions min..max-page+1. A mirrored axis starts at the bar's
// right end.
struct Bar {
    bool shown = false;
    int min = 0;
    int max = 0;
    int page = 1;
    int position = 0;
    friend constexpr bool operator==(const Bar&, const Bar&) = default;
};

// Returns the bar for an axis that overflows its extent.
Bar BarOf(const Axis& axis);

// Whether a bar that is drawn as `drawn` looks different as `wanted`. `length` is the distance between its arrows in
// pixels.
bool ThumbMoves(const Bar& drawn, const Bar& wanted, int length);

// Returns the bars that a window of the given size (without bars) needs; each takes space from the other. `allowed` is
// the grid's ScrollBars property: bit 0 horizontal, bit 1 vertical.
struct BarChoice {
    bool horizontal = false;
    bool vertical = false;
    friend constexpr bool operator==(const BarChoice&, const BarChoice&) = default;
};
BarChoice ChooseBars(const Axis& rows, const Axis& columns, Size room, Size barThickness, int allowed);

// Requests of a scroll bar, as the system numbers them.
enum class BarRequest {
    LineBack = 0,
    LineOn = 1,
    PageBack = 2,
    PageOn = 3,
    ThumbSet = 4,
    Track = 5,
    Start = 6,
    End = 7
};

// Returns the first item after a request of the axis's bar; `track` is the dragged position.
int FirstAfter(const Axis& axis, BarRequest request, int track);

// Converts wheel movement, which arrives in any fraction of a notch (120), into whole steps and keeps the remainder.
// Turning in the other direction drops the remainder.
class WheelCounter {
  public:
    static constexpr int notch = 120;
    // Returns the whole steps for the movement, positive away from the user; `stepsPerNotch` is at least 1.
    int Take(int delta, int stepsPerNotch);

  private:
    long long rest_ = 0;  // in 120ths of a step
};

// Returns how many items to scroll per timer tick while a selection is dragged outside the scrollable part of an axis
// (from `from` to `to`, in pixels): negative backwards, positive forwards, 0 inside; a larger distance scrolls faster.
int AutoScrollSteps(int position, int from, int to, int dotsPerInch);

}  // namespace qvx::flexgrid
