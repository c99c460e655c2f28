// Where a dialog stands.
#pragma once

#include <algorithm>

#include "common/geometry.h"

namespace qvx {

// In the middle of `over` (a window or the screen), inside `work` as far as it fits; of a box too high for that the
// lower part with the buttons. Pixels.
constexpr Point PlaceOver(const Rect& over, const Rect& work, Size box) {
    const int x = over.left + (over.Width() - box.width) / 2;
    const int y = over.top + (over.Height() - box.height) / 2;
    return {std::max(work.left, std::min(x, work.right - box.width)),
            std::min(std::max(work.top, y), work.bottom - box.height)};
}

}  // namespace qvx
