#include "widgets/flexgrid/navigation.h"

#include <algorithm>

#include "common/keys.h"
#include "widgets/flexgrid/scrolling.h"

namespace qvx::flexgrid {

namespace {

// Returns the first or last shown item; `otherwise` when all are hidden.
int EndOf(const Axis& axis, int step, int otherwise) {
    const int found = NearestShown(axis, step > 0 ? axis.count - 1 : axis.fixed, -step);
    return found < 0 ? otherwise : found;
}

}  // namespace

std::optional<Step> KeyStep(int key, int shift, const Cursor& cursor, const Axis& rows, const Axis& columns) {
    if ((shift & keys::altMask) != 0 || !rows.HasScrollable() || !columns.HasScrollable()) {
        return std::nullopt;
    }
    const bool control = (shift & keys::controlMask) != 0;
    const bool extend = (shift & keys::shiftMask) != 0;
    int row = extend ? cursor.rowSel : cursor.row;
    int col = extend ? cursor.colSel : cursor.col;
    Step step{cursor, rows.first, columns.first};
    switch (key) {
        case keys::left:
        case keys::right: {
            const int sign = (key == keys::right) != columns.mirrored ? 1 : -1;
            col = control ? EndOf(columns, sign, col) : StepShown(columns, col, sign);
            break;
        }
        case keys::up:
            row = control ? EndOf(rows, -1, row) : StepShown(rows, row, -1);
            break;
        case keys::down:
            row = control ? EndOf(rows, 1, row) : StepShown(rows, row, 1);
            break;
        case keys::pageUp:
        case keys::pageDown: {
            const int sign = key == keys::pageUp ? -1 : 1;
            // The view moves as far as the cursor does, so that the cursor stays at the same place on the screen.
            if (control) {
                const int page = sign * PageOf(columns);
                col = StepShown(columns, col, page);
                step.leftCol = ClampFirst(columns, StepShown(columns, columns.first, page));
            } else {
                const int page = sign * PageOf(rows);
                row = StepShown(rows, row, page);
                step.topRow = ClampFirst(rows, StepShown(rows, rows.first, page));
            }
            break;
        }
        case keys::home:
            col = EndOf(columns, -1, col);
            row = control ? EndOf(rows, -1, row) : row;
            break;
        case keys::end:
            col = EndOf(columns, 1, col);
            row = control ? EndOf(rows, 1, row) : row;
            break;
        default:
            return std::nullopt;
    }
    step.cursor.rowSel = row;
    step.cursor.colSel = col;
    if (!extend) {
        step.cursor.row = row;
        step.cursor.col = col;
    }
    Axis seenRows = rows;
    seenRows.first = step.topRow;
    Axis seenColumns = columns;
    seenColumns.first = step.leftCol;
    step.topRow = FirstToShow(seenRows, row);
    step.leftCol = FirstToShow(seenColumns, col);
    return step;
}

Press MousePress(const Hit& hit, bool extend, bool bigSelection, GridSelectionMode mode, const Cursor& cursor,
                 const Axis& rows, const Axis& columns) {
    const Press nothing{Drag::None, cursor};
    if (!hit.OnCell() || !rows.HasScrollable() || !columns.HasScrollable()) {
        return nothing;
    }
    const int lastRow = rows.count - 1;
    const int lastCol = columns.count - 1;
    if (!hit.OnFixed()) {
        Press press{Drag::Cells, cursor};
        if (extend) {
            press.cursor.rowSel = hit.row;
            press.cursor.colSel = hit.col;
        } else {
            press.cursor = {hit.row, hit.col, hit.row, hit.col};
        }
        return press;
    }
    if (!bigSelection) {
        return nothing;
    }
    if (hit.fixedRow && hit.fixedCol) {
        return {Drag::None,
                mode == GridSelectionMode::free ? Cursor{rows.fixed, columns.fixed, lastRow, lastCol} : cursor};
    }
    if (hit.fixedRow) {
        if (mode == GridSelectionMode::byRow) {
            return nothing;
        }
        return {Drag::Columns, {rows.fixed, extend ? cursor.col : hit.col, lastRow, hit.col}};
    }
    if (mode == GridSelectionMode::byColumn) {
        return nothing;
    }
    return {Drag::Rows, {extend ? cursor.row : hit.row, columns.fixed, hit.row, lastCol}};
}

Cursor MouseDrag(Drag drag, const Cursor& cursor, Point point, const Axis& rows, const Axis& columns) {
    Cursor moved = cursor;
    const int row = NearestItemAt(rows, rows.Along(point.y), true);
    const int col = NearestItemAt(columns, columns.Along(point.x), true);
    if (row >= 0 && (drag == Drag::Cells || drag == Drag::Rows)) {
        moved.rowSel = row;
    }
    if (col >= 0 && (drag == Drag::Cells || drag == Drag::Columns)) {
        moved.colSel = col;
    }
    return moved;
}

}  // namespace qvx::flexgrid
