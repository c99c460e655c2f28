#include "widgets/flexgrid/scroll_copy.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "widgets/flexgrid/view.h"

namespace qvx::flexgrid {
namespace {

// The move in one direction, in window coordinates: the part after the headers that moves along, by how much, and the
// part that is bared.
struct Slide {
    Span body;
    int by = 0;
    Span bared;
};

std::optional<Slide> SlideFrom(const Axis& axis, int oldFirst) {
    const std::int64_t moved = axis.startOf(std::min(oldFirst, axis.count)) - axis.startOf(axis.first);
    const int length = axis.extent;
    const int standing = static_cast<int>(std::min<std::int64_t>(axis.StandingExtent(), length));
    if (std::abs(moved) >= length - standing) return std::nullopt;
    const int by = static_cast<int>(moved);
    const Span bared = by < 0 ? Span{0, length + by, length} : Span{0, standing, standing + by};
    return Slide{axis.InWindow({0, standing, length}), axis.mirrored ? -by : by, axis.InWindow(bared)};
}

}  // namespace

std::optional<ScrollCopy> FollowScroll(const Grid& grid, Size client, int oldTop, int oldLeft) {
    const bool down = oldTop != grid.TopRow();
    const bool across = oldLeft != grid.LeftCol();
    if (down == across || grid.MergeCells() != GridMerge::never) return std::nullopt;
    const View view{client};
    const auto slide = down ? SlideFrom(RowAxis(grid, view), oldTop) : SlideFrom(ColumnAxis(grid, view), oldLeft);
    if (!slide) return std::nullopt;
    const auto& [body, by, bared] = *slide;
    if (down) {
        // The ground beside the columns looks the same in every row.
        const Axis columns = ColumnAxis(grid, view);
        const auto end = static_cast<int>(std::min<std::int64_t>(PositionOf(columns, columns.count), columns.extent));
        const auto [index, left, right] = columns.InWindow({0, 0, end});
        return ScrollCopy{{left, body.start, right, body.end}, 0, by, {left, bared.start, right, bared.end}};
    }
    return ScrollCopy{{body.start, 0, body.end, client.height}, by, 0, {bared.start, 0, bared.end, client.height}};
}

}  // namespace qvx::flexgrid
