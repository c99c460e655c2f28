// One edit of a cell from its opening to its commit: what happens, and in which order, for whoever carries it out.
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

// The tag that a frame bears while its edit is being abandoned.
inline constexpr TextView abandonedTag = u"ESCAPE";

// A frame and the combo in it, as far as an edit is concerned.
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

// What the host program is told; its answers come back through the flag.
template <class H>
concept EditEvents = requires(H events, int number, const Text& text, TextView description, bool& flag) {
    events.BeforeCellChange(number, number, text, flag);
    events.AfterCellChange(number, number, text, text, flag);
    events.OnError(number, description, flag);
    events.ReportError(number, description);
};

// True when an editor may be opened on the current cell at all: it is no fixed one, where only a program can put the
// cursor, and its column none of the inactive ones.
inline bool MayEdit(const flexgrid::Grid& grid, const ControlState& state) {
    return grid.Row() >= grid.FixedRows() && grid.Col() >= grid.FixedCols() && grid.Row() < grid.Rows() &&
           grid.Col() < grid.Cols() && !IsListedColumn(grid, state.inActiveColumns, grid.Col());
}

// The same for any cell of the grid, were it the current one; a column without width never opens.
inline bool MayEdit(const flexgrid::Grid& grid, const ControlState& state, int row, int col) {
    return row >= grid.FixedRows() && col >= grid.FixedCols() && grid.ColWidth(col) != 0 &&
           !IsListedColumn(grid, state.inActiveColumns, col);
}

inline Text CurrentText(const flexgrid::Grid& grid) { return grid.TextMatrix(grid.Row(), grid.Col()); }

inline void EndEditing(ControlState& state) {
    state.editRow = -1;
    state.editCol = -1;
}

// Opens an edit of the current cell, unless its column has no width or the host refuses. `hideButton` is true for a
// column of free text, false for one with a list. Returns whether the edit is open now. An error on the way goes to
// OnError, and to ReportError unless the host answers that. One that comes before the editor has the cell's text opens
// no edit, which would write an empty text in its place; after it the edit stays open.
template <CellEditor Editor, EditEvents Events>
bool ShowCellEditor(flexgrid::Grid& grid, ControlState& state, Editor& editor, Events& events, bool hideButton) {
    int number = 0;  // of the edit, once it is begun
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
        // From here on the text lives in the editor alone.
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

// Gives the edit up: the editor shows the old text again, and the commit that follows writes that.
template <CellEditor Editor>
void AbandonEdit(Editor& editor) {
    editor.SetComboText(editor.ComboTag());
    editor.SetFrameTag(abandonedTag);
    editor.ShowFrame(false);
}

// The text that the cell under edit gets from its editor. An abandoned edit gives its old text as it was, neither
// cleaned (an empty cell of numbers stays empty) nor matched against the list.
template <CellEditor Editor>
Text CommittedText(const flexgrid::Grid& grid, const ControlState& state, Editor& editor) {
    const Text oldText = editor.ComboTag();
    if (editor.FrameTag() == abandonedTag) return oldText;
    const Text typed = editor.ComboText();
    const Text caption = grid.TextArray(state.editCol);
    const Text cleaned = CleanCell(typed, state.columnsDataType, caption, state.dateFormat, editor.DateSettingsNow());
    // Setting a combo's text drops its selection, so an entry that needs no cleaning is left selected.
    if (cleaned != typed) editor.SetComboText(cleaned);
    if (!IsListedColumn(state.unChangableColumns, caption)) return cleaned;
    return MatchListEntry(editor.List(), cleaned, oldText);
}

// Ends the edit: cleans the text, writes the cell, tells the host, which may take it back. Run when the editor is
// validated and again when it loses the focus; the second run finds no edit any more, and so does a run from within
// AfterCellChange, whose handler may well take the focus away with a window of its own. What stands in the cell then
// is remembered in the history, unless the host or the user has taken it back. An edit whose row is gone is
// not ended but moved to the last row, and that run does nothing else. An error goes to ReportError; when it comes
// before the cell is written the edit stays open, since what was typed is in the editor alone.
template <CellEditor Editor, EditEvents Events>
void CommitEdit(flexgrid::Grid& grid, ControlState& state, EditHistory& history, Editor& editor, Events& events) {
    if (!EditIsOpen(state) || state.committing == state.editNumber) return;
    if (state.editRow > grid.Rows() - 1) {
        state.editRow = grid.Rows() - 1;
        return;
    }
    if (state.editCol > grid.Cols() - 1) {
        // Its column is gone, and there is no cell left to write.
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
        // A handler that lets input through may have opened the next edit by now; that one stays open.
        if (state.editNumber == number) {
            editor.SetFrameTag({});
            EndEditing(state);
        }
    }
    if (error) events.ReportError(error->Number(), error->Description());
}

}  // namespace qvx::grid
