#include "elements/flexgrid/scroll_copy.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "elements/flexgrid/view.h"

namespace qvx::flexgrid {
namespace {

// One direction: how far what lies behind `fixed` pixels of headers moves within `length`, and the stretch that is
// bared.
struct Slide {
    int fixed = 0;
    int by = 0;
    int baredFrom = 0;
    int baredTo = 0;
};

std::optional<Slide> SlideBy(std::int64_t moved, std::int64_t headers, int length) {
    const int fixed = static_cast<int>(std::min<std::int64_t>(headers, length));
    if (std::abs(moved) >= length - fixed) return std::nullopt;
    const int by = static_cast<int>(moved);
    return by < 0 ? Slide{fixed, by, length + by, length} : Slide{fixed, by, fixed, fixed + by};
}

}  // namespace

std::optional<ScrollCopy> FollowScroll(const Grid& grid, Size client, int oldTop, int oldLeft) {
    const bool down = oldTop != grid.TopRow();
    const bool across = oldLeft != grid.LeftCol();
    if (down == across || grid.MergeCells() != GridMerge::never) return std::nullopt;
    if (down) {
        const auto slide = SlideBy(grid.RowTop(std::min(oldTop, grid.Rows())) - grid.RowTop(grid.TopRow()),
                                   grid.RowTop(grid.FixedRows()), client.height);
        if (!slide) return std::nullopt;
        return ScrollCopy{{0, slide->fixed, client.width, client.height},
                          0,
                          slide->by,
                          {0, slide->baredFrom, client.width, slide->baredTo}};
    }
    const auto slide = SlideBy(grid.ColLeft(std::min(oldLeft, grid.Cols())) - grid.ColLeft(grid.LeftCol()),
                               grid.ColLeft(grid.FixedCols()), client.width);
    if (!slide) return std::nullopt;
    ScrollCopy copy{{slide->fixed, 0, client.width, client.height},
                    slide->by,
                    0,
                    {slide->baredFrom, 0, slide->baredTo, client.height}};
    if (grid.RightToLeft()) {
        copy = {Mirrored(copy.body, client.width), -copy.dx, 0, Mirrored(copy.bared, client.width)};
    }
    return copy;
}

}  // namespace qvx::flexgrid
