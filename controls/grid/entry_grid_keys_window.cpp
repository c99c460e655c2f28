// Keys, in the grid and in an open editor: asked of the rules, and carried out.
#include <utility>

#include "common/keys.h"
#include "common/send_key.h"
#include "common/text_direction.h"
#include "controls/grid/entry_grid_window.h"
#include "controls/grid/row_commands.h"

namespace qvx::grid {

void EntryGrid::Go(const CellStep& step, short shift) {
    switch (step.kind) {
        case CellStep::Kind::Stay:
            return;
        case CellStep::Kind::Leave:
            LeaveGrid((shift & keys::shiftMask) != 0);
            return;
        case CellStep::Kind::AddRow:
            ChangeRows([this] { AppendRows(Model(), state_, history_, 1); });
            break;
        case CellStep::Kind::Move:
            break;
    }
    if (step.row < Model().Rows() && step.col < Model().Cols()) Model().MoveTo(step.row, step.col);
    window_->ScrollIntoView(Model().Row(), Model().Col());
}

// Hosts that move the focus themselves were asked before (WantsKey); others have their windows in dialog order.
void EntryGrid::LeaveGrid(bool backwards) {
    const HWND control = events_.ControlWindow();
    const HWND top = GetAncestor(control, GA_ROOT);
    const HWND next = top ? GetNextDlgTabItem(top, control, backwards) : nullptr;
    if (next && next != control && !IsChild(control, next)) SetFocus(next);
}

void EntryGrid::KeyDown(short& keyCode, short& shift) {
    const auto keep = events_.KeepAlive();
    dropCharacter_ = false;
    if (std::exchange(dropNextKey_, false)) {
        keyCode = 0;
        return;
    }
    if (!std::exchange(keyAlreadyTold_, false)) events_.KeyDown(keyCode, shift);
    if (keyCode == 0) {
        dropCharacter_ = true;
        return;
    }
    try {
        const GridKey action = DecideGridKey(keyCode, shift, Model(), state_);
        if (action == GridKey::PassOn) return;
        keyCode = 0;
        UseGridKey(action, shift);
    } catch (...) {
        keyCode = 0;
        const RunTimeError error = CurrentError();
        events_.ReportError(error.Number(), error.Description());
    }
}

void EntryGrid::UseGridKey(GridKey action, short shift) {
    switch (action) {
        case GridKey::OpenEditor:
            OpenEditor();
            break;
        case GridKey::ClearCell:
            TypeIntoCell({});
            break;
        case GridKey::InsertRow:
            ChangeShownRows([this] { InsertRow(Model(), state_, history_); });
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
        case GridKey::EndEntry:
            // A key stroke, so that a host with an order of its own moves the focus by that.
            nextTabLeaves_ = true;
            SendKey(keys::tab, 0);
            break;
        default:
            if (const auto step = StepOf(action, Model(), state_)) Go(*step, shift);
    }
}

void EntryGrid::DeleteSelectedRow() {
    const bool yes = events_.Say(msgbox::messages::deleteRowPrompt, msgbox::messages::deleteRow);
    window_->Refresh();
    if (!yes) return;
    int row = 0;
    ChangeShownRows([&] { row = DeleteRow(Model(), state_, history_); });
    state_.changed = true;
    events_.OnDelete(row);
    TellThatRowsChanged();
}

void EntryGrid::TellThatRowsChanged() {
    state_.eventFlag = false;
    events_.AfterCellChange(-1, -1, {}, {}, state_.eventFlag);
}

void EntryGrid::KeyPress(short& keyAscii) {
    const auto keep = events_.KeepAlive();
    if (std::exchange(dropCharacter_, false)) return;
    events_.KeyPress(keyAscii);
    const auto character = static_cast<char16_t>(keyAscii);
    if (!OpensEditor(character)) return;
    keyAscii = 0;
    if (EditIsOpen() && frame_ && frame_->Shown()) {
        // The second half of a character outside the basic plane, sent to the grid before the editor had the focus.
        if (const ComboWindow* combo = frame_->Find(editor_)) SendMessageW(combo->EditWindow(), WM_CHAR, character, 0);
        return;
    }
    TypeIntoCell(character == keys::backspace ? Text() : Text(1, character));
}

void EntryGrid::TypeIntoCell(TextView typed) {
    if (!OpenEditor()) return;
    if (ComboWindow* combo = frame_->Find(editor_)) combo->TypeOver(typed);
}

void EntryGrid::ComboKeyDown(ComboWindow& combo, int& keyCode, int shift) {
    const auto keep = events_.KeepAlive();
    if (!EditIsOpen()) {
        // The edit ended while the key was on its way.
        if (keyCode == keys::tab || keyCode == keys::enter || keyCode == keys::escape) keyCode = 0;
        return;
    }
    const Text text = combo.GetText();
    const Caret caret{combo.SelStart(), combo.SelLength(), static_cast<int>(text.size()),
                      ReadsRightToLeft(text, Model().RightToLeft())};
    const bool list = frame_->IndexOf(combo) != freeTextEditor;
    const EditorKey action = DecideEditorKey(keyCode, shift, caret, list, state_);
    if (action != EditorKey::PassOn) UseEditorKey(action, combo, keyCode, shift);
}

void EntryGrid::UseEditorKey(EditorKey action, ComboWindow& combo, int& keyCode, int shift) {
    const int key = std::exchange(keyCode, 0);
    if (action == EditorKey::Nothing) return;
    if (action == EditorKey::Abandon) Abandon(combo);
    const Text typed = combo.GetText();
    // A handler that has moved the current cell has decided where to go on.
    if (!EndEdit()) return;
    if (action == EditorKey::CommitPage) SendMessageW(window_->Handle(), WM_KEYDOWN, static_cast<WPARAM>(key), 0);
    if (const auto step = StepOf(action, Model(), state_)) Go(*step, static_cast<short>(shift));
    // The pick list goes on showing what was typed, whatever the cell has made of it.
    if (key == keys::enter && !EditIsOpen()) combo.SetText(typed);
}

bool EntryGrid::TabLeaves(int shift) {
    const auto step = [&] {
        return (shift & keys::shiftMask) != 0 ? StepBack(Model(), state_) : StepForward(Model(), state_, true);
    };
    if (std::exchange(nextTabLeaves_, false)) return true;
    const bool out = DecideGridKey(keys::tab, shift, Model(), state_) == GridKey::PassOut;
    if (!out && step().kind != CellStep::Kind::Leave) return false;
    if (EditIsOpen()) {
        if (!EndEdit()) return false;
        if (out || step().kind == CellStep::Kind::Leave) return true;
        // The handlers have made room for another step.
        Go(step(), static_cast<short>(shift));
        return false;
    }
    short key = keys::tab;
    auto bits = static_cast<short>(shift);
    events_.KeyDown(key, bits);
    dropNextKey_ = key == 0;
    keyAlreadyTold_ = key != 0;
    return key != 0;
}

bool EntryGrid::WantsKey(const MSG& message) {
    const auto keep = events_.KeepAlive();
    if (message.message == WM_CHAR || message.message == WM_KEYUP) return true;
    if (message.message != WM_KEYDOWN) return false;
    const auto key = static_cast<int>(message.wParam);
    const int shift = ShiftState();
    return key == keys::tab ? !TabLeaves(shift) : KeepsKey(key, shift, EditIsOpen());
}

}  // namespace qvx::grid
