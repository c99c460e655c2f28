#include "widgets/flexgrid/footer.h"

#include <algorithm>

namespace qvx::flexgrid {

namespace {

int RuleHeight(const Grid& grid) { return ScaledAtLeastOne(1, grid.Metrics().Resolution().y); }

// Numbers, of which totals consist, are at the end that text runs towards unless the column says otherwise.
unsigned FormatOf(const Grid& grid, int col) {
    constexpr unsigned across[] = {text_format::left, text_format::center, text_format::right};
    const GridAlignment alignment = grid.ColAlignment(col);
    const int place = alignment == GridAlignment::general ? 2 : static_cast<int>(alignment) / 3;
    const bool mirrored = grid.RightToLeft();
    return across[mirrored ? 2 - place : place] | (mirrored ? text_format::rightToLeft : 0U);
}

}  // namespace

int FooterHeight(const Grid& grid) { return grid.DefaultRowPixels() + RuleHeight(grid); }

void PaintFooter(const Grid& grid, const View& view, const CellFooter& footer, Surface& surface, const Rect& area) {
    constexpr unsigned line =
        text_format::singleLine | text_format::middle | text_format::noPrefix | text_format::endEllipsis;
    const Rect cells{area.left, area.top + RuleHeight(grid), area.right, area.bottom};
    const int margin = ScaledAtLeastOne(cellMarginAcross, surface.Resolution().x);
    const int lineWidth = LineWidth(grid, true);
    surface.FillRect({area.left, area.top, area.right, cells.top}, grid.GridColorFixed());
    surface.FillRect(cells, grid.BackColorFixed());
    for (const Span& span : SpansInWindow(ColumnAxis(grid, view))) {
        Rect cell{area.left + span.start, cells.top, area.left + span.end, cells.bottom};
        if (grid.RightToLeft()) {
            surface.FillRect({cell.left, cell.top, cell.left + lineWidth, cell.bottom}, grid.GridColor());
            cell.left += lineWidth;
        } else {
            surface.FillRect({cell.right - lineWidth, cell.top, cell.right, cell.bottom}, grid.GridColor());
            cell.right -= lineWidth;
        }
        const Text text = footer.TextOf(span.index);
        cell = {cell.left + margin, cell.top, cell.right - margin, cell.bottom};
        if (!text.empty() && !cell.Empty()) {
            surface.DrawLabel(text, cell, grid.Font(), grid.ForeColorFixed(), line | FormatOf(grid, span.index));
        }
    }
}

}  // namespace qvx::flexgrid
