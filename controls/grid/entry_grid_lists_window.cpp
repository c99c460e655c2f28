// Arrows in list columns, how lists are searched and chosen from, and an edit that stays open in another program.
#include "common/flag_scope.h"
#include "controls/grid/editor_return.h"
#include "controls/grid/entry_grid_window.h"
#include "controls/grid/list_arrows.h"
#include "win/themed_part.h"

namespace qvx::grid {

void EntryGrid::SetListArrows(grid::ListArrows arrows) {
    state_.listArrows = arrows;
    window_->SetButtons(arrows == grid::ListArrows::none ? nullptr : this);
}

// Lists are prepared at once where possible, as that takes time in proportion to their entries.
void EntryGrid::SetListMatch(grid::ListMatch match) {
    TentativeValue value(state_.listMatch, match);
    const std::vector<int> lists = frame_ && frame_->Handle() ? frame_->Loaded() : std::vector<int>();
    for (const int col : lists) {
        ComboWindow& combo = *frame_->Find(col);
        if (combo.SelectsAsTyped() && !combo.HasFocus()) combo.SetMatchesParts(match == grid::ListMatch::parts);
    }
    value.Done();
}

bool EntryGrid::HasButton(int row, int col, bool current) const {
    return HasListArrow(window_->Model(), state_, row, col, current);
}

// The arrows look like the button of the editor that opens over them.
bool EntryGrid::Themed() const {
    const ComboWindow* combo = frame_ && frame_->Handle() ? frame_->Find(freeTextEditor) : nullptr;
    return combo && HasTheme(combo->Window());
}

void EntryGrid::ButtonClick(int row, int col) {
    Reporting([&] {
        if (Model().Row() == row && Model().Col() == col) OpenEditor();
    });
}

void EntryGrid::ComboPicked(ComboWindow&) {
    const auto keep = events_.KeepAlive();
    if (state_.listClickCommits && EditIsOpen()) EndEdit();
}

void EntryGrid::LeaveProgram(ComboWindow& combo) {
    away_ = true;
    combo.KeepSelection();
    frame_->Watch([this] { LookForReturn(); });
    events_.FocusMovesTo(nullptr);
}

void EntryGrid::EndAbsence() {
    away_ = false;
    if (frame_) frame_->Watch({});
}

// Hosts differ in where the focus is when the user returns.
void EntryGrid::LookForReturn() {
    const auto keep = events_.KeepAlive();
    ComboWindow* combo = frame_->Find(editor_);
    if (!EditIsOpen() || !combo) return EndAbsence();
    const HWND focus = GetFocus();
    const HWND form = GetAncestor(window_->Handle(), GA_ROOT);
    const bool unplaced = !focus || focus == form || focus == window_->Handle() || focus == events_.ControlWindow();
    switch (DecideReturn(GetActiveWindow() != nullptr, GetActiveWindow() == form, combo->HasFocus(), unplaced)) {
        case EditorReturn::Wait:
            return;
        case EditorReturn::Stay:
            EndAbsence();
            return;
        case EditorReturn::TakeFocus:
            EndAbsence();
            combo->Focus();
            return;
        case EditorReturn::Commit:
            EndAbsence();
            Commit();
            if (frame_) frame_->Show(false);
            Commit();
    }
}

}  // namespace qvx::grid
