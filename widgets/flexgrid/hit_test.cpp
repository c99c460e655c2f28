#include "widgets/flexgrid/hit_test.h"

namespace qvx::flexgrid {

int ItemAt(const Axis& axis, int position) {
    for (const Span& span : VisibleSpans(axis)) {
        if (position >= span.start && position < span.end) {
            return span.index;
        }
    }
    return -1;
}

int NearestItemAt(const Axis& axis, int position, bool scrollableOnly) {
    int nearest = -1;
    for (const Span& span : VisibleSpans(axis)) {
        if (scrollableOnly && span.index < axis.fixed) {
            continue;
        }
        if (nearest >= 0 && position < span.start) {
            break;
        }
        nearest = span.index;
    }
    return nearest;
}

Hit HitTest(const Axis& rows, const Axis& columns, Point point) {
    Hit hit{ItemAt(rows, rows.Along(point.y)), ItemAt(columns, columns.Along(point.x))};
    hit.fixedRow = hit.row >= 0 && hit.row < rows.fixed;
    hit.fixedCol = hit.col >= 0 && hit.col < columns.fixed;
    return hit;
}

}  // namespace qvx::flexgrid
