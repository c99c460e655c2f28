// The positions of cells, rows and columns for hosts.
#include <algorithm>
#include <cstdint>

#include "widgets/flexgrid/flexgrid_window.h"
#include "widgets/flexgrid/hit_test.h"
#include "widgets/flexgrid/paint.h"

namespace qvx::flexgrid {

namespace {

// Values beyond the range are limited to its ends.
int Held(std::int64_t pixels) { return static_cast<int>(std::clamp<std::int64_t>(pixels, INT32_MIN, INT32_MAX)); }

}  // namespace

Rect FlexGridWindow::CellTwips() {
    ScrollIntoView(grid_.Row(), grid_.Col());
    const View view = CurrentView();
    const bool fixed = grid_.Row() < grid_.FixedRows() || grid_.Col() < grid_.FixedCols();
    if (grid_.Rows() == 0 || grid_.Cols() == 0) {
        return {};
    }
    const Point corner = ClientCorner();
    const Rect cell =
        InsideLines(grid_, CellArea(grid_, view, grid_.Row(), grid_.Col()), fixed).Offset(corner.x, corner.y);
    const Dpi dpi = grid_.Metrics().Resolution();
    return {PixelsToTwips(cell.left, dpi.x), PixelsToTwips(cell.top, dpi.y), PixelsToTwips(cell.right, dpi.x),
            PixelsToTwips(cell.bottom, dpi.y)};
}

int FlexGridWindow::RowPos(int row) {
    SettleLayout();
    const std::int64_t at = StartInWindow(RowAxis(grid_, CurrentView()), row);
    return PixelsToTwips(Held(at + ClientCorner().y), grid_.Metrics().Resolution().y);
}

int FlexGridWindow::ColPos(int col) {
    SettleLayout();
    const std::int64_t at = StartInWindow(ColumnAxis(grid_, CurrentView()), col);
    return PixelsToTwips(Held(at + ClientCorner().x), grid_.Metrics().Resolution().x);
}

std::vector<Span> FlexGridWindow::ColumnSpans() {
    const View view = SettledView();
    const int left = ClientCorner().x;
    std::vector<Span> spans = SpansInWindow(ColumnAxis(grid_, view));
    for (Span& span : spans) {
        span.start = std::max(span.start, 0) + left;
        span.end = std::min(span.end, view.client.width) + left;
    }
    return spans;
}

bool FlexGridWindow::RowIsVisible(int row) {
    SettleLayout();
    return IsVisible(RowAxis(grid_, CurrentView()), row);
}

bool FlexGridWindow::ColIsVisible(int col) {
    SettleLayout();
    return IsVisible(ColumnAxis(grid_, CurrentView()), col);
}

int FlexGridWindow::MouseRow() {
    POINT at{};
    if (!Handle() || !GetCursorPos(&at) || !ScreenToClient(Handle(), &at)) {
        return 0;
    }
    SettleLayout();
    const Axis rows = RowAxis(grid_, CurrentView());
    return std::max(0, NearestItemAt(rows, rows.Along(static_cast<int>(at.y)), false));
}

int FlexGridWindow::MouseCol() {
    POINT at{};
    if (!Handle() || !GetCursorPos(&at) || !ScreenToClient(Handle(), &at)) {
        return 0;
    }
    SettleLayout();
    const Axis columns = ColumnAxis(grid_, CurrentView());
    return std::max(0, NearestItemAt(columns, columns.Along(static_cast<int>(at.x)), false));
}

bool FlexGridWindow::IsTextCut(int row, int col) {
    SettleLayout();
    GdiSurface surface(buffer_.Prepare(nullptr, {1, 1}), grid_.Metrics().Resolution());
    return IsCut(grid_, CurrentView(), surface, row, col);
}

}  // namespace qvx::flexgrid
