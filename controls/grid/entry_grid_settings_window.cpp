// Columns that the host changes one at a time.
#include "common/text_compare.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/column_settings.h"
#include "controls/grid/entry_grid_filter_window.h"

namespace qvx::grid {

void EntryGrid::RenameColumn(int col, TextView caption) {
    flexgrid::Grid& grid = Model();
    ChangedTexts changes = RenamedColumn(grid, state_, col, caption);
    const std::vector<Text> keys = ColumnKeys(grid);
    flexgrid::Grid::AllOrNothing whole(grid, flexgrid::Grid::AllOrNothing::Reach::texts);
    grid.SetTextMatrix(0, col, caption);
    events_.ColumnsMoved();
    if (filterer_) filterer_->FollowKeys(keys);
    whole.Commit();
    bool footer = false;
    bool formats = false;
    for (auto& [field, text] : changes) {
        footer = footer || field == &ControlState::footer;
        formats = formats || field == &ControlState::columnFormats;
        state_.*field = std::move(text);
    }
    if (formats) SetColumnFormats(Text(state_.columnFormats));
    if (footer) SetFooter(Text(state_.footer));
    if (filterer_) filterer_->RefreshStrip();
    RefreshMarks();
}

void EntryGrid::ShowColumn(int col, bool shown) {
    flexgrid::Grid& grid = Model();
    const Text caption = CaptionOf(grid, col);
    for (int other = 0; other < grid.Cols(); ++other) {
        if (!EqualNoCase(CaptionOf(grid, other), caption)) continue;
        if (shown)
            grid.ShowCol(other);
        else
            grid.SetColWidth(other, 0);
    }
}

}  // namespace qvx::grid
