// Where the lines of the property list are in its window, and which one a key goes to. Pixels of the client area.
#pragma once

#include <algorithm>
#include <optional>

#include "common/geometry.h"

namespace qvx::host::designer {

enum class RowStep { previous, next, pageUp, pageDown, first, last };

struct RowsView {
    Size client;
    int lineHeight = 1;
    int count = 0;
    int top = 0;      // the first line that shows
    int divider = 0;  // between names and values

    // Whole lines that fit, at least one.
    int Page() const { return std::max(1, client.height / lineHeight); }
    int LastTop() const { return std::max(0, count - Page()); }
    // The possible top that is nearest to the wanted one.
    int ClampTop(int wanted) const { return std::clamp(wanted, 0, LastTop()); }
    // The top nearest to the present one with which the line shows in full.
    int TopShowing(int line) const { return ClampTop(std::clamp(top, line - Page() + 1, std::max(line, 0))); }
    // From a line (-1 for none) to another one; -1 when there are none.
    int Step(int from, RowStep step) const {
        if (count == 0) return -1;
        const int page = std::max(1, Page() - 1);
        const int to = step == RowStep::previous   ? from - 1
                       : step == RowStep::next     ? from + 1
                       : step == RowStep::pageUp   ? from - page
                       : step == RowStep::pageDown ? from + page
                       : step == RowStep::first    ? 0
                                                   : count - 1;
        return std::clamp(to, 0, count - 1);
    }

    std::optional<int> LineAt(Point at) const {
        const int line = at.y < 0 ? -1 : top + at.y / lineHeight;
        const bool inside = at.x >= 0 && at.x < client.width && at.y < client.height && line >= 0 && line < count;
        return inside ? std::optional(line) : std::nullopt;
    }
    Rect LineArea(int line) const {
        const int y = (line - top) * lineHeight;
        return {0, y, client.width, y + lineHeight};
    }
    // Without the grid lines below and after the name.
    Rect NameArea(int line) const {
        const Rect area = LineArea(line);
        return {area.left, area.top, std::min(divider, area.right), area.bottom - 1};
    }
    Rect ValueArea(int line) const {
        const Rect area = LineArea(line);
        return {std::min(divider + 1, area.right), area.top, area.right, area.bottom - 1};
    }
    bool OnDivider(Point at, int reach) const { return std::abs(at.x - divider) <= reach; }
};

// The divider in a window of that width, so that both columns can be used. `share` is the part for the names.
constexpr int DividerAt(int width, double share, int least) {
    const int wanted = static_cast<int>(width * share);
    return width < 2 * least ? width / 2 : std::clamp(wanted, least, width - least);
}

// Where the box of a cell opens: below it, or above when only there is room, inside the work area. All in screen
// pixels.
constexpr Rect PlaceBelow(const Rect& cell, Size box, const Rect& work) {
    const bool above = cell.bottom + box.height > work.bottom && cell.top - box.height >= work.top;
    const int top = above ? cell.top - box.height : std::max(work.top, std::min(cell.bottom, work.bottom - box.height));
    const int left = std::max(work.left, std::min(cell.right - box.width, work.right - box.width));
    return {left, top, left + box.width, top + box.height};
}

}  // namespace qvx::host::designer
