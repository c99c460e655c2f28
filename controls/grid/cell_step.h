// Where the current cell goes by keyboard, and which keys open, end or move an edit.
#pragma once

#include <optional>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/hit_test.h"

namespace qvx::grid {

// The first column at or after `col` that is not inactive and has a width; 0 when there is none. A column below 0
// stands for the first scrolling one, and so does an inactive or hidden one; `col` then becomes that. The column itself
// can be the answer, and the search does not go on past the last column. Raises the grid's errors for a column it does
// not have.
int GetNextColumn(const flexgrid::Grid& grid, const ControlState& state, int& col);

// The editor that serves the current column: the column's own number for a list column, else that of the free-text one.
constexpr int freeTextEditor = 100;
int GetActiveList(const flexgrid::Grid& grid, const ControlState& state);

// Whether Tab and Enter stop at the column: it scrolls, has a width, and is neither inactive nor a non-focus column.
bool MayEnter(const flexgrid::Grid& grid, const ControlState& state, int col);

// What a key does to the current cell.
struct CellStep {
    enum class Kind {
        Stay,    // nowhere to go; the key is used up all the same
        Move,    // to `row` and `col`
        AddRow,  // append a row, then to `row` (the new one) and `col`
        Leave,   // out of the grid, to the next or the previous control
    };
    Kind kind = Kind::Stay;
    int row = -1;
    int col = -1;
    friend bool operator==(const CellStep&, const CellStep&) = default;
};

// The next column that may be entered, else the first such of the next row that is not hidden; behind the last row a
// new one with AutoAddNew. Unlike GetNextColumn it never starts over within a row, which would keep it in front of a
// hidden column for ever. `leave` tells Tab, which goes on to the next control, from Enter, which stays.
CellStep StepForward(const flexgrid::Grid& grid, const ControlState& state, bool leave);

// The same backwards: at the first cell to the previous control.
CellStep StepBack(const flexgrid::Grid& grid, const ControlState& state);

// The arrows: `step` is 1 or -1, by column numbers. Sideways past hidden and non-focus columns, up and down past hidden
// rows. Inactive columns can be reached, as they can be read and copied though not edited.
CellStep StepSideways(const flexgrid::Grid& grid, const ControlState& state, int step);
CellStep StepVertically(const flexgrid::Grid& grid, int step);

// What a key pressed on the grid itself does. `keyCode` is a virtual key, `shift` the bits of an event's Shift
// argument.
enum class GridKey {
    PassOn,      // to the inner grid
    OpenEditor,  // with the cell's text, as F2
    ClearCell,   // in the editor, as Backspace
    InsertRow,
    DeleteRow,    // once the user has said so
    EndEntry,     // Enter in a row without a key: on to the next control, as by a Tab key
    Tab,          // has a way of its own (tab_way.h)
    ForwardStay,  // Enter: forward, but never out of the grid
    Left,
    Right,
    SelectAll,  // but the fixed cells
    Copy,
    Cut,
    Paste,
    Undo,
    Redo,
    Nothing,  // used up
};
// Raises the grid's error when there is no such column as the key column.
GridKey DecideGridKey(int keyCode, int shift, const flexgrid::Grid& grid, const ControlState& state);

// Where a key takes the current cell; nothing for keys that do not move it by a step.
std::optional<CellStep> StepOf(GridKey key, const flexgrid::Grid& grid, const ControlState& state);

// Whether a double click there opens the editor: on the current cell itself, which is no header.
bool MeansCurrentCell(const flexgrid::Hit& pressed, const flexgrid::Grid& grid);

// Whether a typed character opens the editor: any that can stand in a cell, and Backspace, which empties it.
bool OpensEditor(char16_t character);

// Where the caret stands in an editor's text, in characters.
struct Caret {
    int start = 0;
    int length = 0;  // of the selection
    int textLength = 0;
    bool rightToLeft = false;  // how the text reads: its end is at the left then
};

// What a key pressed in the editor does. Commit precedes every step.
enum class EditorKey {
    PassOn,  // to the combo
    Abandon,
    Commit,  // and stay on the cell
    CommitForwardStay,
    CommitLeft,
    CommitRight,
    CommitUp,
    CommitDown,
    CommitPage,  // the key then goes to the inner grid
    Nothing,
};
// `listColumn` tells a list column's combo, which walks its list by the vertical keys, from the free-text one. Enter
// ends the entry whatever is held with it. Not for Tab, which has a way of its own (tab_way.h).
EditorKey DecideEditorKey(int keyCode, int shift, const Caret& caret, bool listColumn, const ControlState& state);

// The step that follows the commit. Left and right go as the eye does, also in a grid that runs from right to left.
std::optional<CellStep> StepOf(EditorKey key, const flexgrid::Grid& grid, const ControlState& state);

// Whether a key pressed in an editor that is scrolled out of sight brings it back: all but those that mean nothing
// alone.
bool BringsEditorBack(int keyCode);

// Whether the grid wants a key that its host could use, too. Not for Tab (tab_way.h).
bool KeepsKey(int keyCode, int shift, bool editOpen);

// The tool tip of a cell: its text when tips are on and the cell cuts it off, else none.
Text CellTipText(const ControlState& state, TextView text, bool cutOff);

}  // namespace qvx::grid
