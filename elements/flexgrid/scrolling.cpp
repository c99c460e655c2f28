#include "elements/flexgrid/scrolling.h"

#include <algorithm>
#include <cstdint>

namespace qvx::flexgrid {

namespace {

int ScrollRoom(const Axis& axis) { return std::max(0, axis.extent - std::min(axis.FixedExtent(), axis.extent)); }

}  // namespace

int LargestFirst(const Axis& axis) {
    const int room = ScrollRoom(axis);
    std::int64_t used = 0;
    int first = -1;
    for (int i = axis.count - 1; i >= axis.fixed; --i) {
        const int size = std::max(0, axis.sizeOf(i));
        if (size == 0) {
            continue;
        }
        used += size;
        if (used > room && first >= 0) {
            return first;
        }
        first = i;
        if (used > room) {
            return first;
        }
    }
    return axis.fixed;
}

int ClampFirst(const Axis& axis, int wanted) {
    const int last = LargestFirst(axis);
    const int clamped = std::clamp(wanted, axis.fixed, last);
    if (clamped == axis.fixed) {
        return clamped;
    }
    const int shown = NearestShown(axis, clamped, 1);
    return shown < 0 ? last : std::min(shown, last);
}

int FirstToShow(const Axis& axis, int index) {
    if (index < axis.fixed || index >= axis.count) {
        return axis.first;
    }
    if (index < axis.first) {
        return index;
    }
    const int room = ScrollRoom(axis);
    // Walk back from the item until it no longer fits with what lies before it.
    std::int64_t used = std::max(0, axis.sizeOf(index));
    int first = index;
    for (int i = index - 1; i >= axis.first; --i) {
        used += std::max(0, axis.sizeOf(i));
        if (used > room) {
            return first;
        }
        first = i;
    }
    return axis.first;
}

int PageOf(const Axis& axis) {
    const int room = ScrollRoom(axis);
    std::int64_t used = 0;
    int shown = 0;
    for (int i = std::max(axis.first, axis.fixed); i < axis.count; ++i) {
        const int size = std::max(0, axis.sizeOf(i));
        used += size;
        if (used > room) {
            break;
        }
        shown += size > 0 ? 1 : 0;
    }
    return std::max(1, shown);
}

bool Overflows(const Axis& axis, int extent) {
    std::int64_t used = 0;
    for (int i = 0; i < axis.count; ++i) {
        used += std::max(0, axis.sizeOf(i));
        if (used > extent) {
            return true;
        }
    }
    return false;
}

Bar BarOf(const Axis& axis) {
    const int last = LargestFirst(axis);
    // The page is the number of items behind the last position, so that the thumb reaches the end exactly there.
    const int page = std::max(1, axis.count - last);
    return {true, axis.fixed, last + page - 1, page, std::clamp(axis.first, axis.fixed, last)};
}

BarChoice ChooseBars(const Axis& rows, const Axis& columns, Size room, Size barThickness, int allowed) {
    const bool mayHorizontal = (allowed & 1) != 0 && columns.HasScrollable();
    const bool mayVertical = (allowed & 2) != 0 && rows.HasScrollable();
    BarChoice choice;
    choice.horizontal = mayHorizontal && Overflows(columns, room.width);
    choice.vertical = mayVertical && Overflows(rows, room.height - (choice.horizontal ? barThickness.height : 0));
    if (choice.vertical && !choice.horizontal) {
        choice.horizontal = mayHorizontal && Overflows(columns, room.width - barThickness.width);
    }
    return choice;
}

int FirstAfter(const Axis& axis, BarRequest request, int track) {
    switch (request) {
        case BarRequest::LineBack:
            return ClampFirst(axis, StepShown(axis, axis.first, -1));
        case BarRequest::LineOn:
            return ClampFirst(axis, StepShown(axis, axis.first, 1));
        case BarRequest::PageBack:
            return ClampFirst(axis, StepShown(axis, axis.first, -PageOf(axis)));
        case BarRequest::PageOn:
            return ClampFirst(axis, StepShown(axis, axis.first, PageOf(axis)));
        case BarRequest::ThumbSet:
        case BarRequest::Track:
            return ClampFirst(axis, track);
        case BarRequest::Start:
            return axis.fixed;
        case BarRequest::End:
            return LargestFirst(axis);
    }
    return axis.first;
}

int WheelCounter::Take(int delta, int stepsPerNotch) {
    const long long moved = static_cast<long long>(delta) * stepsPerNotch;
    if ((moved < 0) != (rest_ < 0)) {
        rest_ = 0;
    }
    rest_ += moved;
    const long long steps = rest_ / notch;
    rest_ -= steps * notch;
    return static_cast<int>(std::clamp<long long>(steps, INT32_MIN, INT32_MAX));
}

int AutoScrollSteps(int position, int from, int to, int dotsPerInch) {
    // One step more for each quarter inch outside.
    const int quarter = std::max(1, dotsPerInch / 4);
    if (position < from) {
        return -(1 + (from - 1 - position) / quarter);
    }
    if (position >= to) {
        return 1 + (position - to) / quarter;
    }
    return 0;
}

}  // namespace qvx::flexgrid
