// The position of a dialog.
#pragma once

#include <algorithm>

#include "common/geometry.h"

namespace qvx {

// Centres a box of size `box` over `over` (a window or the screen) and keeps it inside `work` as far as it fits; of a
// box that is too high, the lower part with the buttons stays inside. All values are in pixels.
constexpr Point PlaceOver(const Rect& over, const Rect& work, Size box) {
    const int x = over.left + (over.Width() - box.width) / 2;
    const int y = over.top + (over.Height() - box.height) / 2;
    return {std::max(work.left, std::min(x, work.right - box.width)),
            std::min(std::max(work.top, y), work.bottom - box.height)};
}

}  // namespace qvx
