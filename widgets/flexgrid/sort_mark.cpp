#include "widgets/flexgrid/sort_mark.h"

#include "common/number_text.h"

namespace qvx::flexgrid {

bool ShowsSortMark(const Grid& grid, int row, int col) {
    return row == 0 && grid.FixedRows() > 0 && grid.SortPlace(col) > 0;
}

SortMarkLayout LayOutSortMark(const Grid& grid, Surface& surface, int row, int col) {
    constexpr double numberSize = 0.8;
    const Dpi dpi = surface.Resolution();
    SortMarkLayout mark{grid.FontOf(row, col), {}, Scaled(4, dpi.x), Scaled(3, dpi.x)};
    bool several = false;
    for (int other = 0; other < grid.Cols(); ++other) {
        several = several || (other != col && grid.SortPlace(other) > 0);
    }
    if (several) {
        mark.font.points *= numberSize;
        mark.number = IntegerToText(grid.SortPlace(col));
        constexpr unsigned format = text_format::singleLine | text_format::noPrefix;
        mark.numberWidth = surface.MeasureText(mark.number, mark.font, 0, format).width;
        mark.numberWidth += Scaled(1, dpi.x);
    }
    return mark;
}

int SortMarkWidth(const Grid& grid, Surface& surface, int row, int col) {
    return ShowsSortMark(grid, row, col) ? LayOutSortMark(grid, surface, row, col).Width() : 0;
}

}  // namespace qvx::flexgrid
