// An axis over given sizes, for tests.
#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "widgets/flexgrid/axis.h"

namespace qvx::flexgrid {

template <class SizeOf>
Axis AxisOf(int count, int fixed, int first, int extent, SizeOf sizeOf) {
    auto starts = std::make_shared<std::vector<std::int64_t>>(1, 0);
    for (int i = 0; i < count; ++i) {
        starts->push_back(starts->back() + sizeOf(i));
    }
    const auto startOf = [starts](int i) { return starts->at(static_cast<std::size_t>(i)); };
    return {count,
            fixed,
            fixed,
            first,
            extent,
            [startOf](int i) { return static_cast<int>(startOf(i + 1) - startOf(i)); },
            startOf,
            [starts, count](std::int64_t at) {
                const auto after = std::upper_bound(starts->begin(), starts->end(), at);
                return std::min(count, static_cast<int>(after - starts->begin()) - 1);
            }};
}

// Returns the axis from right to left.
inline Axis Mirrored(Axis axis) {
    axis.mirrored = true;
    return axis;
}

}  // namespace qvx::flexgrid
