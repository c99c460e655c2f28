#include "widgets/flexgrid/axis.h"

#include <algorithm>
#include <cstdlib>

namespace qvx::flexgrid {

std::int64_t Axis::ScrolledExtent() const { return std::max<std::int64_t>(0, extent - StandingExtent()); }

std::vector<Span> VisibleSpans(const Axis& axis) {
    std::vector<Span> spans;
    std::int64_t at = 0;
    const auto add = [&](int from, int to) {
        for (int i = from; i < to && at < axis.extent; ++i) {
            int size = axis.sizeOf(i);
            if (size <= 0) {
                i = axis.shownAt(axis.startOf(i));
                if (i >= to) {
                    break;
                }
                size = axis.sizeOf(i);
            }
            const std::int64_t end = std::min<std::int64_t>(at + size, INT32_MAX);
            spans.push_back({i, static_cast<int>(at), static_cast<int>(end)});
            at = end;
        }
    };
    add(0, axis.standing);
    add(std::max(axis.first, axis.standing), axis.count);
    return spans;
}

int NearestShown(const Axis& axis, int index, int step) {
    if (index < axis.fixed || index >= axis.count) {
        return -1;
    }
    if (!axis.IsHidden(index)) {
        return index;
    }
    const std::int64_t start = axis.startOf(index);
    if (step < 0 && start == 0) {
        return -1;
    }
    const int found = axis.shownAt(step > 0 ? start : start - 1);
    return found >= axis.fixed && found < axis.count ? found : -1;
}

int StepShown(const Axis& axis, int index, int distance) {
    const int step = distance < 0 ? -1 : 1;
    for (int left = std::abs(distance); left > 0; --left) {
        // The item after a header is the first one that scrolls, however many headers are in between.
        const int next = NearestShown(axis, step > 0 ? std::max(index + 1, axis.fixed) : index - 1, step);
        if (next < 0) {
            break;
        }
        index = next;
    }
    return index;
}

std::int64_t PositionOf(const Axis& axis, int index) {
    std::int64_t at = axis.startOf(index);
    if (index >= axis.standing) {
        at += axis.StandingExtent() - axis.startOf(std::max(axis.first, axis.standing));
    }
    return at;
}

bool IsVisible(const Axis& axis, int index) {
    if (index < 0 || index >= axis.count || axis.IsHidden(index)) {
        return false;
    }
    return (index < axis.standing || index >= axis.first) && PositionOf(axis, index) < axis.extent;
}

std::int64_t StartInWindow(const Axis& axis, int index) {
    const std::int64_t at = PositionOf(axis, index);
    return axis.mirrored ? axis.extent - at - axis.sizeOf(index) : at;
}

std::vector<Span> SpansInWindow(const Axis& axis) {
    std::vector<Span> spans = VisibleSpans(axis);
    for (Span& span : spans) {
        span = axis.InWindow(span);
    }
    return spans;
}

}  // namespace qvx::flexgrid
