// The mouse on the headers of the grid window's columns: clicks that listeners handle, and dragging to another place.
#include <cstdlib>

#include "widgets/flexgrid/flexgrid_window.h"

namespace qvx::flexgrid {

bool FlexGridWindow::MovesColumns() {
    bool moves = false;
    for (GridWindowEvents* events : events_) {
        moves = moves || (events && events->MovesColumns());
    }
    return moves;
}

// Returns whether the press waits until it is known what it becomes.
bool FlexGridWindow::PressHeader(const Hit& hit, Point point, int shift) {
    if (!hit.OnCell() || !hit.fixedRow || hit.fixedCol) {
        return false;
    }
    bool clicks = false;
    for (GridWindowEvents* events : events_) {
        clicks = clicks || (events && events->HandlesHeaderClick(hit.col));
    }
    if (!clicks && !MovesColumns()) {
        return false;
    }
    headerPress_ = {hit.col, point, shift, clicks};
    SetCapture(Handle());
    return true;
}

// Whether the pointer has moved so far from the pressed header that the press is a drag.
bool FlexGridWindow::IsDragFrom(Point point) const {
    const Point from = headerPress_->point;
    return std::abs(point.x - from.x) > GetSystemMetrics(SM_CXDRAG) ||
           std::abs(point.y - from.y) > GetSystemMetrics(SM_CYDRAG);
}

void FlexGridWindow::DragColumn(Point point) {
    SettleLayout();
    const Axis columns = ColumnAxis(grid_, CurrentView());
    SetCursor(LoadCursorW(nullptr, IDC_SIZEALL));
    movedColumn_->drop = DropOf(columns, movedColumn_->col, columns.Along(point.x));
    MarkAllStale();
    ScrollWhileDragging();
}

}  // namespace qvx::flexgrid
