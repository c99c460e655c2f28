// Brings the window's changes to the screen: a back buffer is drawn where it is stale, and copied.
#include <algorithm>
#include <optional>
#include <utility>

#include "widgets/flexgrid/flexgrid_window.h"
#include "widgets/flexgrid/paint.h"
#include "widgets/flexgrid/scroll_copy.h"

namespace qvx::flexgrid {

void FlexGridWindow::MarkStale(const Rect& area) {
    stale_ = stale_.Union(area);
    InvalidateRect(Handle(), nullptr, FALSE);
}

void FlexGridWindow::MarkAllStale() {
    allStale_ = true;
    RequestPaint();
}

// Converts the changes since the last painting into the rectangle to draw again, and invalidates that part of the
// window.
void FlexGridWindow::Settle() {
    paintRequested_ = false;
    SettleLayout();
    const View view = CurrentView();
    const CellRange changed = std::exchange(changedCells_, {});
    if (!changed.Empty()) {
        if (grid_.MergeCells() != GridMerge::never) {
            allStale_ = true;  // a text affects the appearance of its neighbours
        } else if (!allStale_) {
            const Rect area = Shown(grid_, view).AreaOf(changed);
            if (!area.Empty()) {
                MarkStale(area);
            }
        }
    }
    FollowViewScroll();
    if (allStale_) {
        InvalidateRect(Handle(), nullptr, FALSE);
    }
}

// Moves the contents of the back buffer when the view has scrolled.
void FlexGridWindow::FollowViewScroll() {
    if (grid_.TopRow() == paintedTop_ && grid_.LeftCol() == paintedLeft_) {
        return;
    }
    const int oldTop = std::exchange(paintedTop_, grid_.TopRow());
    const int oldLeft = std::exchange(paintedLeft_, grid_.LeftCol());
    UpdateBars();
    InvalidateRect(Handle(), nullptr, FALSE);
    // Stale parts would move along.
    const bool movable = !allStale_ && stale_.Empty() && buffer_.Dc();
    const auto copy = movable ? FollowScroll(grid_, CurrentView().client, oldTop, oldLeft) : std::nullopt;
    if (!copy) {
        allStale_ = true;
        return;
    }
    buffer_.Scroll(copy->body, copy->dx, copy->dy);
    stale_ = copy->bared;
}

void FlexGridWindow::PaintStale() {
    const View view = CurrentView();
    // With Redraw off, the last drawing is shown.
    const bool drawing = grid_.Redraw() || !buffer_.Dc();
    BufferedPaint paint(Handle(), grid_.Metrics().Resolution(), buffer_, drawing ? view.client : Size{});
    if (!drawing) {
        return;
    }
    const Rect client{0, 0, view.client.width, view.client.height};
    Rect area = allStale_ || paint.Fresh() ? client : stale_.Intersect(client);
    if (!paint.Buffered()) {
        area = paint.UpdateArea();
    }
    allStale_ = false;
    stale_ = {};
    paintedTop_ = grid_.TopRow();
    paintedLeft_ = grid_.LeftCol();
    if (!area.Empty()) {
        Paint(grid_, view, paint.Surface(), area);
    }
}

void FlexGridWindow::OnPaint() {
    if (grid_.Redraw()) {
        Settle();
        // Settling may have notified hosts of scrolling, and a host may have destroyed the window.
        if (!Handle()) {
            return;
        }
    }
    PaintStale();
    // This painting covers all requests made since the message arrived.
    paintRequested_ = false;
    if (!changedCells_.Empty() || layoutChanged_ || allStale_ || grid_.TopRow() != paintedTop_ ||
        grid_.LeftCol() != paintedLeft_) {
        RequestPaint();
    }
}

void FlexGridWindow::Refresh() {
    allStale_ = true;
    layoutChanged_ = true;
    if (Handle() && grid_.Redraw()) {
        Settle();
        UpdateWindow(Handle());
    }
}

void FlexGridWindow::DrawTo(HDC dc, const Rect& area) {
    SettleLayout();
    const SavedDc saved(dc);
    RECT frame = ToRECT(area);
    if (grid_.BorderStyle() == GridBorder::single) {
        if (grid_.Appearance() == GridAppearance::threeD) {
            DrawEdge(dc, &frame, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
        } else {
            FrameRect(dc, &frame, GetSysColorBrush(COLOR_WINDOWFRAME));
            InflateRect(&frame, -1, -1);
        }
    }
    View view;
    view.client = {static_cast<int>(frame.right - frame.left), static_cast<int>(frame.bottom - frame.top)};
    IntersectClipRect(dc, frame.left, frame.top, frame.right, frame.bottom);
    OffsetViewportOrgEx(dc, frame.left, frame.top, nullptr);
    GdiSurface surface(dc, grid_.Metrics().Resolution());
    Paint(grid_, view, surface, {0, 0, view.client.width, view.client.height});
}

}  // namespace qvx::flexgrid
