#include "controls/grid/invalid_marks.h"

#include <algorithm>

#include "controls/grid/row_operations.h"
#include "controls/grid/validation.h"

namespace qvx::grid {

TextView InvalidMarks::MessageAt(int row, int col) const {
    const auto rules = std::find_if(columns_.begin(), columns_.end(), [=](const auto& c) { return c.col == col; });
    if (rules == columns_.end()) return {};
    const TextView message = VerdictOn(grid_.Cell(row, col), *rules).message;
    // Rows without any entry are removed before a check.
    return message.empty() || IsEmptyRecord(grid_, state_, row) ? TextView() : message;
}

TextView InvalidMarks::MessageOf(int row, int col) const {
    if (row < grid_.FixedRows() || row >= grid_.Rows() || col >= grid_.Cols()) return {};
    Prepare();
    return MessageAt(row, col);
}

std::optional<InvalidMarks::Place> InvalidMarks::FirstIn(int firstRow, int firstCol, int lastRow) const {
    CheckStart start{std::max(firstRow, grid_.FixedRows()), firstCol, false};
    for (;;) {
        const auto cell = FindInvalidCell(grid_, state_, start);
        if (!cell || cell->row > lastRow) return std::nullopt;
        if (!IsEmptyRecord(grid_, state_, cell->row)) return Place{cell->row, cell->col};
        start = {cell->row + 1, 0, false};
    }
}

std::optional<InvalidMarks::Place> InvalidMarks::Next(int row, int col) const {
    if (const auto place = FirstIn(row, col + 1, grid_.Rows() - 1)) return place;
    const auto place = FirstIn(grid_.FixedRows(), 0, row);
    return place == Place{row, col} ? std::nullopt : place;
}

}  // namespace qvx::grid
