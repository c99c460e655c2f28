// All settings of a row apart from its texts, as one value, and the rows that are filtered out.
#include <algorithm>
#include <utility>

#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

Grid::RowSettings Grid::SettingsOf(int row) const {
    CheckRow(row);
    const RowId id = store_.IdAt(row);
    RowWatch* const watch = store_.Observers().watch;
    return {heights_.Of(id),    RowData(row),
            MergeRow(row),      RowFiltered(row) ? filter_ : 0,
            formats_.OfRow(id), watch ? watch->Keep(id, store_.Row(row)) : nullptr};
}

void Grid::SetSettings(int row, const RowSettings& settings) {
    CheckRow(row);
    if (store_.Observers().watch && settings.kept) {
        store_.Observers().watch->PutBack(store_.IdAt(row), settings.kept);
    }
    // After this, only setting height and filter can fail, and they come first.
    formats_.ReserveForRow();
    rowData_.Reserve(1);
    mergeRows_.Reserve(1);
    const bool filtered = RowFiltered(row);
    SetRowFiltered(row, settings.filteredBy != 0 && settings.filteredBy == filter_);
    try {
        SetRowHeight(row, settings.height);
    } catch (...) {
        SetRowFiltered(row, filtered);  // there is room for it
        throw;
    }
    SetRowData(row, settings.data);
    SetMergeRow(row, settings.merge);
    formats_.SetRow(store_.IdAt(row), settings.formats);
    NotifyChange(GridChange::formats, {row, 0, row, Cols() - 1});
}

// ---- Filter --------------------------------------------------------------------------------------------------------

[[gnu::cold]] void Grid::SetFilteredRows(std::vector<bool> filtered) {
    std::fill_n(filtered.begin(), fixedRows_, false);
    store_.SetFiltered(filtered, SharedRowPixels());
    ++filter_;
    store_.Observers().Notify([](RowFollower& rows) { rows.FilterChanged(); });
    LayoutChanged(0, 0);
}

[[gnu::cold]] void Grid::SetRowFiltered(int row, bool filtered) {
    if (RowFiltered(row) == filtered) {
        return;
    }
    store_.SetFiltered(row, filtered, SharedRowPixels());
    store_.Observers().Notify([](RowFollower& rows) { rows.FilterChanged(); });
    LayoutChanged(row, 0);
}

[[gnu::cold]] void Grid::ShowAllRows() noexcept {
    ++filter_;
    if (FilteredRows() > 0) {
        store_.ClearFiltered();
        store_.Observers().Notify([](RowFollower& rows) { rows.FilterChanged(); });
        LayoutChanged(0, 0);
    }
}

bool Grid::RowFiltered(int row) const {
    CheckRow(row);
    return store_.FilteredCount() > 0 && store_.IsFiltered(store_.IdAt(row));
}

[[gnu::cold]] int Grid::UnfilteredRow(int row, int step) const {
    for (; row >= 0 && row < Rows(); row += step) {
        if (!RowFiltered(row)) {
            return row;
        }
    }
    return -1;
}

[[gnu::cold]] Cursor Grid::OnUnfilteredRows(const Cursor& cursor) const {
    if (FilteredRows() == 0) {
        return cursor;
    }
    const int step = cursor.row <= cursor.rowSel ? 1 : -1;
    const int row = UnfilteredRow(cursor.row, step);
    const int rowSel = UnfilteredRow(cursor.rowSel, -step);
    const auto [low, high] = std::minmax(cursor.row, cursor.rowSel);
    const bool found = std::min(row, rowSel) >= low && std::max(row, rowSel) <= high;
    return found ? Cursor{row, cursor.col, rowSel, cursor.colSel} : cursor;
}

}  // namespace qvx::flexgrid
