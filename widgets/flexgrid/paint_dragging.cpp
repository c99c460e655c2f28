#include "widgets/flexgrid/paint_dragging.h"

namespace qvx::flexgrid {

namespace {

void PaintDraggedBorder(const Axis& columns, const View& view, Surface& surface) {
    const int thick = ScaledAtLeastOne(1, surface.Resolution().x);
    if (view.draggedColumn >= 0) {
        const Span line = columns.InWindow({0, view.draggedColumn - thick, view.draggedColumn});
        surface.InvertRect({line.start, 0, line.end, view.client.height});
    }
    if (view.draggedRow >= 0) {
        surface.InvertRect({0, view.draggedRow - thick, view.client.width, view.draggedRow});
    }
}

void PaintMovedColumn(const Grid& grid, const Axis& columns, const View& view, Surface& surface) {
    if (view.movedColumn < 0 || view.movedColumn >= grid.Cols()) {
        return;
    }
    if (IsVisible(columns, view.movedColumn)) {
        const int start = static_cast<int>(PositionOf(columns, view.movedColumn));
        const Span span = columns.InWindow({0, start, start + grid.ColPixels(view.movedColumn)});
        surface.InvertRect({span.start, 0, span.end, static_cast<int>(RowAxis(grid, view).FixedExtent())});
    }
    if (view.dropLine >= 0) {
        const int half = ScaledAtLeastOne(1, surface.Resolution().x);
        const Span line = columns.InWindow({0, view.dropLine - half, view.dropLine + half});
        surface.InvertRect({line.start, 0, line.end, view.client.height});
    }
}

}  // namespace

void PaintDragging(const Grid& grid, const View& view, Surface& surface) {
    const Axis columns = ColumnAxis(grid, view);
    PaintDraggedBorder(columns, view, surface);
    PaintMovedColumn(grid, columns, view, surface);
}

}  // namespace qvx::flexgrid
