// Undo, redo and the clipboard of a grid for data entry: the editor's while it is open, else the grid's.
#include "com/guard.h"
#include "common/locale.h"
#include "controls/grid/copied_cells.h"
#include "controls/grid/entry_grid_window.h"
#include "win/clipboard.h"

namespace qvx::grid {

HWND EntryGrid::OpenEditField() const {
    const ComboWindow* combo = EditIsOpen() && frame_ ? frame_->Find(editor_) : nullptr;
    return combo ? combo->EditWindow() : nullptr;
}

bool EntryGrid::CanUndo() const {
    if (EditIsOpen()) return SendMessageW(OpenEditField(), EM_CANUNDO, 0, 0) != FALSE;
    return history_.CanUndo();
}

void EntryGrid::StepInHistory(bool back) {
    const auto keep = events_.KeepAlive();
    if (EditIsOpen()) {
        if (back) SendMessageW(OpenEditField(), EM_UNDO, 0, 0);
        return;
    }
    if (!(back ? history_.CanUndo() : history_.CanRedo())) return;
    EditHistory::Step step;
    ChangeKeptRows([&] { step = back ? history_.Undo(state_) : history_.Redo(state_); });
    if (!step) return;
    // The step is done: what cannot be shown or notified for lack of memory is lost, and is not reported as a failure.
    Contain([&] {
        if (const auto move = step->MovedColumn()) FollowMovedColumn(move->from, move->to);
        window_->ScrollIntoView(Model().Row(), Model().Col());
        NotifyOfStep(Model(), state_, history_, *step, back, events_);
    });
}

void EntryGrid::Copy() {
    if (const HWND field = OpenEditField()) {
        SendMessageW(field, WM_COPY, 0, 0);
        return;
    }
    if (const auto text = CopiedText(Model()))
        PutOnClipboard(events_.ControlWindow(), *text, CopiedHtml(Model(), state_));
}

void EntryGrid::Cut() {
    const auto keep = events_.KeepAlive();
    if (const HWND field = OpenEditField()) {
        SendMessageW(field, WM_CUT, 0, 0);
        return;
    }
    Copy();
    WriteCells(CellRectangle(Model()));
}

void EntryGrid::Paste() {
    const auto keep = events_.KeepAlive();
    if (const HWND field = OpenEditField()) {
        SendMessageW(field, WM_PASTE, 0, 0);
        return;
    }
    const std::optional<Text> text = TextOnClipboard(events_.ControlWindow());
    if (!text) return;
    const ClipboardCells cells(*text);
    WriteCells(CellRectangle(Model(), cells));
}

CellSources EntryGrid::SourcesForCells() const {
    return {SystemDateSettings(), [this](int col) {
                const ComboWindow* combo = frame_ ? frame_->Find(col) : nullptr;
                if (!combo) return ListState{0, {}, -1, 0};
                return ListState{combo->ListCount(), [combo](int index) { return combo->List(index); }, -1, 0};
            }};
}

void EntryGrid::WriteCells(const CellRectangle& rectangle) {
    const CellSources sources = SourcesForCells();
    ChangeRows([&] { CellWriter<EntryGridEvents>(Model(), state_, history_, events_, sources).Write(rectangle); });
}

void EntryGrid::UseClipboardKey(GridKey action) {
    try {
        if (action == GridKey::Copy) Copy();
        if (action == GridKey::Cut) Cut();
        if (action == GridKey::Paste) Paste();
    } catch (const RunTimeError& error) {
        if (error.Number() != clipboardUnavailable) throw;
        MessageBeep(MB_OK);
    }
}

}  // namespace qvx::grid
