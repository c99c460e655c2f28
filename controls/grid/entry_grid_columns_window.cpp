// Columns that the user moves, by dragging their headers or by keys, and the footer below them.
#include "common/flag_scope.h"
#include "common/locale.h"
#include "controls/grid/caption_list.h"
#include "controls/grid/column_order.h"
#include "controls/grid/entry_grid_window.h"
#include "controls/grid/user_layout.h"
#include "widgets/flexgrid/grid_errors.h"
#include "widgets/flexgrid/view.h"

namespace qvx::grid {

Text EntryGrid::UserLayout() const { return WriteLayout({LayoutColumns(window_->Model()), SortedBy(), Filter()}); }

void EntryGrid::SetUserLayout(TextView text) {
    const auto layout = ReadLayout(text);
    if (!layout) flexgrid::RefuseValue();
    CommitOpenEdit();
    if (EditIsOpen()) return;
    bool moved = false;
    ApplyLayoutColumns(Model(), state_, layout->columns, FirstMovableColumn(Model(), state_, states_.On()),
                       [&](int from, int to) {
                           if (frame_ && !frame_->CanRenumber(from, to)) return;
                           ChangeKeptRows([&] { MoveColumn(Model(), state_, from, to); });
                           RenumberEditors(from, to);
                           moved = true;
                       });
    if (moved) events_.ColumnsMoved();
    // What names a column that the form no longer has leaves the rows as they are.
    if (const auto sort = ReadSortColumns(Model(), layout->sort)) SortBy(*sort);
    try {
        SetFilter(layout->filter);
    } catch (const RunTimeError& error) {
        if (error.Number() != errors::invalidPropertyValue) throw;
    }
}

void EntryGrid::SetFooter(TextView columns) {
    TentativeValue value(state_.footer, Text(columns));
    window_->ShowFooter(columns.empty() ? nullptr : &totals_);
    totals_.Watch(!columns.empty());
    value.Done();
}

Text EntryGrid::FooterText(int col) {
    if (col < 0 || col >= Model().Cols()) flexgrid::RefuseCol();
    return totals_.TotalOf(col);
}

void EntryGrid::SetColumnFormats(TextView formats) {
    CheckCaptionList(formats);
    NumberSigns signs = SystemNumberSigns();
    DateSettings dates = SystemDateSettings();
    TentativeValue value(state_.columnFormats, Text(formats));
    Model().ShowTexts(formats.empty() ? nullptr : &formats_);
    if (!state_.footer.empty()) window_->ShowFooter(&totals_);
    formats_.Refresh(std::move(signs), std::move(dates));
    value.Done();
}

void EntryGrid::ColumnDropped(int col, int position) {
    Reporting([&] { MoveColumnByUser(col, position); });
}

void EntryGrid::MoveCurrentColumn(bool right) {
    const flexgrid::Axis columns = flexgrid::ColumnAxis(Model(), window_->SettledView());
    const int position = flexgrid::NeighbourOf(columns, Model().Col(), right != Model().RightToLeft() ? 1 : -1);
    if (position < 0)
        MessageBeep(MB_OK);
    else
        MoveColumnByUser(Model().Col(), position);
}

void EntryGrid::MoveColumnByUser(int col, int position) {
    CommitOpenEdit();
    if (EditIsOpen()) return;
    const auto possible = [&] {
        const int first = FirstMovableColumn(Model(), state_, states_.On());
        return std::min(col, position) >= first && std::max(col, position) < Model().Cols() &&
               (!frame_ || frame_->CanRenumber(col, position));
    };
    if (!possible()) {
        MessageBeep(MB_OK);
        return;
    }
    bool cancel = false;
    events_.ColumnMoving(col, position, cancel);
    if (cancel || EditIsOpen() || !possible()) return;
    ChangeKeptRows([&] { MoveColumn(Model(), state_, history_, col, position); });
    RenumberEditors(col, position);
    window_->ScrollIntoView(Model().Row(), Model().Col());
    events_.ColumnsMoved();
    events_.ColumnMoved(col, position);
}

void EntryGrid::RenumberEditors(int from, int to) {
    if (!frame_ || !frame_->CanRenumber(from, to)) return;
    frame_->Renumber(from, to);
    RenumberColumns(cellFormats_, from, to);
}

void EntryGrid::FollowMovedColumn(int from, int to) {
    FollowColumn(Model(), state_, from, to);
    RenumberEditors(from, to);
    events_.ColumnsMoved();
    events_.ColumnMoved(from, to);
}

}  // namespace qvx::grid
