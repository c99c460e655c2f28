// The filter of a grid for data entry: its conditions, and the row of fields for its user.
#pragma once

#include "controls/grid/entry_grid_window.h"
#include "controls/grid/filter_strip_window.h"
#include "controls/grid/row_filter.h"

namespace qvx::grid {

class EntryGrid::Filterer final : private FilterStripListener {
  public:
    explicit Filterer(EntryGrid& owner) : owner_(owner), strip_(*this) {}

    Text List() const { return filter_.List(owner_.Model(), owner_.state_, Help()); }
    bool Filters() const { return owner_.Model().FilteredRows() > 0 || !filter_.Empty(); }
    // Replaces the conditions and applies them. Throws error 380 for a list that cannot be read.
    void SetList(TextView list);
    // Follows columns that had these keys and now have others.
    void FollowKeys(const std::vector<Text>& before) { filter_.FollowKeys(before, ColumnKeys(owner_.Model())); }
    void RefreshStrip() { strip_.Refresh(Look()); }
    // Ends an open edit and hides the rows that do not meet the conditions; the cursor moves to one that does.
    void Apply();
    // Shows all rows.
    void Clear() noexcept;
    // The same for the user, with the event.
    void ShowAllByUser();
    void FilterByValue(int row, int col);

    // Shows the fields or hides them, as FilterRow says.
    void ShowStrip(HWND control);
    void Detach() { strip_.Destroy(); }
    // Places the fields in the control and returns their height; 0 while they are hidden.
    int Place(Size control) { return strip_.Place(control, Look()); }
    bool HasFocus() const { return strip_.HasFocus(); }
    // Goes from the grid to the field of the current column.
    void FocusField();

    void Invalidated(flexgrid::GridChange change, const flexgrid::CellRange& range);

  private:
    // FilterStripListener
    std::vector<flexgrid::Span> StripColumns() override { return owner_.window_->ColumnSpans(); }
    Text FieldText(int col) override { return Text(filter_.ConditionOf(KeyOf(col))); }
    FieldState StateOfField(int col) override;
    Text FieldName(int col) override;
    void FieldTyped(int col, const Text& text) override;
    void FieldKey(int col, StripKey key) override;
    bool OtherKey(int keyCode, int shift) override;
    void FieldClicked(int col) override;
    void StripWheel(UINT message, WPARAM wParam, LPARAM lParam) override { owner_.TurnWheel(message, wParam, lParam); }
    void StripFocus() override { owner_.NotifyFocus(); }

    FilterHelp Help() const;
    StripLook Look() const;
    // Returns the key of a column in ColIndex; "" for none.
    Text KeyOf(int col) const;
    void GoTo(int col);
    void ReturnToGrid(int col);
    void ApplyByUser();

    EntryGrid& owner_;
    RowFilter filter_;
    FilterStripWindow strip_;
};

}  // namespace qvx::grid
