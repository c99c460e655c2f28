// What the pointer drags in the grid's window until its button is released: a selection, a border, a button, a column.
#include <algorithm>
#include <utility>

#include "widgets/flexgrid/button_steps.h"
#include "widgets/flexgrid/flexgrid_window.h"
#include "widgets/flexgrid/hit_test.h"
#include "widgets/flexgrid/paint.h"

namespace qvx::flexgrid {

namespace {

constexpr UINT_PTR scrollTimer = 1;
constexpr UINT scrollInterval = 50;  // milliseconds between steps of automatic scrolling

}  // namespace

void FlexGridWindow::OnMove(Point point) {
    lastPoint_ = point;
    if (border_.kind != Border::Kind::None) {
        const View view = CurrentView();
        const bool column = border_.kind == Border::Kind::Column;
        const Axis axis = column ? ColumnAxis(grid_, view) : RowAxis(grid_, view);
        const Dpi dpi = grid_.Metrics().Resolution();
        borderLine_ =
            DraggedBorder(border_, axis.Along(column ? point.x : point.y), axis.extent, column ? dpi.x : dpi.y);
        MarkAllStale();
        return;
    }
    if (buttonPress_) {
        const bool inside = ButtonArea(grid_, CurrentView(), buttonPress_->row, buttonPress_->col).Contains(point);
        if (std::exchange(buttonPress_->inside, inside) != inside) {
            MarkAllStale();
        }
        return;
    }
    if (headerPress_ && IsDragFrom(point)) {
        const HeaderPress press = *std::exchange(headerPress_, std::nullopt);
        const LifeWatch watch = Watch();
        if (MovesColumns()) {
            clicking_ = false;
            movedColumn_ = {press.col, {}};
        } else {
            PressCell(press.point, press.shift);
        }
        if (!watch.Alive() || !Handle()) {
            return;
        }
    }
    if (movedColumn_) {
        DragColumn(point);
        return;
    }
    if (drag_ != Drag::None) {
        DragSelection(point);
        return;
    }
    tip_.Follow(Handle(), HitAt(point), point, grid_.RightToLeft());
}

void FlexGridWindow::DragSelection(Point point) {
    const View view = CurrentView();
    const Axis rows = RowAxis(grid_, view);
    const Axis columns = ColumnAxis(grid_, view);
    const Cursor cursor = grid_.CurrentCursor();
    const Cursor moved = MouseDrag(drag_, cursor, point, rows, columns);
    const LifeWatch watch = Watch();
    if (moved != cursor) {
        grid_.Select(moved);
    }
    if (!watch.Alive() || !Handle() || drag_ == Drag::None) {
        return;
    }
    ScrollWhileDragging();
}

// Scrolls several times a second while the pointer is not over cells.
void FlexGridWindow::ScrollWhileDragging() {
    const Size client = CurrentView().client;
    if (Rect{0, 0, client.width, client.height}.Contains(lastPoint_)) {
        KillTimer(Handle(), scrollTimer);
    } else {
        SetTimer(Handle(), scrollTimer, scrollInterval, nullptr);
    }
}

void FlexGridWindow::OnTimer(UINT_PTR timer) {
    if (timer == CellTip::creationTimer) {
        if (tip_.Create(Handle())) {
            tip_.Follow(Handle(), HitAt(lastPoint_), lastPoint_, grid_.RightToLeft());
        }
        return;
    }
    if (drag_ == Drag::None && !movedColumn_) {
        KillTimer(Handle(), scrollTimer);
        return;
    }
    SettleLayout();
    const View view = CurrentView();
    const Axis rows = RowAxis(grid_, view);
    const Axis columns = ColumnAxis(grid_, view);
    const Dpi dpi = grid_.Metrics().Resolution();
    int top = grid_.TopRow();
    int left = grid_.LeftCol();
    if (drag_ != Drag::Columns && !movedColumn_) {
        top = ClampFirst(rows, StepShown(rows, top, AutoScrollSteps(rows.Along(lastPoint_.y), 0, rows.extent, dpi.y)));
    }
    if (drag_ != Drag::Rows) {
        left = ClampFirst(
            columns, StepShown(columns, left, AutoScrollSteps(columns.Along(lastPoint_.x), 0, columns.extent, dpi.x)));
    }
    const LifeWatch watch = Watch();
    ScrollTo(top, left);
    if (!watch.Alive() || !Handle()) {
        return;
    }
    if (movedColumn_) {
        DragColumn(lastPoint_);
    } else {
        DragSelection(lastPoint_);
    }
}

// Returns true when the release makes a click.
bool FlexGridWindow::OnLeftUp(Point point) {
    const Rect client = ClientArea();
    const bool click = pressed_ && clicking_ && client.Contains(point);
    const Border border = border_;
    const LifeWatch watch = Watch();
    if (border.kind != Border::Kind::None) {
        OnMove(point);
        const int line = borderLine_;
        EndDrag();
        const bool column = border.kind == Border::Kind::Column;
        const Dpi dpi = grid_.Metrics().Resolution();
        const int twips = DraggedSizeTwips(border, line, column ? dpi.x : dpi.y);
        if (column && border.index < grid_.Cols()) {
            grid_.SetColWidth(border.index, twips);
        } else if (!column && border.index < grid_.Rows()) {
            grid_.SetRowHeight(border.index, twips);
        }
        if (watch.Alive()) {
            Notify([](GridWindowEvents& events) { events.Resized(); });
        }
        return false;
    }
    EndDrag();
    return click;
}

void FlexGridWindow::EndDrag() {
    const bool resizing = border_.kind != Border::Kind::None;
    const bool pressing = buttonPress_.has_value() || movedColumn_.has_value();
    drag_ = Drag::None;
    headerPress_.reset();
    movedColumn_.reset();
    buttonPress_.reset();
    border_ = {};
    borderLine_ = -1;
    pressed_ = false;
    if (!Handle()) {
        return;
    }
    KillTimer(Handle(), scrollTimer);
    if (resizing || pressing) {
        MarkAllStale();
    }
    if (GetCapture() == Handle()) {
        ReleaseCapture();
    }
}

bool FlexGridWindow::OnSetCursor() {
    POINT at{};
    if (!GetCursorPos(&at) || !ScreenToClient(Handle(), &at)) {
        return false;
    }
    Border border = border_;
    if (border.kind == Border::Kind::None) {
        const View view = CurrentView();
        border =
            BorderAt(RowAxis(grid_, view), ColumnAxis(grid_, view), {static_cast<int>(at.x), static_cast<int>(at.y)},
                     static_cast<int>(grid_.AllowUserResizing()), grid_.Metrics().Resolution());
    }
    if (border.kind == Border::Kind::None) {
        return false;
    }
    SetCursor(LoadCursorW(nullptr, border.kind == Border::Kind::Column ? IDC_SIZEWE : IDC_SIZENS));
    return true;
}

}  // namespace qvx::flexgrid
