#include "controls/grid/column_totals.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "common/number_text.h"
#include "controls/grid/cell_reading.h"
#include "controls/grid/column_lists.h"

namespace qvx::grid {

using flexgrid::RowId;
using flexgrid::RowView;

namespace {

Text AverageText(double sum, std::int64_t count) {
    if (count == 0) return {};
    // More decimals are of no use to anyone who compares prices or hours.
    constexpr double precision = 10'000;
    const double average = sum / static_cast<double>(count);
    const double rounded = std::round(average * precision) / precision;
    return DoubleToText(std::isfinite(rounded) ? rounded : average);
}

}  // namespace

void ColumnTotals::Watch(bool on) noexcept {
    if (on_ != on) grid_.SetRowFollower(on ? this : nullptr);
    on_ = on;
    Refresh();
}

void ColumnTotals::Refresh() noexcept {
    stale_ = true;
    waits_ = {};
    waiting_ = {};
}

Text ColumnTotals::TextOf(int col) const {
    const auto [total, inUnit] = NumberOf(col);
    Text scratch;
    return inUnit ? Text(formats_.ShownText(col, total, scratch)) : total;
}

std::pair<Text, bool> ColumnTotals::NumberOf(int col) const {
    Settle();
    const auto total = std::find_if(totals_.begin(), totals_.end(), [&](const Total& t) { return t.col == col; });
    if (total == totals_.end()) return {};
    switch (total->kind) {
        case TotalKind::count:
            return {DoubleToText(static_cast<double>(total->count)), false};
        case TotalKind::average:
            return {AverageText(total->sum.Value(), total->count), total->count > 0};
        default:
            return {DoubleToText(total->sum.Value()), true};
    }
}

// Adds the cells of a row to the totals, or subtracts them.
void ColumnTotals::Count(RowId row, const RowView& cells, bool add) const {
    const bool shown = !grid_.IsFiltered(row);
    for (Total& total : totals_) {
        const flexgrid::CellView cell = cells[total.col];
        if (cell.Empty() || !(shown || total.allRows)) continue;
        const double value = NumberIn(cell);
        add ? total.sum.Add(value) : total.sum.Subtract(value);
        total.count += add ? 1 : -1;
    }
}

void ColumnTotals::Settle() const {
    if (stale_ || headers_ != HeaderRows()) {
        ReadAll();
        return;
    }
    for (const RowId row : waiting_) {
        if (!waits_[row]) continue;
        waits_[row] = false;
        Count(row, grid_.CellsOf(row), true);
    }
    waiting_.clear();
}

void ColumnTotals::ReadAll() const {
    headers_ = HeaderRows();
    totals_.clear();
    for (int col = 0; col < grid_.Cols(); ++col)
        for (int code = 0; code < 2 * totalKinds; ++code)
            if (HasColumnCode(grid_, state_.footer, col, code)) {
                totals_.push_back({col, static_cast<TotalKind>(code % totalKinds), code >= totalKinds, {}, 0});
                break;
            }
    if (!totals_.empty())
        grid_.ForEachRow(grid_.FixedRows(), grid_.Rows() - 1,
                         [&](int row, const RowView& cells) { Count(grid_.IdOf(row), cells, true); });
    waits_.clear();
    waiting_.clear();
    stale_ = false;
}

std::vector<RowId> ColumnTotals::HeaderRows() const {
    std::vector<RowId> rows(static_cast<std::size_t>(grid_.FixedRows()));
    for (int row = 0; row < grid_.FixedRows(); ++row) rows[static_cast<std::size_t>(row)] = grid_.IdOf(row);
    return rows;
}

bool ColumnTotals::IsHeader(RowId row) const {
    return std::find(headers_.begin(), headers_.end(), row) != headers_.end();
}

// ---- Following the grid --------------------------------------------------------------------------------------------

// Returns false where all rows will be read again, because many are waiting or memory is short.
bool ColumnTotals::Wait(RowId row) noexcept {
    constexpr std::size_t fewRows = 64;
    constexpr std::size_t share = 8;
    if (waiting_.size() >= fewRows && waiting_.size() >= static_cast<std::size_t>(grid_.Rows()) / share) {
        Refresh();
        return false;
    }
    try {
        if (row >= waits_.size()) waits_.resize(std::max<std::size_t>(row + 1, static_cast<std::size_t>(grid_.Rows())));
        waiting_.push_back(row);
    } catch (const std::bad_alloc&) {
        Refresh();
        return false;
    }
    waits_[row] = true;
    return true;
}

void ColumnTotals::TakeAway(RowId row, const RowView& cells) noexcept {
    if (row < waits_.size() && waits_[row]) return;
    if (!Wait(row)) return;
    Count(row, cells, false);
}

void ColumnTotals::CellsChange(RowId row, const RowView& cells, int firstCol, int count) noexcept {
    if (stale_) return;
    if (IsHeader(row)) {
        Refresh();  // the columns are named by their captions
        return;
    }
    const auto changes = [&](const Total& total) { return total.col >= firstCol && total.col - firstCol < count; };
    if (std::any_of(totals_.begin(), totals_.end(), changes)) TakeAway(row, cells);
}

void ColumnTotals::RowsCome(std::span<const RowId> rows) noexcept {
    for (const RowId row : rows)
        if (stale_ || !Wait(row)) return;
}

void ColumnTotals::RowLeaves(RowId row, const RowView& cells) noexcept {
    if (stale_) return;
    if (IsHeader(row))
        Refresh();
    else
        TakeAway(row, cells);
}

void ColumnTotals::RowGone(RowId row) noexcept {
    if (row < waits_.size()) waits_[row] = false;
}

}  // namespace qvx::grid
