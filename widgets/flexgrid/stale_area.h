// What of a grid's picture no longer shows the grid as it is, and so has to be drawn again.
#pragma once

#include <optional>

#include "common/geometry.h"
#include "widgets/flexgrid/cell_range.h"
#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/scroll_copy.h"
#include "widgets/flexgrid/view.h"

namespace qvx::flexgrid {

// Begins with everything stale. Areas are in pixels of the client area.
class StaleArea {
  public:
    // A change of cells costs nothing until it is settled.
    void AddCells(const CellRange& cells) { cells_ = cells_.Union(cells); }
    void AddAll() { all_ = true; }

    // Whether the grid shows another first row or column than the picture.
    bool Scrolled(const Grid& grid) const { return grid.TopRow() != top_ || grid.LeftCol() != left_; }
    // Whether anything has to be settled or drawn.
    bool Any(const Grid& grid) const { return all_ || !cells_.Empty() || Scrolled(grid); }

    // Returns what to invalidate when painting is asked for, before the extent of changes is worked out: all of the
    // window where all is sure to be drawn or moved, otherwise a pixel.
    Rect AreaToRequest(const Grid& grid, const Rect& client) const {
        constexpr Rect pixel{0, 0, 1, 1};
        return all_ || Scrolled(grid) ? pixel.Union(client) : pixel;
    }

    // Turns changed cells into an area.
    void SettleCells(const Grid& grid, const View& view);
    // Takes over the grid's scroll position. Returns the part of the picture to move, which is left out of the stale
    // area; without one, and without a picture in the first place, all is stale.
    std::optional<ScrollCopy> FollowView(const Grid& grid, Size client, bool hasPicture);

    // Returns the area to draw.
    Rect Area(const Rect& client) const { return all_ ? client : area_.Intersect(client); }
    // The same; it counts as drawn from now on.
    Rect Take(const Grid& grid, const Rect& client);

  private:
    CellRange cells_{};  // changed, and not yet in area_
    Rect area_{};
    bool all_ = true;
    int top_ = 0;  // the first row and column of the picture
    int left_ = 0;
};

}  // namespace qvx::flexgrid
