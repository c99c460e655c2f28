#include "widgets/flexgrid/stale_area.h"

#include <utility>

namespace qvx::flexgrid {

void StaleArea::SettleCells(const Grid& grid, const View& view) {
    const CellRange changed = std::exchange(cells_, {});
    if (changed.Empty()) {
        return;
    }
    if (grid.MergeCells() != GridMerge::never) {
        all_ = true;  // a text affects the appearance of its neighbours
    }
    if (!all_) {
        area_ = area_.Union(Shown(grid, view).AreaOf(changed));
    }
}

std::optional<ScrollCopy> StaleArea::FollowView(const Grid& grid, Size client, bool hasPicture) {
    const int oldTop = std::exchange(top_, grid.TopRow());
    const int oldLeft = std::exchange(left_, grid.LeftCol());
    // Stale parts would move along.
    const bool movable = hasPicture && !all_ && area_.Empty();
    const auto copy = movable ? FollowScroll(grid, client, oldTop, oldLeft) : std::nullopt;
    if (copy) {
        area_ = copy->bared;
    } else {
        all_ = true;
    }
    return copy;
}

Rect StaleArea::Take(const Grid& grid, const Rect& client) {
    const Rect area = Area(client);
    all_ = false;
    area_ = {};
    top_ = grid.TopRow();
    left_ = grid.LeftCol();
    return area;
}

}  // namespace qvx::flexgrid
