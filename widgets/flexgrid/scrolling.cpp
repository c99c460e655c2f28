#include "widgets/flexgrid/scrolling.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace qvx::flexgrid {

namespace {

BarRequest Opposite(BarRequest request) {
    if (request == BarRequest::ThumbSet || request == BarRequest::Track) {
        return request;
    }
    // Every request is next to its opposite: backwards and forwards, start and end.
    return static_cast<BarRequest>(static_cast<int>(request) ^ 1);
}

}  // namespace

int LargestFirst(const Axis& axis) {
    const int last = NearestShown(axis, axis.count - 1, -1);
    if (last < axis.standing) {
        return axis.standing;
    }
    // The first item that is completely within the last page, or the last item if even that is not.
    const std::int64_t page = axis.startOf(axis.count) - axis.ScrolledExtent();
    if (page <= axis.StandingExtent()) {
        return axis.standing;
    }
    const int cut = axis.shownAt(page - 1);
    return std::min(last, std::max(axis.standing, NearestShown(axis, std::min(cut + 1, axis.count - 1), 1)));
}

int ClampFirst(const Axis& axis, int wanted) {
    const int last = LargestFirst(axis);
    const int clamped = std::clamp(wanted, axis.standing, last);
    if (clamped == axis.standing) {
        return clamped;
    }
    const int shown = NearestShown(axis, clamped, 1);
    return shown < 0 ? last : std::min(shown, last);
}

int FirstToShow(const Axis& axis, int index) {
    if (index < axis.standing || index >= axis.count) {
        return axis.first;
    }
    if (index <= axis.first) {
        return index;
    }
    // What has to be before the window so that the item's end is inside it.
    const std::int64_t before = axis.startOf(index + 1) - axis.ScrolledExtent();
    if (before <= axis.startOf(axis.first)) {
        return axis.first;
    }
    return std::min(index, axis.shownAt(before - 1) + 1);
}

int PageOf(const Axis& axis) {
    const std::int64_t room = axis.ScrolledExtent();
    std::int64_t used = 0;
    int shown = 0;
    for (int i = NearestShown(axis, std::max(axis.first, axis.standing), 1); i >= 0; i = NearestShown(axis, i + 1, 1)) {
        used += axis.sizeOf(i);
        if (used > room) {
            break;
        }
        ++shown;
    }
    return std::max(1, shown);
}

bool Overflows(const Axis& axis, int extent) { return axis.startOf(axis.count) > extent; }

Bar BarOf(const Axis& axis) {
    const int last = LargestFirst(axis);
    // The page is the number of items after the last position, so that the thumb reaches the end exactly there.
    const int page = std::max(1, axis.count - last);
    const int first = std::clamp(axis.first, axis.standing, last);
    return {true, axis.standing, last + page - 1, page, axis.mirrored ? axis.standing + last - first : first};
}

bool ThumbMoves(const Bar& drawn, const Bar& wanted, int length) {
    if (drawn.shown != wanted.shown || drawn.min != wanted.min || drawn.max != wanted.max ||
        drawn.page != wanted.page) {
        return true;
    }
    // The ends are exact, so that the thumb always touches its arrow there.
    const int last = wanted.max - wanted.page + 1;
    const auto isEnd = [&](int position) { return position <= wanted.min || position >= last; };
    if (isEnd(drawn.position) != isEnd(wanted.position)) {
        return true;
    }
    const std::int64_t range = static_cast<std::int64_t>(wanted.max) - wanted.min + 1;
    const std::int64_t moved = std::abs(static_cast<std::int64_t>(wanted.position) - drawn.position);
    return moved * std::max(1, length) >= range;
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
    if (axis.mirrored) {
        request = Opposite(request);
        track = axis.standing + LargestFirst(axis) - track;
    }
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
            return axis.standing;
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
    // One step more for each quarter inch of distance.
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
