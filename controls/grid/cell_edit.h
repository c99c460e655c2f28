// One edit of a cell from its opening to its commit: the steps and their order, independent of the windows that execute
// them.
#pragma once

#include <concepts>
#include <optional>
#include <utility>

#include "common/flag_scope.h"
#include "common/run_time_error.h"
#include "controls/grid/cell_clean.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/control_state.h"
#include "controls/grid/edit_history.h"
#include "controls/grid/editor_placement.h"
#include "controls/grid/list_match.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// The tag of a frame while its edit is being abandoned.
inline constexpr TextView abandonedTag = u"ESCAPE";

// A frame and the combo in it, as far as an edit uses them.
template <class E>
concept CellEditor = requires(E editor, TextView text, bool flag, int number, const EditorPlacement& placement) {
    editor.MoveFrame(placement);
    editor.MoveCombo(placement);
    editor.BringComboToFront();
    editor.SetComboMaxLength(number);
    editor.SetComboText(text);
    { editor.ComboText() } -> std::convertible_to<Text>;
    editor.SetComboTag(text);
    { editor.ComboTag() } -> std::convertible_to<Text>;
    editor.ShowFrame(flag);
    editor.SetFrameTag(text);
    { editor.FrameTag() } -> std::convertible_to<Text>;
    editor.DropDown();
    editor.FocusCombo();
    { editor.List() } -> std::convertible_to<ListState>;
    { editor.Cell() } -> std::convertible_to<CellBox>;
    { editor.DateSettingsNow() } -> std::convertible_to<DateSettings>;
    { editor.ScrollBarPixels() } -> std::convertible_to<int>;
    { editor.TwipsPerPixelX() } -> std::convertible_to<int>;
};

// The events that notify the host program; its answers are returned in the flag.
template <class H>
concept EditEvents = requires(H events, int number, const Text& text, TextView description, bool& flag) {
    events.BeforeCellChange(number, number, text, flag);
    events.AfterCellChange(number, number, text, text, flag);
    events.OnError(number, description, flag);
    events.ReportError(number, description);
};

// Whether an editor may be opened on the current cell at all: the cell is not fixed (only a program can put the cursor
// on a fixed one), its row is not filtered out, and its column is not inactive.
inline bool MayEdit(const flexgrid::Grid& grid, const ControlState& state) {
    return grid.Row() >= grid.FixedRows() && grid.Col() >= grid.FixedCols() && grid.Row() < grid.Rows() &&
           grid.Col() < grid.Cols() && !grid.RowFiltered(grid.Row()) &&
           !IsListedColumn(grid, state.inActiveColumns, grid.Col());
}

// Whether an editor could be opened on any cell of the grid if it were the current one; never in a column without
// width or in a row that is filtered out.
inline bool MayEdit(const flexgrid::Grid& grid, const ControlState& state, int row, int col) {
    return row >= grid.FixedRows() && col >= grid.FixedCols() && grid.ColWidth(col) != 0 && !grid.RowFiltered(row) &&
           !IsListedColumn(grid, state.inActiveColumns, col);
}

// Returns the text of the current cell.
inline Text CurrentText(const flexgrid::Grid& grid) { return grid.TextMatrix(grid.Row(), grid.Col()); }

// Marks that no edit is open.
inline void EndEditing(ControlState& state) {
    state.editRow = -1;
    state.editCol = -1;
}

// Opens an edit of the current cell, unless its column has no width or the host refuses. `hideButton` is true for a
// column of free text, false for one with a list. Returns whether the edit is now open. An error goes to OnError, and
// to ReportError unless the host sets the flag to false. An error before the editor has the cell's text opens no edit,
// because an edit would replace the text with an empty one; after an error that comes later the edit stays open.
template <CellEditor Editor, EditEvents Events>
bool ShowCellEditor(flexgrid::Grid& grid, ControlState& state, Editor& editor, Events& events, bool hideButton) {
    int number = 0;  // of the edit, once it has begun
    bool handedOver = false;
    try {
        state.eventFlag = false;
        if (grid.ColWidth(grid.Col()) == 0) return false;
        state.editing = true;
        events.BeforeCellChange(grid.Row(), grid.Col(), CurrentText(grid), state.eventFlag);
        if (state.eventFlag) {
            state.editing = false;
            return false;
        }
        state.editCol = grid.Col();
        state.editRow = grid.Row();
        number = ++state.editNumber;
        const EditorPlacement placement =
            PlaceEditor(editor.Cell(), static_cast<int>(grid.Appearance()), static_cast<int>(grid.BorderStyle()),
                        hideButton, editor.ScrollBarPixels(), editor.TwipsPerPixelX(), grid.RightToLeft());
        editor.MoveFrame(placement);
        editor.MoveCombo(placement);
        editor.BringComboToFront();
        editor.SetComboMaxLength(ColumnNumber(state.columnsMaxLength, grid.TextArray(state.editCol)));
        editor.SetComboText({});
        const Text text = CurrentText(grid);
        editor.SetComboTag(text);
        editor.ShowFrame(true);
        editor.SetComboText(text);
        // From here on, only the editor has the text.
        grid.SetTextMatrix(state.editRow, state.editCol, {});
        handedOver = true;
        if (!hideButton) editor.DropDown();
        editor.FocusCombo();
        state.editing = false;
    } catch (...) {
        const RunTimeError error = CurrentError();
        state.editing = false;
        if (number == state.editNumber && !handedOver) {
            EndEditing(state);
            editor.ShowFrame(false);
        }
        state.eventFlag = true;
        events.OnError(error.Number(), error.Description(), state.eventFlag);
        if (state.eventFlag) events.ReportError(error.Number(), error.Description());
    }
    return EditIsOpen(state);
}

