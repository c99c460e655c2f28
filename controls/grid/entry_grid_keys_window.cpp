// Keys in the grid and in an open editor: the rules decide, and the windows execute.
#include <utility>

#include "com/guard.h"
#include "common/keys.h"
#include "common/text_direction.h"
#include "controls/grid/entry_grid_filter_window.h"
#include "controls/grid/entry_grid_finder_window.h"
#include "controls/grid/list_arrows.h"
#include "controls/grid/row_commands.h"
#include "win/send_key.h"

namespace qvx::grid {

// The access of the Tab rules to the windows.
struct EntryGrid::TabWindows {
    EntryGrid& grid;
    bool EndEdit() { return grid.EndEdit(); }
    void NotifyKeyDown(short& key, short& shift) { grid.events_.KeyDown(key, shift); }
    bool HasFocus() const { return grid.HasFocus(); }
};

void EntryGrid::Go(const CellStep& step) {
    if (step.kind == CellStep::Kind::Stay) return;
    if (step.kind == CellStep::Kind::AddRow) ChangeRows([this] { AppendRows(Model(), state_, history_, 1); });
    if (step.row < Model().Rows() && step.col < Model().Cols()) Model().MoveTo(step.row, step.col);
    window_->ScrollIntoView(Model().Row(), Model().Col());
}

void EntryGrid::GoByTab(const PressedKey& tab) {
    const CellStep step = StepOf(tab, Model(), state_);
    if (step.kind == CellStep::Kind::Leave)
        LeaveGrid(tab);
    else
        Go(step);
}

// If the host does not move the focus, its windows may have a dialog's tab order.
void EntryGrid::LeaveGrid(const PressedKey& tab) {
    if (!tab.declined && events_.MoveFocusOn(tab.Backwards())) return;
    const HWND control = events_.ControlWindow();
    const HWND top = GetAncestor(control, GA_ROOT);
    const HWND next = top ? GetNextDlgTabItem(top, control, tab.Backwards()) : nullptr;
    if (next && next != control && !IsChild(control, next)) SetFocus(next);
}

bool EntryGrid::HasFocus() const {
    const HWND focus = GetFocus();
    return focus && (focus == window_->Handle() || (frame_ && frame_->Handle() && IsChild(frame_->Handle(), focus)));
}

void EntryGrid::KeyDown(short& keyCode, short& shift) {
    const auto keep = events_.KeepAlive();
    TabWindows windows{*this};
    const PressedKey press = tabWay_.ArrivedAtGrid(keyCode, shift, windows);
    keyCode = press.key;
    shift = press.shift;
    dropCharacter_ = keyCode == 0;
    if (keyCode == 0) return;
    try {
        if (const FindAction find = DecideFindKey(keyCode, shift, state_); find != FindAction::None) {
            keyCode = 0;
            dropCharacter_ = find == FindAction::Find || find == FindAction::Replace;  // that of Ctrl and the letter
            Finding().Act(find);
            return;
        }
        if (IsFilterKey(keyCode, shift, state_)) {
            keyCode = 0;
            dropCharacter_ = true;
            Filtering().FocusField();
            return;
        }
        const GridKey action = DecideGridKey(keyCode, shift, Model(), state_);
        if (action == GridKey::PassOn) return;
        keyCode = 0;
        UseGridKey(action, press);
    } catch (...) {
        keyCode = 0;
        const RunTimeError error = CurrentError();
        events_.ReportError(error.Number(), error.Description());
    }
}

void EntryGrid::UseGridKey(GridKey action, const PressedKey& press) {
    switch (action) {
        case GridKey::OpenEditor:
            OpenEditor();
            break;
        case GridKey::ClearCell:
            TypeIntoCell({});
            break;
        case GridKey::InsertRow:
            ChangeKeptRows([this] { InsertRow(Model(), state_, history_); });
            break;
        case GridKey::DeleteRow:
            DeleteSelectedRow();
            break;
        case GridKey::SelectAll:
            SelectAll(Model());
            break;
        case GridKey::Copy:
        case GridKey::Cut:
        case GridKey::Paste:
            UseClipboardKey(action);
            break;
        case GridKey::Undo:
        case GridKey::Redo:
            StepInHistory(action == GridKey::Undo);
            break;
        case GridKey::FillDown:
            WriteCells(CellRectangle::FillDown(Model()));
            break;
        case GridKey::FillRight:
            WriteCells(CellRectangle::FillRight(Model()));
            break;
        case GridKey::ClearCells:
            WriteCells(CellRectangle(Model()));
            break;
        case GridKey::SelectRow:
        case GridKey::SelectColumn:
            dropCharacter_ = true;  // the space
            if (action == GridKey::SelectRow)
                SelectRows(Model());
            else
                SelectColumns(Model());
            break;
        case GridKey::EndEntry:
            // A real Tab key is sent, so that a host with a tab order of its own moves the focus by it.
            tabWay_.EndEntry();
            SendKey(keys::tab, 0);
            break;
        case GridKey::Tab:
            GoByTab(press);
            break;
        case GridKey::NextInvalid:
            if (const auto place = marks_.Next({Model().Row(), Model().Col()}, events_.HostCheck())) {
                GoToHit(*place);
            } else {
                MessageBeep(MB_OK);
            }
            break;
        case GridKey::MoveColumnLeft:
        case GridKey::MoveColumnRight:
            MoveCurrentColumn(action == GridKey::MoveColumnRight);
            break;
        default:
            if (const auto step = StepOf(action, Model(), state_)) Go(*step);
    }
}

void EntryGrid::DeleteSelectedRow() {
    const bool yes = events_.Say(dialogs::messages::deleteRowPrompt, dialogs::messages::deleteRow);
    window_->Refresh();
    if (!yes) return;
    int row = 0;
    ChangeKeptRows([&] { row = DeleteRow(Model(), state_, history_); });
    state_.changed = true;
    events_.OnDelete(row);
    NotifyRowsChanged();
}

void EntryGrid::NotifyRowsChanged() {
    state_.eventFlag = false;
    events_.AfterCellChange(-1, -1, {}, {}, state_.eventFlag);
}

void EntryGrid::LeaveFilteredRow() noexcept {
    flexgrid::Grid& grid = Model();
    if (grid.FilteredRows() == 0 || EditIsOpen() || grid.Row() >= grid.Rows() || !grid.RowFiltered(grid.Row())) return;
    int row = grid.UnfilteredRow(grid.Row(), 1);
    if (row < 0) row = grid.UnfilteredRow(grid.Row(), -1);
    if (row < grid.FixedRows()) return;
    Contain([&] { grid.MoveTo(row, grid.Col()); });
}

void EntryGrid::KeyPress(short& keyAscii) {
    const auto keep = events_.KeepAlive();
    if (std::exchange(dropCharacter_, false)) return;
    events_.KeyPress(keyAscii);
    const auto character = static_cast<char16_t>(keyAscii);
    if (!OpensEditor(character)) return;
    keyAscii = 0;
    if (EditIsOpen() && frame_ && frame_->Shown()) {
        // This is the second half of a character outside the basic plane, sent to the grid before the editor had the
        // focus.
        if (const ComboWindow* combo = frame_->Find(editor_)) SendMessageW(combo->EditWindow(), WM_CHAR, character, 0);
        return;
    }
    // The user must not go on typing without noticing that nothing arrives.
    if (!MayEdit(Model(), state_)) MessageBeep(MB_OK);
    TypeIntoCell(character == keys::backspace ? Text() : Text(1, character));
}

void EntryGrid::TypeIntoCell(TextView typed) {
    if (!OpenEditor()) return;
    if (ComboWindow* combo = frame_->Find(editor_)) combo->TypeOver(typed);
}

void EntryGrid::ComboKeyDown(ComboWindow& combo, int& keyCode, int shift) {
    const auto keep = events_.KeepAlive();
    if (keyCode == keys::tab) {
        keyCode = 0;
        TabWindows windows{*this};
        const PressedKey press = tabWay_.ArrivedAtEditor(static_cast<short>(shift), state_, windows);
        if (press.key != 0) GoByTab(press);
        return;
    }
    // Handlers of Scroll may end the edit.
    if (EditIsOpen() && BringsEditorBack(keyCode)) BringEditorIntoView();
    if (!EditIsOpen()) {
        // The edit has ended while the key was on its way.
        if (keyCode == keys::enter || keyCode == keys::escape) keyCode = 0;
        return;
    }
    if (const FindAction find = DecideFindKey(keyCode, shift, state_); find != FindAction::None) {
        keyCode = 0;
        Finding().Act(find);
        return;
    }
    if (IsFilterKey(keyCode, shift, state_)) {
        keyCode = 0;
        Filtering().FocusField();
        return;
    }
    const Text text = combo.GetText();
    const Caret caret{combo.SelStart(), combo.SelLength(), static_cast<int>(text.size()),
                      ReadsRightToLeft(text, Model().RightToLeft())};
    const bool list = frame_->IndexOf(combo) != freeTextEditor;
    const EditorKey action = DecideEditorKey(keyCode, shift, caret, list, state_);
    if (action != EditorKey::PassOn) UseEditorKey(action, combo, keyCode);
}

void EntryGrid::UseEditorKey(EditorKey action, ComboWindow& combo, int& keyCode) {
    const int key = std::exchange(keyCode, 0);
    if (action == EditorKey::Nothing) return;
    if (action == EditorKey::Abandon) Abandon(combo);
    const Text typed = combo.GetText();
    if (action == EditorKey::CommitFill) {
        CommitIntoSelection(typed);
        return;
    }
    // A handler that has moved the current cell has decided where to continue.
    if (!EndEdit()) return;
    if (action == EditorKey::CommitPage) SendMessageW(window_->Handle(), WM_KEYDOWN, static_cast<WPARAM>(key), 0);
    if (const auto step = StepOf(action, Model(), state_)) Go(*step);
    // The pick list still shows what was typed, whatever text the cell has now.
    if (key == keys::enter && !EditIsOpen()) combo.SetText(typed);
}

// Ends the edit, and writes its text into all selected cells in the same step of the history.
void EntryGrid::CommitIntoSelection(TextView typed) {
    const EditHistory::Group group(history_);
    if (EndEdit() && !EditIsOpen()) WriteCells(CellRectangle(Model(), typed));
}

bool EntryGrid::WantsKey(const MSG& message) {
    const auto keep = events_.KeepAlive();
    if (message.message == WM_CHAR || message.message == WM_KEYUP) return true;
    const auto key = static_cast<int>(message.wParam);
    const int shift = ShiftState();
    const bool pressed = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    const bool inFilter = filterer_ && filterer_->HasFocus();
    const bool inBar = inFilter || (finder_ && finder_->HasFocus());
    if (pressed && key == keys::escape && window_->Dragging()) return true;
    if (pressed && !inBar && !EditIsOpen() &&
        (OpensList(key, shift, Model(), state_) || MovesColumn(key, shift, state_)))
        return true;
    if (message.message != WM_KEYDOWN) return false;
    if (IsFilterKey(key, shift, state_)) return true;
    if (inBar) return BarKeepsKey(key, shift);
    if (key != keys::tab) return KeepsKey(key, shift, state_);
    TabWindows windows{*this};
    return tabWay_.Asked(shift, Model(), state_, windows);
}

}  // namespace qvx::grid
