#include "controls/grid/invalid_marks.h"

#include <algorithm>

#include "controls/grid/row_operations.h"

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

std::optional<CellPlace> InvalidMarks::FirstIn(CellPlace first, int lastRow) const {
    for (int row = first.row; row <= lastRow; ++row) {
        if (grid_.RowFiltered(row)) continue;
        for (const CheckedColumn& column : columns_) {
            const CellPlace place{row, column.col};
            if (!(place < first) && IsMarked(place.row, place.col)) return place;
        }
    }
    return std::nullopt;
}

std::optional<CellPlace> InvalidMarks::Next(CellPlace place) const {
    Prepare();
    const int firstRow = grid_.FixedRows();
    const CellPlace after{std::max(place.row, firstRow), place.row < firstRow ? 0 : place.col + 1};
    if (const auto next = FirstIn(after, grid_.Rows() - 1)) return next;
    const auto next = FirstIn({firstRow, 0}, std::min(place.row, grid_.Rows() - 1));
    return next == place ? std::nullopt : next;
}

}  // namespace qvx::grid
