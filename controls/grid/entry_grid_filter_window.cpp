// Filtering a grid for data entry: the fields of its user, and the members of its host.
#include "controls/grid/entry_grid_filter_window.h"

#include "com/guard.h"
#include "common/locale.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/entry_grid_finder_window.h"
#include "controls/grid/find_keys.h"
#include "dialogs/messages.h"

namespace qvx::grid {

// ---- Conditions ----------------------------------------------------------------------------------------------------

FilterHelp EntryGrid::Filterer::Help() const {
    return {AppendSystemSortKey, SystemDateSettings(), owner_.state_.dateFormat, SystemHasDotlessI()};
}

Text EntryGrid::Filterer::KeyOf(int col) const {
    std::vector<Text> keys = ColumnKeys(owner_.Model());
    return col >= 0 && col < static_cast<int>(keys.size()) ? std::move(keys[static_cast<std::size_t>(col)]) : Text();
}

void EntryGrid::Filterer::SetList(TextView list) {
    owner_.CommitOpenEdit();
    RowFilter before = filter_;
    if (!filter_.Replace(owner_.Model(), owner_.state_, Help(), list))
        throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    try {
        Apply();
    } catch (...) {
        filter_ = std::move(before);
        throw;
    }
}

void EntryGrid::Filterer::Apply() {
    owner_.CommitOpenEdit();
    flexgrid::Grid& grid = owner_.Model();
    auto hide = filter_.RowsToHide(grid, owner_.state_, Help());
    // The text of an edit that could not end is in its editor only.
    if (hide && owner_.EditIsOpen() && owner_.state_.editRow < grid.Rows())
        (*hide)[static_cast<std::size_t>(owner_.state_.editRow)] = false;
    if (hide) {
        grid.SetFilteredRows(std::move(*hide));
    } else {
        grid.ShowAllRows();
    }
    owner_.LeaveFilteredRow();
    // Sideways, the field in which the user is typing stays in view.
    if (grid.Row() < grid.Rows() && !grid.RowFiltered(grid.Row()))
        owner_.window_->ScrollIntoView(grid.Row(), grid.LeftCol());
    strip_.Refresh(Look());
}

void EntryGrid::Filterer::Clear() noexcept {
    filter_.Clear();
    owner_.Model().ShowAllRows();
}

void EntryGrid::Filterer::ApplyByUser() {
    Apply();
    const flexgrid::Grid& grid = owner_.Model();
    const int total = grid.Rows() - grid.FixedRows();
    owner_.events_.Filtered(total - grid.FilteredRows(), total);
}

void EntryGrid::Filterer::ShowAllByUser() {
    filter_.Clear();
    ApplyByUser();
}

void EntryGrid::Filterer::FilterByValue(int row, int col) {
    filter_.SetCondition(KeyOf(col), ConditionFor(owner_.Model().TextMatrix(row, col)));
    ApplyByUser();
}

// ---- The fields ----------------------------------------------------------------------------------------------------

StripLook EntryGrid::Filterer::Look() const {
    const flexgrid::Grid& grid = owner_.Model();
    StripLook look;
    look.font = grid.Font();
    look.dpi = grid.Metrics().Resolution();
    look.back = grid.BackColorFixed();
    look.fore = grid.ForeColorFixed();
    look.fixedCols = grid.FixedCols();
    look.rightToLeft = grid.RightToLeft();
    look.enabled = grid.Enabled();
    const int total = grid.Rows() - grid.FixedRows();
    if (Filters()) look.count = ShownRowsText(total - grid.FilteredRows(), total);
    return look;
}

void EntryGrid::Filterer::ShowStrip(HWND control) {
    if (owner_.state_.filterRow) {
        if (!strip_.Handle()) strip_.CreateIn(control);
    } else {
        if (strip_.HasFocus()) SetFocus(owner_.window_->Handle());
        strip_.Destroy();
    }
    owner_.LayOut();
}

FieldState EntryGrid::Filterer::StateOfField(int col) {
    const Text text = FieldText(col);
    if (text.empty()) return FieldState::Empty;
    return IsCondition(owner_.Model(), owner_.state_, Help(), col, text) ? FieldState::Filters : FieldState::Unreadable;
}

Text EntryGrid::Filterer::FieldName(int col) {
    return Text(dialogs::messages::filterFieldName) + flexgrid::ColumnName(owner_.Model(), col);
}

void EntryGrid::Filterer::FieldTyped(int col, const Text& text) {
    owner_.Reporting([&] {
        const Text key = KeyOf(col);
        if (text == filter_.ConditionOf(key)) return;
        filter_.SetCondition(key, text);
        ApplyByUser();
    });
}

void EntryGrid::Filterer::GoTo(int col) {
    if (!strip_.Handle() || col < owner_.Model().FixedCols() || col >= owner_.Model().Cols()) return;
    owner_.window_->ScrollIntoView(owner_.Model().TopRow(), col);
    strip_.Focus(col);
}

void EntryGrid::Filterer::FocusField() {
    owner_.CommitOpenEdit();
    if (owner_.EditIsOpen()) return;
    const flexgrid::Grid& grid = owner_.Model();
    const bool fits = grid.Col() >= grid.FixedCols() && grid.Col() < grid.Cols() && grid.ColWidth(grid.Col()) != 0;
    GoTo(fits ? grid.Col() : NextFilterColumn(grid, grid.FixedCols() - 1, 1));
}

void EntryGrid::Filterer::ReturnToGrid(int col) {
    flexgrid::Grid& grid = owner_.Model();
    if (!owner_.window_->Handle()) return;
    SetFocus(owner_.window_->Handle());
    if (grid.Row() < grid.FixedRows() || grid.Row() >= grid.Rows() || col < 0 || col >= grid.Cols()) return;
    grid.MoveTo(grid.Row(), col);
    if (!grid.RowFiltered(grid.Row())) owner_.window_->ScrollIntoView(grid.Row(), grid.Col());
}

void EntryGrid::Filterer::FieldKey(int col, StripKey key) {
    owner_.Reporting([&] {
        strip_.EndTyping();
        if (!strip_.Handle()) return;
        switch (key) {
            case StripKey::Apply:
                ApplyByUser();
                break;
            case StripKey::Clear:
                if (FieldText(col).empty()) return ReturnToGrid(col);
                filter_.SetCondition(KeyOf(col), {});
                ApplyByUser();
                break;
            case StripKey::ToGrid:
                ReturnToGrid(col);
                break;
            case StripKey::NextField:
            case StripKey::PreviousField:
                GoTo(NextFilterColumn(owner_.Model(), col, key == StripKey::NextField ? 1 : -1));
                break;
            case StripKey::SelectAll:
                strip_.SelectAll();
                break;
            case StripKey::None:
                break;
        }
    });
}

bool EntryGrid::Filterer::OtherKey(int keyCode, int shift) {
    // Ctrl+H deletes a character in every field.
    const FindAction find = DecideFindKey(keyCode, shift, owner_.state_);
    if (find == FindAction::None || find == FindAction::Replace) return false;
    owner_.Reporting([&] {
        strip_.EndTyping();
        owner_.Finding().Act(find);
    });
    return true;
}

void EntryGrid::Filterer::FieldClicked(int col) {
    owner_.Reporting([&] {
        owner_.CommitOpenEdit();
        if (!owner_.EditIsOpen() && owner_.Model().Enabled()) strip_.Focus(col);
    });
}

void EntryGrid::Filterer::Invalidated(flexgrid::GridChange change, const flexgrid::CellRange& range) {
    if (!strip_.Handle()) return;
    if (change == flexgrid::GridChange::look) {
        owner_.LayOut();
    } else if (change == flexgrid::GridChange::layout || change == flexgrid::GridChange::scroll ||
               (change == flexgrid::GridChange::texts && range.top == 0)) {
        strip_.Refresh(Look());
    }
}

// ---- The grid for data entry ---------------------------------------------------------------------------------------

EntryGrid::Filterer& EntryGrid::Filtering() {
    if (!filterer_) filterer_ = std::make_unique<Filterer>(*this);
    return *filterer_;
}

void EntryGrid::SetFilterRow(bool shown) {
    const bool before = std::exchange(state_.filterRow, shown);
    if (!window_->Handle()) return;
    const HWND control = GetParent(window_->Handle());
    try {
        Filtering().ShowStrip(control);
    } catch (...) {
        state_.filterRow = before;
        if (filterer_) Contain([&] { filterer_->ShowStrip(control); });
        throw;
    }
}

Text EntryGrid::Filter() const { return filterer_ ? filterer_->List() : Text(); }

void EntryGrid::SetFilter(TextView list) {
    const auto keep = events_.KeepAlive();
    Filtering().SetList(list);
}

void EntryGrid::RefilterRows() {
    const auto keep = events_.KeepAlive();
    if (filterer_) filterer_->Apply();
}

void EntryGrid::ClearFilter() noexcept {
    if (filterer_) filterer_->Clear();
}

}  // namespace qvx::grid
