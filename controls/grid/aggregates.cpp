#include "controls/grid/aggregates.h"

#include "common/number_text.h"
#include "common/numeric_reading.h"
#include "controls/grid/cell_reading.h"

namespace qvx::grid {

double SumOfColumn(const flexgrid::Grid& grid, int col) {
    double sum = 0;
    if (!HasDataRows(grid)) return sum;
    grid.Cell(grid.FixedRows(), col);  // raises the error for a missing column
    grid.ForEachCellInColumn(col, grid.FixedRows(), grid.Rows() - 1,
                             [&](int, flexgrid::CellView cell) { sum += NumberIn(cell); });
    return sum;
}

double SumOfRow(const flexgrid::Grid& grid, int row) {
    double sum = 0;
    for (int col = grid.FixedCols(); col < grid.Cols(); ++col) sum += NumberIn(grid.Cell(row, col));
    return sum;
}

int ColumnNumber(TextView text) { return RoundToLong(NumericValue(text)); }

double SumOfProducts(flexgrid::Grid& grid, int col2Set, std::span<const int> columns) {
    double total = 0;
    if (!HasDataRows(grid)) return total;
    for (const int col : columns) grid.Cell(grid.FixedRows(), col);
    const auto productIn = [&](const flexgrid::RowView& cells) {
        double product = NumberIn(cells[columns.front()]);
        for (const int col : columns.subspan(1)) product *= NumberIn(cells[col]);
        return product;
    };
    if (col2Set < 0) {
        grid.ForEachRow(grid.FixedRows(), grid.Rows() - 1,
                        [&](int, const flexgrid::RowView& cells) { total += productIn(cells); });
        return total;
    }
    grid.Cell(grid.FixedRows(), col2Set);
    NumberBuffer text;
    grid.SetColumn(col2Set, grid.FixedRows(), grid.Rows() - 1, [&](const flexgrid::RowView& cells) -> TextView {
        const double product = productIn(cells);
        total += product;
        return DoubleToText(product, text);
    });
    return total;
}

}  // namespace qvx::grid
