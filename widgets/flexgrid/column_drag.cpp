#include "widgets/flexgrid/column_drag.h"

#include <cstdlib>

namespace qvx::flexgrid {

ColumnDrop DropOf(const Axis& columns, int col, int position) {
    ColumnDrop drop;
    int before = -1;  // the column in front of which the gap is
    const auto consider = [&](int gap, int line) {
        if (before >= 0 && std::abs(line - position) >= std::abs(drop.line - position)) {
            return;
        }
        before = gap;
        drop.line = line;
    };
    for (const Span& span : VisibleSpans(columns)) {
        if (span.index >= columns.fixed) {
            consider(span.index, span.start);
            consider(span.index + 1, span.end);
        }
    }
    if (before < 0 || before == col || before == col + 1) {
        return {};
    }
    drop.position = before > col ? before - 1 : before;
    return drop;
}

int NeighbourOf(const Axis& columns, int col, int step) {
    if (col < columns.fixed || col >= columns.count) {
        return -1;
    }
    const int next = col + step;
    return next < columns.fixed || next >= columns.count ? -1 : NearestShown(columns, next, step);
}

}  // namespace qvx::flexgrid
