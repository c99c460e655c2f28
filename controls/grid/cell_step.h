// How the keyboard moves the current cell, and which keys open, end or move an edit.
#pragma once

#include <optional>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/hit_test.h"

namespace qvx::grid {

// Returns the first column at or after `col` that is not inactive and has a width; 0 when there is none. A column below
// 0 means the first scrolling one, and so does an inactive or hidden one; `col` is set to it. The column itself can be
// the result, and the search does not continue after the last column. Raises the grid's errors for a column that it
// does not have.
int GetNextColumn(const flexgrid::Grid& grid, const ControlState& state, int& col);

// Returns the number of the editor for the current column: the column's own number for a list column, else that of the
// free-text editor.
constexpr int freeTextEditor = 100;
int GetActiveList(const flexgrid::Grid& grid, const ControlState& state);

// Whether Tab and Enter stop at the column: it scrolls, has a width, and is neither inactive nor a non-focus column.
bool MayEnter(const flexgrid::Grid& grid, const ControlState& state, int col);

// The effect of a key on the current cell.
struct CellStep {
    enum class Kind {
        Stay,    // there is no other cell; the key is used nevertheless
        Move,    // to `row` and `col`
        AddRow,  // append a row, then move to `row` (the new one) and `col`
        Leave,   // out of the grid, to the next or the previous control
    };
    Kind kind = Kind::Stay;
    int row = -1;
    int col = -1;
    friend bool operator==(const CellStep&, const CellStep&) = default;
};

// Returns the step to the next column that may be entered, else to the first such column of the next row that is not
// hidden; after the last row, to a new row with AutoAddNew, unless the last one is still empty: going on from there
// must lead out of the grid. Unlike GetNextColumn, it never starts again within a row,
// because a hidden column would then stop it for ever. `leave` is true for Tab, which continues to the next control,
// and false for Enter, which stays.
CellStep StepForward(const flexgrid::Grid& grid, const ControlState& state, bool leave);

// Returns the step in the opposite direction: from the first cell to the previous control.
CellStep StepBack(const flexgrid::Grid& grid, const ControlState& state);

// Return the step of an arrow key: `step` is 1 or -1, in column or row numbers. Sideways steps skip hidden and
// non-focus columns, vertical ones hidden rows. Inactive columns can be reached, because they can be read and copied,
// though not edited.
CellStep StepSideways(const flexgrid::Grid& grid, const ControlState& state, int step);
// Downwards from the last row, the step is to a new row with AutoAddNew, unless the last one is still empty.
CellStep StepVertically(const flexgrid::Grid& grid, const ControlState& state, int step);

// The effect of a key pressed on the grid itself. `keyCode` is a virtual key, `shift` the bits of an event's Shift
// argument.
enum class GridKey {
    PassOn,      // to the inner grid
    OpenEditor,  // with the cell's text, as F2 does
    ClearCell,   // in the editor, as Backspace does
    InsertRow,
    DeleteRow,    // after the user has confirmed it
    EndEntry,     // Enter in a row without a key: to the next control, as the Tab key does
    Tab,          // decided in tab_way.h
    ForwardStay,  // Enter: forward, but never out of the grid
    Left,
    Right,
    DownToNewRow,
    SelectAll,  // except for the fixed cells
    Copy,
    Cut,
    Paste,
    Undo,
    Redo,
    // These with ExtendedKeys only.
    FillDown,
    FillRight,
    SelectRow,
    SelectColumn,
    ClearCells,   // all selected ones
    NextInvalid,  // with MarkInvalid only
    // These with MoveColumns only: the current column changes places with its neighbour.
    MoveColumnLeft,
    MoveColumnRight,
    Nothing,  // the key is used without any effect
};
// Raises the grid's error when the key column does not exist.
GridKey DecideGridKey(int keyCode, int shift, const flexgrid::Grid& grid, const ControlState& state);

// Returns the step of a key; nothing for keys that do not move the current cell by a step.
std::optional<CellStep> StepOf(GridKey key, const flexgrid::Grid& grid, const ControlState& state);

// Whether a key moves the current column, with MoveColumns: Alt, Shift and an arrow.
bool MovesColumn(int keyCode, int shift, const ControlState& state);

// Whether a double click on `pressed` opens the editor: it must be on the current cell itself, which is not a header.
bool MeansCurrentCell(const flexgrid::Hit& pressed, const flexgrid::Grid& grid);

// Whether a typed character opens the editor: any that a cell can hold, and Backspace, which empties the cell.
bool OpensEditor(char16_t character);

// The position of the caret in an editor's text, in characters.
struct Caret {
    int start = 0;
    int length = 0;  // of the selection
    int textLength = 0;
    bool rightToLeft = false;  // the reading direction: the end of the text is then at the left
};

// The effect of a key pressed in the editor. The commit precedes every step.
enum class EditorKey {
    PassOn,  // to the combo
    Abandon,
    Commit,  // and stay on the cell
    CommitForwardStay,
    CommitLeft,
    CommitRight,
    CommitUp,
    CommitDown,
    CommitFill,  // and into all selected cells, with ExtendedKeys
    CommitPage,  // the key then goes to the inner grid
    Nothing,
};
// `listColumn` is true for the combo of a list column, whose vertical keys move in its list, and false for the
// free-text one. Enter ends the entry with any modifier. Not for Tab, which tab_way.h decides.
EditorKey DecideEditorKey(int keyCode, int shift, const Caret& caret, bool listColumn, const ControlState& state);

// Returns the step after the commit. Left and right are those of the screen, also in a grid that runs from right to
// left.
std::optional<CellStep> StepOf(EditorKey key, const flexgrid::Grid& grid, const ControlState& state);

// Whether a key scrolls its editor back into view: all except those that mean nothing alone.
bool BringsEditorBack(int keyCode);

// Whether a key pressed with Ctrl belongs to an open editor rather than to the host's menus: select all, clipboard and
// undo, deleting a word, and what Ctrl and Alt together type on many keyboards.
bool IsEditorCommand(int keyCode, int shift);

// Whether the grid uses a key that its host could use too. Not for Tab (tab_way.h).
bool KeepsKey(int keyCode, int shift, const ControlState& state);

// Returns the tool tip of a cell: its text if tips are on and the cell cuts it off, else "".
Text CellTipText(const ControlState& state, TextView text, bool cutOff);

}  // namespace qvx::grid
