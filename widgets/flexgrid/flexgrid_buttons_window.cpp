// The grid window's buttons in cells, and columns that are fitted to their texts.
#include "widgets/flexgrid/column_fit.h"
#include "widgets/flexgrid/flexgrid_window.h"
#include "widgets/flexgrid/paint.h"

namespace qvx::flexgrid {

void FlexGridWindow::SetButtons(const CellButtons* buttons) {
    buttons_ = buttons;
    MarkAllStale();
}

// The press moves the cursor to the cell, as any other does; the release on the button is its click.
bool FlexGridWindow::PressButton(Point point) {
    const Hit hit = HitAt(point);
    if (!grid_.Enabled() || !hit.OnCell() || !ButtonArea(grid_, CurrentView(), hit.row, hit.col).Contains(point)) {
        return false;
    }
    const LifeWatch watch = Watch();
    PressCell(point, 0);
    // A handler may have opened an editor, which ends the press.
    if (watch.Alive() && Handle() && drag_ != Drag::None) {
        drag_ = Drag::None;
        buttonPress_ = {hit.row, hit.col, true};
        MarkAllStale();
    }
    return true;
}

int FlexGridWindow::FittedWidth(int col, int rows) {
    SettleLayout();
    GdiSurface surface(buffer_.Prepare(nullptr, {1, 1}), grid_.Metrics().Resolution());
    return flexgrid::FittedWidth(grid_, CurrentView(), surface, col, rows);
}

// Fits the column whose border was double-clicked, and all others that are selected whole with it.
void FlexGridWindow::FitFrom(int col) {
    bool fits = false;
    for (GridWindowEvents* events : events_) {
        fits = fits || (events && events->FitsColumns());
    }
    if (!fits) {
        return;
    }
    const LifeWatch watch = Watch();
    EndDrag();
    const CellRange columns = ColumnsToFit(grid_, col);
    for (int each = columns.left; each <= columns.right && each < grid_.Cols(); ++each) {
        if (grid_.ColWidth(each) != 0) {
            grid_.SetColWidth(each, FittedWidth(each, RowsToFit(columns)));
        }
    }
    if (watch.Alive()) {
        Notify([](GridWindowEvents& events) { events.Resized(); });
    }
}

}  // namespace qvx::flexgrid
