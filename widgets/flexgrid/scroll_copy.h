// Finds the part of a drawn picture that can be moved when the view scrolls, so that only the newly visible part is
// drawn.
#pragma once

#include <optional>

#include "common/geometry.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

// Pixels of the client area: `body` moves by `dx` and `dy`, after which `bared` has to be drawn.
struct ScrollCopy {
    Rect body;
    int dx = 0;
    int dy = 0;
    Rect bared;
    friend bool operator==(const ScrollCopy&, const ScrollCopy&) = default;
};

// Returns the move from a picture drawn with the given first row and column to the grid's present ones. Returns nullopt
// when too little of it stays visible to be worth moving, when both directions have changed, and with merged cells,
// whose appearance depends on the visible part.
std::optional<ScrollCopy> FollowScroll(const Grid& grid, Size client, int oldTop, int oldLeft);

}  // namespace qvx::flexgrid