// Abandons the edit: the editor shows the old text again, and the commit that follows writes it.
template <CellEditor Editor>
void AbandonEdit(Editor& editor) {
    editor.SetComboText(editor.ComboTag());
    editor.SetFrameTag(abandonedTag);
    editor.ShowFrame(false);
}

// Returns the text that the edited cell gets from its editor. An abandoned edit returns its old text unchanged, neither
// cleaned (an empty cell of numbers stays empty) nor matched against the list.
template <CellEditor Editor>
Text CommittedText(const flexgrid::Grid& grid, const ControlState& state, Editor& editor) {
    Text oldText = editor.ComboTag();
    if (editor.FrameTag() == abandonedTag) return oldText;
    const Text typed = editor.ComboText();
    const Text caption = grid.TextArray(state.editCol);
    Text cleaned = CleanCell(typed, state.columnsDataType, caption, state.dateFormat, editor.DateSettingsNow());
    // Setting a combo's text removes its selection, so an entry that needs no cleaning stays selected.
    if (cleaned != typed) editor.SetComboText(cleaned);
    if (!IsListedColumn(state.unChangableColumns, caption)) return cleaned;
    return MatchListEntry(editor.List(), cleaned, oldText);
}

// Ends the edit: cleans the text, writes the cell and notifies the host, which may restore the old text. Called when
// the editor is validated and again when it loses the focus; the second call finds no open edit, and neither does one
// from within AfterCellChange, whose handler may take the focus away with a window of its own. The history records the
// resulting text unless the host has restored the old one or the user has abandoned the edit. An edit whose row is gone
// does not end but moves to the last row, and that call does nothing else. An error goes to ReportError; if it comes
// before the cell is written the edit stays open, because only the editor has what was typed. With KeepUnchanged, an
// edit that leaves the text as it was ends without any of this: the cell keeps a text that cleaning would change.
template <CellEditor Editor, EditEvents Events>
void CommitEdit(flexgrid::Grid& grid, ControlState& state, EditHistory& history, Editor& editor, Events& events) {
    if (!EditIsOpen(state) || state.committing == state.editNumber) return;
    if (state.editRow > grid.Rows() - 1) {
        state.editRow = grid.Rows() - 1;
        return;
    }
    if (state.editCol > grid.Cols() - 1) {
        // The column is gone, so there is no cell to write.
        EndEditing(state);
        return;
    }
    const int number = state.editNumber;
    const int row = state.editRow;
    const int col = state.editCol;
    const ValueScope committing(state.committing, number);
    bool written = false;
    std::optional<RunTimeError> error;
    try {
        const Text oldText = editor.ComboTag();
        const bool abandoned = editor.FrameTag() == abandonedTag;
        if (state.keepUnchanged && !abandoned && editor.ComboText() == oldText) {
            grid.SetTextMatrix(row, col, oldText);
            editor.SetFrameTag({});
            EndEditing(state);
            return;
        }
        const Text newText = CommittedText(grid, state, editor);
        const std::uint64_t structure = grid.StructureVersion();
        grid.SetTextMatrix(row, col, newText);
        written = true;
        state.eventFlag = false;
        events.AfterCellChange(row, col, oldText, newText, state.eventFlag);
        const bool cellStands = row < grid.Rows() && col < grid.Cols();
        if (state.eventFlag && cellStands)
            grid.SetTextMatrix(row, col, oldText);
        else if (cellStands && !abandoned)
            history.CellChanged(structure, row, col, oldText, grid.Cell(row, col));
    } catch (...) {
        error = CurrentError();
    }
    if (written) {
        state.changed = true;
        // A handler that processes input may have opened the next edit by now; that one stays open.
        if (state.editNumber == number) {
            editor.SetFrameTag({});
            EndEditing(state);
        }
    }
    if (error) events.ReportError(error->Number(), error->Description());
}

}  // namespace qvx::grid
