#include "widgets/flexgrid/resizing.h"

#include <algorithm>
#include <cstdlib>

namespace qvx::flexgrid {

namespace {

constexpr int gripPixels = 4;      // on either side of a border, at 96 dots per inch
constexpr int smallestPixels = 4;  // the smallest size of a resized item, at 96 dots per inch

// Returns the span whose end is nearest to the position and within the grip. Of two that end close together, the later
// one is returned, so that a narrow column can be widened again.
Border EndNear(const Axis& axis, int position, int dotsPerInch, Border::Kind kind) {
    const int grip = Scaled(gripPixels, dotsPerInch);
    Border found;
    int best = grip + 1;
    for (const Span& span : VisibleSpans(axis)) {
        const int distance = std::abs(span.end - position);
        if (distance <= best && distance <= grip) {
            best = distance;
            found = {kind, span.index, span.start, span.end - position};
        }
    }
    return found;
}

}  // namespace

Border BorderAt(const Axis& rows, const Axis& columns, Point point, int allowed, Dpi dpi) {
    const int x = columns.Along(point.x);
    const int y = rows.Along(point.y);
    if ((allowed & 1) != 0 && y >= 0 && y < rows.FixedExtent()) {
        const Border border = EndNear(columns, x, dpi.x, Border::Kind::Column);
        if (border.kind != Border::Kind::None) {
            return border;
        }
    }
    if ((allowed & 2) != 0 && x >= 0 && x < columns.FixedExtent()) {
        return EndNear(rows, y, dpi.y, Border::Kind::Row);
    }
    return {};
}

int DraggedBorder(const Border& border, int position, int extent, int dotsPerInch) {
    const int least = border.start + Scaled(smallestPixels, dotsPerInch);
    return std::max(least, std::min(position + border.grip, extent));
}

int DraggedSizeTwips(const Border& border, int line, int dotsPerInch) {
    return PixelsToTwips(line - border.start, dotsPerInch);
}

}  // namespace qvx::flexgrid
