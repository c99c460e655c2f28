// What a row has besides its texts, as one value.
#include "elements/flexgrid/grid.h"

namespace qvx::flexgrid {

Grid::RowSettings Grid::SettingsOf(int row) const {
    CheckRow(row);
    const RowId id = store_.IdAt(row);
    const int* height = heights_.Find(id);
    return {height ? *height : allHeights_, RowData(row), MergeRow(row), formats_.OfRow(id)};
}

void Grid::SetSettings(int row, const RowSettings& settings) {
    CheckRow(row);
    formats_.SetRow(store_.IdAt(row), settings.formats);
    SetRowData(row, settings.data);
    SetMergeRow(row, settings.merge);
    SetRowHeight(row, settings.height);
    TellChange(GridChange::formats, {row, 0, row, Cols() - 1});
}

}  // namespace qvx::flexgrid
