#include "elements/flexgrid/axis.h"

#include <algorithm>
#include <cstdint>

namespace qvx::flexgrid {

int Axis::FixedExtent() const {
    std::int64_t sum = 0;
    for (int i = 0; i < fixed; ++i) {
        sum += std::max(0, sizeOf(i));
    }
    return static_cast<int>(std::min<std::int64_t>(sum, INT32_MAX));
}

std::vector<Span> VisibleSpans(const Axis& axis) {
    std::vector<Span> spans;
    std::int64_t at = 0;
    const auto add = [&](int index) {
        const int size = axis.sizeOf(index);
        if (size > 0) {
            const std::int64_t end = std::min<std::int64_t>(at + size, INT32_MAX);
            spans.push_back({index, static_cast<int>(at), static_cast<int>(end)});
            at = end;
        }
    };
    for (int i = 0; i < axis.fixed && at < axis.extent; ++i) {
        add(i);
    }
    for (int i = std::max(axis.first, axis.fixed); i < axis.count && at < axis.extent; ++i) {
        add(i);
    }
    return spans;
}

int NearestShown(const Axis& axis, int index, int step) {
    for (int i = index; i >= axis.fixed && i < axis.count; i += step) {
        if (!axis.IsHidden(i)) {
            return i;
        }
    }
    return -1;
}

int StepShown(const Axis& axis, int index, int distance) {
    const int step = distance < 0 ? -1 : 1;
    for (int left = std::abs(distance); left > 0; --left) {
        const int next = NearestShown(axis, index + step, step);
        if (next < 0) {
            break;
        }
        index = next;
    }
    return index;
}

int PositionOf(const Axis& axis, int index) {
    std::int64_t at = 0;
    const int fixedEnd = std::min(axis.fixed, index);
    for (int i = 0; i < fixedEnd; ++i) {
        at += std::max(0, axis.sizeOf(i));
    }
    if (index >= axis.fixed) {
        const int first = std::max(axis.first, axis.fixed);
        for (int i = first; i < index; ++i) {
            at += std::max(0, axis.sizeOf(i));
        }
        for (int i = index; i < first; ++i) {
            at -= std::max(0, axis.sizeOf(i));
        }
    }
    return static_cast<int>(std::clamp<std::int64_t>(at, INT32_MIN, INT32_MAX));
}

bool IsVisible(const Axis& axis, int index) {
    if (index < 0 || index >= axis.count || axis.IsHidden(index)) {
        return false;
    }
    const auto spans = VisibleSpans(axis);
    return std::any_of(spans.begin(), spans.end(), [&](const Span& s) { return s.index == index; });
}

std::vector<Span> Mirrored(std::vector<Span> spans, int extent) {
    for (Span& span : spans) {
        span = {span.index, extent - span.end, extent - span.start};
    }
    return spans;
}

}  // namespace qvx::flexgrid
