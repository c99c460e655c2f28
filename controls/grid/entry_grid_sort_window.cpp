// Sorting by the user and by the host, and what the user sees meanwhile.
#include "common/locale.h"
#include "controls/grid/entry_grid_window.h"
#include "controls/grid/escape_wait_window.h"

namespace qvx::grid {

bool EntryGrid::SortBy(const SortColumns& columns) {
    flexgrid::Grid& grid = Model();
    const bool follows =
        grid.Row() >= grid.FixedRows() && grid.Row() < grid.Rows() && window_->RowIsVisible(grid.Row());
    const int offset = grid.Row() - grid.TopRow();
    EscapeWait wait;
    const SortHelp help{AppendSystemSortKey, SystemDateSettings(), [&] { return wait.GoOn(); }};
    bool done = false;
    ChangeKeptRows([&] { done = SortRows(grid, state_, history_, columns, help); });
    // The record with the cursor stays at its height in the window.
    if (done && follows) window_->ScrollTo(grid.Row() - offset, grid.LeftCol());
    // Between the two, there may be more rows now that a filter shows.
    if (done && follows && grid.FilteredRows() > 0) window_->ScrollIntoView(grid.Row(), grid.LeftCol());
    return done;
}

void EntryGrid::Sort(TextView columns) {
    CommitOpenEdit();
    const std::optional<SortColumns> wanted = ReadSortColumns(Model(), columns);
    if (!wanted) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    if (!EditIsOpen()) SortBy(*wanted);
}

void EntryGrid::SortByUser(const SortColumns& columns) {
    const Text text = SortColumnsText(Model(), columns);
    bool cancel = false;
    events_.BeforeSort(text, cancel);
    const auto gone = [&](const flexgrid::SortMark& column) { return column.col >= Model().Cols(); };
    if (cancel || EditIsOpen() || std::any_of(columns.begin(), columns.end(), gone)) return;
    if (SortBy(columns)) events_.Sorted(text);
}

void EntryGrid::HeaderClick(int col, bool shift) {
    Reporting([&] {
        CommitOpenEdit();
        if (!EditIsOpen() && col < Model().Cols()) SortByUser(ClickedSortColumns(Model(), col, shift));
    });
}

}  // namespace qvx::grid
