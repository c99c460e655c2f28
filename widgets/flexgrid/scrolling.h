// Where a grid is scrolled to: first row and column, the bars' ranges, wheel and automatic scrolling. The grid scrolls
// by whole rows and columns, so a bar's position is an item's number and fits in 32 bits at any number of rows.
#pragma once

#include "common/geometry.h"
#include "widgets/flexgrid/axis.h"

namespace qvx::flexgrid {

// The largest useful first item: from it on everything to the end shows whole (or it is the last shown item, when that
// alone is larger than the room). `fixed` when everything fits.
int LargestFirst(const Axis& axis);

// `wanted`, brought between the first scrollable item and LargestFirst; a hidden item gives the next shown one.
int ClampFirst(const Axis& axis, int wanted);

// The first item that shows `index` whole with the least scrolling; axis.first when it shows already, is fixed, or does
// not exist.
int FirstToShow(const Axis& axis, int index);

// How many scrolled items show whole, at least 1: a page of the bar and of the page keys.
int PageOf(const Axis& axis);

// Whether the items together need more than the given room.
bool Overflows(const Axis& axis, int extent);

// A scroll bar as the system takes it: positions min..max-page+1. A mirrored axis starts at the bar's right end.
struct Bar {
    bool shown = false;
    int min = 0;
    int max = 0;
    int page = 1;
    int position = 0;
    friend constexpr bool operator==(const Bar&, const Bar&) = default;
};

// The bar for an axis that overflows its extent.
Bar BarOf(const Axis& axis);

// Whether a bar that is drawn as `drawn` looks different as `wanted`, its arrows being `length` pixels apart.
bool ThumbMoves(const Bar& drawn, const Bar& wanted, int length);

// Which bars a window of the given room (bars not counted) needs, where each one takes room from the other. `allowed`
// is the grid's ScrollBars property: bit 0 horizontal, bit 1 vertical.
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

// The first item after a request of the axis's bar; `track` is the dragged position.
int FirstAfter(const Axis& axis, BarRequest request, int track);

// Turns wheel movement, which arrives in any fraction of a notch (120), into whole steps and keeps the rest. Turning
// back drops the rest.
class WheelCounter {
  public:
    static constexpr int notch = 120;
    // Whole steps for the movement, positive away from the user; `stepsPerNotch` at least 1.
    int Take(int delta, int stepsPerNotch);

  private:
    long long rest_ = 0;  // in 120ths of a step
};

// How many items to scroll, per timer tick, while a selection is dragged outside the scrollable part of an axis (from
// `from` to `to`, pixels): negative back, positive on, 0 inside; further out is quicker.
int AutoScrollSteps(int position, int from, int to, int dotsPerInch);

}  // namespace qvx::flexgrid
