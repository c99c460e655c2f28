#include "widgets/flexgrid/view.h"

#include <algorithm>

namespace qvx::flexgrid {

namespace {

std::vector<int> IndexesOf(const std::vector<Span>& spans) {
    std::vector<int> indexes;
    indexes.reserve(spans.size());
    for (const Span& span : spans) {
        indexes.push_back(span.index);
    }
    return indexes;
}

// Returns the span from the first to the last of the visible items; start > end for none.
Span Reach(const std::vector<Span>& spans, int first, int last) {
    Span reach{first, INT32_MAX, INT32_MIN};
    for (const Span& span : spans) {
        if (span.index >= first && span.index <= last) {
            reach.start = std::min(reach.start, span.start);
            reach.end = std::max(reach.end, span.end);
        }
    }
    return reach;
}

// Limits a position so far that borders and lines can still be added to it.
int Held(std::int64_t pixels) {
    constexpr std::int64_t farthest = 1 << 30;
    return static_cast<int>(std::clamp(pixels, -farthest, farthest));
}

MergeMap MergesOf(const Grid& grid, const std::vector<Span>& rows, const std::vector<Span>& columns) {
    if (grid.MergeCells() == GridMerge::never) {
        return {grid, {}, {}};
    }
    return {grid, IndexesOf(rows), IndexesOf(columns)};
}

}  // namespace

Axis RowAxis(const Grid& grid, const View& view) {
    return {grid.Rows(),
            grid.FixedRows(),
            grid.FixedRows(),
            view.onPaper ? view.topRow : grid.TopRow(),
            view.client.height,
            [&grid](int row) { return grid.RowPixels(row); },
            [&grid](int row) { return grid.RowTop(row); },
            [&grid](std::int64_t at) { return grid.RowAt(at); }};
}

Axis ColumnAxis(const Grid& grid, const View& view) {
    return {grid.Cols(),
            grid.FixedCols(),
            grid.StandingCols(),
            view.onPaper ? view.leftCol : grid.LeftCol(),
            view.client.width,
            [&grid](int col) { return grid.ColPixels(col); },
            [&grid](int col) { return grid.ColLeft(col); },
            [&grid](std::int64_t at) { return grid.ColAt(at); },
            grid.RightToLeft()};
}

Shown::Shown(const Grid& grid, const View& view)
    : rows(SpansInWindow(RowAxis(grid, view))),
      columns(SpansInWindow(ColumnAxis(grid, view))),
      merges(MergesOf(grid, rows, columns)) {}

Rect Shown::AreaOf(const CellRange& range) const {
    const Span down = Reach(rows, range.top, range.bottom);
    const Span across = Reach(columns, range.left, range.right);
    if (down.start > down.end || across.start > across.end) {
        return {};
    }
    return {across.start, down.start, across.end, down.end};
}

Rect CellArea(const Grid& grid, const View& view, int row, int col) {
    const Shown shown(grid, view);
    const Rect area = shown.AreaOf(shown.Merged(row, col));
    if (!area.Empty()) {
        return area;
    }
    const std::int64_t x = StartInWindow(ColumnAxis(grid, view), col);
    const std::int64_t y = StartInWindow(RowAxis(grid, view), row);
    return {Held(x), Held(y), Held(x + grid.ColPixels(col)), Held(y + grid.RowPixels(row))};
}

int LineWidth(const Grid& grid, bool fixed) {
    const GridLineStyle style = fixed ? grid.GridLinesFixed() : grid.GridLines();
    return style == GridLineStyle::none ? 0 : ScaledAtLeastOne(grid.GridLineWidth(), grid.Metrics().Resolution().x);
}

}  // namespace qvx::flexgrid
