// Brings the window's changes to the screen: a back buffer is drawn where it is stale, and copied.
#include <utility>

#include "widgets/flexgrid/flexgrid_window.h"
#include "widgets/flexgrid/paint.h"

namespace qvx::flexgrid {

void FlexGridWindow::MarkAllStale() {
    stale_.AddAll();
    RequestPaint();
}

void FlexGridWindow::ShowHits(const CellHits* hits) {
    hits_ = hits;
    MarkAllStale();
}

void FlexGridWindow::ShowMarks(const CellMarks* marks) {
    marks_ = marks;
    MarkAllStale();
}

void FlexGridWindow::ShowFooter(const CellFooter* footer) {
    layoutChanged_ = true;
    footer_.Show(footer);
    MarkAllStale();
}

// Works out what to draw again after the changes since the last painting, and invalidates that part of the window
// unless the request for painting has done so. Returns what is invalid.
Rect FlexGridWindow::Settle() {
    const Rect requested = std::exchange(requested_, {});
    SettleLayout();
    stale_.SettleCells(grid_, CurrentView());
    Rect moved;
    if (stale_.Scrolled(grid_)) {
        UpdateBars();
        if (const auto copy = stale_.FollowView(grid_, CurrentView().client, buffer_.Dc() != nullptr)) {
            buffer_.Scroll(copy->body, copy->dx, copy->dy);
            moved = copy->body;
            // The marks of rows stay where they are while the cells below them move.
            if (copy->dx != 0 && marks_ && marks_->MarksRows() && grid_.FixedCols() == 0) {
                stale_.AddAll();
            }
        }
    }
    const Size client = CurrentView().client;
    const Rect area = stale_.Area({0, 0, client.width, client.height}).Union(moved);
    if (area.Empty() || requested.Union(area) == requested) {
        return requested;
    }
    const RECT invalid = ToRECT(area);
    InvalidateRect(Handle(), &invalid, FALSE);
    return area;
}

// `invalidated` is what Settle has returned.
void FlexGridWindow::PaintStale(const Rect& invalidated) {
    const View view = CurrentView();
    // With Redraw off, the last drawing is shown.
    const bool drawing = grid_.Redraw() || !buffer_.Dc();
    BufferedPaint paint(Handle(), grid_.Metrics().Resolution(), buffer_, drawing ? view.client : Size{});
    if (!drawing) {
        return;
    }
    if (paint.Fresh()) {
        stale_.AddAll();
    }
    Rect area = stale_.Take(grid_, {0, 0, view.client.width, view.client.height});
    if (!paint.Buffered()) {
        area = paint.UpdateArea();
    }
    if (!area.Empty()) {
        Paint(grid_, view, paint.Surface(), area);
        if (paint.Buffered() && area.Union(invalidated) != invalidated) {
            // More has become stale since, and only what is invalid is copied to the screen.
            InvalidateRect(Handle(), nullptr, FALSE);
        }
        if (marks_ && marks_->Waits()) {
            PostMessageW(Handle(), marksMessage, 0, 0);
        }
    }
}

void FlexGridWindow::OnPaint() {
    Rect invalidated;
    if (grid_.Redraw()) {
        invalidated = Settle();
        // Settling may have notified hosts of scrolling, and a host may have destroyed the window.
        if (!Handle()) {
            return;
        }
    }
    PaintStale(invalidated);
    // This painting covers all requests made since the message arrived.
    requested_ = {};
    if (layoutChanged_ || stale_.Any(grid_)) {
        RequestPaint();
    }
}

void FlexGridWindow::Refresh() {
    stale_.AddAll();
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
    view.buttons = buttons_;
    view.buttonWidth = GetSystemMetrics(SM_CXVSCROLL);
    view.client = {static_cast<int>(frame.right - frame.left), static_cast<int>(frame.bottom - frame.top)};
    IntersectClipRect(dc, frame.left, frame.top, frame.right, frame.bottom);
    OffsetViewportOrgEx(dc, frame.left, frame.top, nullptr);
    GdiSurface surface(dc, grid_.Metrics().Resolution());
    const int bottom = view.client.height;
    view.client.height = std::max(0, bottom - footer_.Height());
    Paint(grid_, view, surface, {0, 0, view.client.width, view.client.height});
    if (footer_.Footer()) {
        PaintFooter(grid_, view, *footer_.Footer(), surface, {0, view.client.height, view.client.width, bottom});
    }
}

}  // namespace qvx::flexgrid
