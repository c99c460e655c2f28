#include "controls/grid/invalid_marks.h"

#include <algorithm>
#include <utility>

#include "controls/grid/row_operations.h"

namespace qvx::grid {

TextView InvalidMarks::MessageAt(int row, int col) const {
    const auto rules = std::find_if(columns_.begin(), columns_.end(), [=](const auto& c) { return c.col == col; });
    if (rules == columns_.end()) return {};
    TextView message = VerdictOn(grid_.Cell(row, col), *rules).message;
    // Rows without any entry are removed before a check.
    if ((message.empty() && !rules->asksHost) || IsEmptyRecord(grid_, state_, row)) return {};
    if (!rules->asksHost) return message;
    if (const Text* said = host_.Find(row, col)) return *said;
    if (structure_ != grid_.StructureVersion()) waiting_.clear();
    structure_ = grid_.StructureVersion();
    if (waiting_.empty() || waiting_.back() != row) waiting_.push_back(row);
    return message;
}

bool InvalidMarks::IsKnown(int row) const {
    return IsEmptyRecord(grid_, state_, row) || std::all_of(columns_.begin(), columns_.end(), [&](const auto& column) {
               return !column.asksHost || host_.Find(row, column.col);
           });
}

bool InvalidMarks::Ask(const AskHost& askHost) {
    const std::vector<int> rows = std::exchange(waiting_, {});
    if (structure_ != grid_.StructureVersion()) return false;
    Prepare();
    const std::vector<CheckedColumn> columns = columns_;
    bool changed = false;
    for (const int row : rows) {
        if (IsKnown(row)) continue;
        if (!host_.Ask(row, columns, askHost)) return true;
        for (const CheckedColumn& column : columns) {
            const Text* said = column.asksHost ? host_.Find(row, column.col) : nullptr;
            changed =
                changed || (said && said->empty() != VerdictOn(grid_.Cell(row, column.col), column).message.empty());
        }
    }
    return changed;
}

TextView InvalidMarks::MessageOf(int row, int col) const {
    if (row < grid_.FixedRows() || row >= grid_.Rows() || col >= grid_.Cols()) return {};
    Prepare();
    return MessageAt(row, col);
}

std::optional<CellPlace> InvalidMarks::FirstIn(CellPlace first, int lastRow, const AskHost& askHost) {
    const std::vector<CheckedColumn> columns = columns_;
    for (int row = first.row; row <= lastRow; ++row) {
        if (grid_.RowFiltered(row)) continue;
        if (askHost && !IsKnown(row) && !host_.Ask(row, columns, askHost)) return std::nullopt;
        for (const CheckedColumn& column : columns) {
            const CellPlace place{row, column.col};
            if (!(place < first) && IsMarked(place.row, place.col)) return place;
        }
    }
    return std::nullopt;
}

std::optional<CellPlace> InvalidMarks::Next(CellPlace place, const AskHost& askHost) {
    Prepare();
    const std::uint64_t structure = grid_.StructureVersion();
    const int firstRow = grid_.FixedRows();
    const CellPlace after{std::max(place.row, firstRow), place.row < firstRow ? 0 : place.col + 1};
    if (const auto next = FirstIn(after, grid_.Rows() - 1, askHost)) return next;
    if (grid_.StructureVersion() != structure) return std::nullopt;
    const auto next = FirstIn({firstRow, 0}, std::min(place.row, grid_.Rows() - 1), askHost);
    return next == place ? std::nullopt : next;
}

}  // namespace qvx::grid
