#include "controls/grid/paste.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "common/surrogates.h"
#include "controls/grid/column_lists.h"

namespace qvx::grid {

void SelectAll(flexgrid::Grid& grid) {
    if (grid.FixedRows() < grid.Rows() && grid.FixedCols() < grid.Cols())
        grid.Select(grid.OnUnfilteredRows({grid.FixedRows(), grid.FixedCols(), grid.Rows() - 1, grid.Cols() - 1}));
}

void SelectRows(flexgrid::Grid& grid) {
    if (grid.FixedCols() < grid.Cols()) grid.Select(grid.Row(), grid.FixedCols(), grid.RowSel(), grid.Cols() - 1);
}

void SelectColumns(flexgrid::Grid& grid) {
    if (grid.FixedRows() < grid.Rows())
        grid.Select(grid.OnUnfilteredRows({grid.FixedRows(), grid.Col(), grid.Rows() - 1, grid.ColSel()}));
}

ColumnRules RulesOf(const flexgrid::Grid& grid, const ControlState& state, int col) {
    const Text caption = grid.TextArray(col);
    const bool refuses =
        col < grid.FixedCols() || grid.ColWidth(col) == 0 || IsListedColumn(state.inActiveColumns, caption);
    return {refuses, IsListedColumn(state.unChangableColumns, caption), CleaningCode(state.columnsDataType, caption),
            ColumnNumber(state.columnsMaxLength, caption)};
}

Text TextFor(const ColumnRules& rules, int col, TextView given, TextView oldText, const ControlState& state,
             const CellSources& sources) {
    // The text is cut where typing would have ended, but never within a character that takes two units.
    if (rules.maxLength > 0 && given.size() > static_cast<std::size_t>(rules.maxLength)) {
        given = given.substr(0, static_cast<std::size_t>(rules.maxLength));
        if (IsHighSurrogate(given.back())) given.remove_suffix(1);
    }
    Text cleaned = CleanByCode(given, rules.cleaning, state.dateFormat, sources.dates);
    return rules.listOnly ? MatchGivenEntry(sources.list(col), cleaned, oldText) : cleaned;
}

CellRectangle::CellRectangle(const flexgrid::Grid& grid, const ClipboardCells& cells) : target_(grid.Selection()) {
    if (cells.Rows() == 1 && cells.Cols() == 1) {
        const auto width = static_cast<std::size_t>(std::max(target_.right - target_.left + 1, 0));
        same_.assign(width, cells.Row(0)[0]);
        return;
    }
    cells_ = &cells;
    if (target_.Empty()) return;
    const auto last = [](int first, std::size_t count) {
        const std::size_t most = static_cast<std::size_t>(std::numeric_limits<int>::max() - first);
        return first + static_cast<int>(std::min(count, most)) - 1;
    };
    target_.bottom = last(target_.top, cells.Rows());
    target_.right = std::min(last(target_.left, cells.Cols()), grid.Cols() - 1);
}

CellRectangle::CellRectangle(const flexgrid::Grid& grid) : target_(grid.Selection()) {
    same_.resize(static_cast<std::size_t>(std::max(target_.right - target_.left + 1, 0)));
}

CellRectangle::CellRectangle(const flexgrid::Grid& grid, TextView text) : CellRectangle(grid) {
    kept_.emplace_back(text);
    std::fill(same_.begin(), same_.end(), TextView(kept_.front()));
}

[[gnu::cold]] CellRectangle CellRectangle::FillDown(const flexgrid::Grid& grid) {
    CellRectangle filled(grid);
    flexgrid::CellRange& target = filled.target_;
    const int first = grid.UnfilteredRow(target.top, 1);
    const int second = grid.UnfilteredRow(first + 1, 1);
    const bool several = second > first && second <= target.bottom;
    const int source = several ? first : grid.UnfilteredRow(first - 1, -1);
    target.top = several ? second : first;
    if (first < 0 || target.Empty() || source < grid.FixedRows()) {
        target = {};
        return filled;
    }
    for (int col = target.left; col <= target.right; ++col) filled.kept_.push_back(grid.TextMatrix(source, col));
    filled.same_.assign(filled.kept_.begin(), filled.kept_.end());
    return filled;
}

[[gnu::cold]] CellRectangle CellRectangle::FillRight(const flexgrid::Grid& grid) {
    CellRectangle filled(grid);
    flexgrid::CellRange& target = filled.target_;
    const int source = target.left < target.right ? target.left++ : target.left - 1;
    if (target.Empty() || source < grid.FixedCols()) {
        target = {};
        return filled;
    }
    filled.grid_ = &grid;
    filled.sourceCol_ = source;
    filled.same_.resize(static_cast<std::size_t>(target.right - target.left) + 1);
    filled.kept_.resize(1);
    return filled;
}

CellRectangle CellRectangle::ForNewRows(const flexgrid::CellRange& target, TextsOf textsOf) {
    CellRectangle rows;
    rows.target_ = target;
    rows.textsOf_ = std::move(textsOf);
    return rows;
}

std::span<const TextView> CellRectangle::Row(int row) const {
    if (textsOf_) return textsOf_(row);
    if (sourceCol_ != none) {
        if (sourceCol_ >= grid_->Cols()) return {};  // a handler has removed the column
        kept_.front() = grid_->TextMatrix(row, sourceCol_);
        std::fill(same_.begin(), same_.end(), TextView(kept_.front()));
    }
    if (!cells_) return same_;
    const std::span<const TextView> cells = cells_->Row(static_cast<std::size_t>(row - target_.top));
    return cells.first(std::min(cells.size(), static_cast<std::size_t>(target_.right - target_.left + 1)));
}

}  // namespace qvx::grid
