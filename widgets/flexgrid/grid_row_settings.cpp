// All settings of a row apart from its texts, as one value.
#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

Grid::RowSettings Grid::SettingsOf(int row) const {
    CheckRow(row);
    const RowId id = store_.IdAt(row);
    RowWatch* const watch = store_.Observers().watch;
    return {heights_.Of(id), RowData(row), MergeRow(row), formats_.OfRow(id),
            watch ? watch->Keep(id, store_.Row(row)) : nullptr};
}

void Grid::SetSettings(int row, const RowSettings& settings) {
    CheckRow(row);
    if (store_.Observers().watch && settings.kept) {
        store_.Observers().watch->PutBack(store_.IdAt(row), settings.kept);
    }
    // After this, only setting the height can fail, and it comes first.
    formats_.ReserveForRow();
    rowData_.Reserve(1);
    mergeRows_.Reserve(1);
    SetRowHeight(row, settings.height);
    SetRowData(row, settings.data);
    SetMergeRow(row, settings.merge);
    formats_.SetRow(store_.IdAt(row), settings.formats);
    NotifyChange(GridChange::formats, {row, 0, row, Cols() - 1});
}

}  // namespace qvx::flexgrid
