#include "controls/grid/cell_step.h"

#include <algorithm>

#include "common/keys.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/find_keys.h"
#include "controls/grid/list_arrows.h"
#include "controls/grid/row_commands.h"
#include "controls/grid/row_operations.h"
#include "widgets/flexgrid/view.h"

namespace qvx::grid {
namespace {

bool TakesFocus(const flexgrid::Grid& grid, const ControlState& state, int col) {
    return grid.ColWidth(col) >= 1 && !IsListedColumn(grid, state.inActiveColumns, col);
}

// Returns the nearest column from `col` on, in direction `step`, that may be entered; -1 for none.
int EnterableFrom(const flexgrid::Grid& grid, const ControlState& state, int col, int step) {
    if (step > 0) col = std::max(col, grid.FixedCols());  // from a header to the first scrolling column
    for (; col >= grid.FixedCols() && col < grid.Cols(); col += step)
        if (MayEnter(grid, state, col)) return col;
    return -1;
}

// Returns the nearest row from `row` on that is shown; -1 for none.
int ShownRowFrom(const flexgrid::Grid& grid, int row, int step) {
    if (step > 0) row = std::max(row, grid.FixedRows());
    return flexgrid::NearestShown(flexgrid::RowAxis(grid, {}), row, step);
}

// There is nothing to be done to the cells of a row that the user does not see.
bool OnFilteredRow(const flexgrid::Grid& grid) { return grid.Row() < grid.Rows() && grid.RowFiltered(grid.Row()); }

// Whether moving past the last row adds another: not while the last one is still empty, or each Tab would add one.
bool AddsRow(const flexgrid::Grid& grid, const ControlState& state) {
    if (!state.autoAddNew || OnFilteredRow(grid)) return false;
    const int last = grid.Rows() - 1;
    return last < grid.FixedRows() || grid.RowFiltered(last) || !IsEmptyRecord(grid, state, last);
}

}  // namespace

int GetNextColumn(const flexgrid::Grid& grid, const ControlState& state, int& col) {
    if (col < 0 || !TakesFocus(grid, state, col)) col = grid.FixedCols();
    for (int candidate = col; candidate < grid.Cols(); ++candidate)
        if (TakesFocus(grid, state, candidate)) return candidate;
    return 0;
}

int GetActiveList(const flexgrid::Grid& grid, const ControlState& state) {
    return IsListedColumn(grid, state.listColumns, grid.Col()) ? grid.Col() : freeTextEditor;
}

bool MayEnter(const flexgrid::Grid& grid, const ControlState& state, int col) {
    return col >= grid.FixedCols() && col < grid.Cols() && TakesFocus(grid, state, col) &&
           !IsListedColumn(grid, state.nonFocusColumns, col);
}

CellStep StepForward(const flexgrid::Grid& grid, const ControlState& state, bool leave) {
    using Kind = CellStep::Kind;
    const CellStep end{leave ? Kind::Leave : Kind::Stay, -1, -1};
    const int next = OnFilteredRow(grid) ? -1 : EnterableFrom(grid, state, grid.Col() + 1, 1);
    if (next >= 0) return {Kind::Move, grid.Row(), next};
    const int first = EnterableFrom(grid, state, grid.FixedCols(), 1);
    if (first < 0) return end;
    const int row = ShownRowFrom(grid, grid.Row() + 1, 1);
    if (row >= 0) return {Kind::Move, row, first};
    return AddsRow(grid, state) ? CellStep{Kind::AddRow, grid.Rows(), first} : end;
}

CellStep StepBack(const flexgrid::Grid& grid, const ControlState& state) {
    using Kind = CellStep::Kind;
    const int previous = OnFilteredRow(grid) ? -1 : EnterableFrom(grid, state, grid.Col() - 1, -1);
    if (previous >= 0) return {Kind::Move, grid.Row(), previous};
    const int last = EnterableFrom(grid, state, grid.Cols() - 1, -1);
    const int row = ShownRowFrom(grid, grid.Row() - 1, -1);
    if (last < 0 || row < 0) return {Kind::Leave, -1, -1};
    return {Kind::Move, row, last};
}

CellStep StepSideways(const flexgrid::Grid& grid, const ControlState& state, int step) {
    const int from = step > 0 ? std::max(grid.Col() + 1, grid.FixedCols()) : grid.Col() - 1;
    for (int col = from; col >= grid.FixedCols() && col < grid.Cols(); col += step)
        if (grid.ColWidth(col) >= 1 && !IsListedColumn(grid, state.nonFocusColumns, col))
            return {CellStep::Kind::Move, grid.Row(), col};
    return {};
}

CellStep StepVertically(const flexgrid::Grid& grid, const ControlState& state, int step) {
    const int row = ShownRowFrom(grid, grid.Row() + step, step);
    if (row >= 0) return {CellStep::Kind::Move, row, grid.Col()};
    if (step > 0 && AddsRow(grid, state)) return {CellStep::Kind::AddRow, grid.Rows(), grid.Col()};
    return {};
}

namespace {

// Returns the command of the usual keys for selecting all, clipboard, undo and redo.
GridKey CommandOf(int keyCode, int shift) {
    if (shift == keys::shiftMask) {
        if (keyCode == keys::insert) return GridKey::Paste;
        return keyCode == keys::deleteKey ? GridKey::Cut : GridKey::PassOn;
    }
    if (shift == (keys::controlMask | keys::shiftMask)) return keyCode == 'Z' ? GridKey::Redo : GridKey::PassOn;
    if (shift != keys::controlMask) return GridKey::PassOn;
    switch (keyCode) {
        case 'A':
            return GridKey::SelectAll;
        case 'C':
        case keys::insert:
            return GridKey::Copy;
        case 'X':
            return GridKey::Cut;
        case 'V':
            return GridKey::Paste;
        case 'Y':
            return GridKey::Redo;
        case 'Z':
            return GridKey::Undo;
        default:
            return GridKey::PassOn;
    }
}

// Returns the command of the keys that spreadsheets have besides.
GridKey ExtendedCommandOf(int keyCode, int shift) {
    if (shift == keys::shiftMask && keyCode == keys::space) return GridKey::SelectRow;
    if (shift != keys::controlMask) return GridKey::PassOn;
    switch (keyCode) {
        case 'D':
            return GridKey::FillDown;
        case 'R':
            return GridKey::FillRight;
        case keys::space:
            return GridKey::SelectColumn;
        default:
            return GridKey::PassOn;
    }
}

GridKey CommandOf(int keyCode, int shift, const ControlState& state) {
    const GridKey command = CommandOf(keyCode, shift);
    if (command != GridKey::PassOn || !state.extendedKeys) return command;
    return ExtendedCommandOf(keyCode, shift);
}

// The meaning of Delete: the current cell or its row, as the selection says; with ExtendedKeys, the row only when all
// of it is selected, and otherwise all selected cells.
GridKey DeletionOf(const flexgrid::Grid& grid, const ControlState& state) {
    if (!state.extendedKeys) return SelectionIsRow(grid) ? GridKey::DeleteRow : GridKey::ClearCell;
    const flexgrid::CellRange range = grid.Selection();
    if (range.left == range.right && range.top == range.bottom) return GridKey::ClearCell;
    const bool whole = range.left <= grid.FixedCols() && range.right == grid.Cols() - 1;
    return whole && SelectionIsRow(grid) ? GridKey::DeleteRow : GridKey::ClearCells;
}

// Returns the meaning of a key on a row that is filtered out: its cells cannot be changed.
GridKey FilteredRowKey(int keyCode, GridKey command, const flexgrid::Grid& grid) {
    if (command == GridKey::Undo || command == GridKey::Redo || command == GridKey::SelectAll) return command;
    if (keyCode == keys::tab) return GridKey::Tab;
    const bool moves = keyCode == keys::up || keyCode == keys::down || keyCode == keys::pageUp ||
                       keyCode == keys::pageDown || keyCode == keys::home || keyCode == keys::end;
    const bool canMove = grid.FilteredRows() < grid.Rows() - grid.FixedRows();
    return moves && canMove ? GridKey::PassOn : GridKey::Nothing;
}

// Whether the current row lacks its key: Enter there ends the entry of rows.
bool RowLacksKey(const flexgrid::Grid& grid, const ControlState& state) {
    return grid.Row() < grid.Rows() && state.keyColumn >= 0 && grid.Cell(grid.Row(), state.keyColumn).Empty();
}

}  // namespace

GridKey DecideGridKey(int keyCode, int shift, const flexgrid::Grid& grid, const ControlState& state) {
    const GridKey command = CommandOf(keyCode, shift, state);
    if (OnFilteredRow(grid)) return FilteredRowKey(keyCode, command, grid);
    if (command != GridKey::PassOn) return command;
    if (OpensList(keyCode, shift, grid, state)) return GridKey::OpenEditor;
    if (MovesColumn(keyCode, shift, state))
        return keyCode == keys::left ? GridKey::MoveColumnLeft : GridKey::MoveColumnRight;
    const bool plain = shift == 0;
    switch (keyCode) {
        case keys::tab:
            return GridKey::Tab;
        case keys::enter:
            if (!plain || !state.autoTab) return GridKey::Nothing;
            return RowLacksKey(grid, state) ? GridKey::EndEntry : GridKey::ForwardStay;
        case keys::insert:
            return plain ? GridKey::InsertRow : GridKey::PassOn;
        case keys::deleteKey:
            if (!plain) return GridKey::PassOn;
            return DeletionOf(grid, state);
        case keys::down: {
            // The inner grid moves down as long as there is a row.
            const bool adds = plain && StepVertically(grid, state, 1).kind == CellStep::Kind::AddRow;
            return adds ? GridKey::DownToNewRow : GridKey::PassOn;
        }
        case keys::f2:
            return plain ? GridKey::OpenEditor : GridKey::PassOn;
        case keys::left:
            return plain ? GridKey::Left : GridKey::PassOn;
        case keys::right:
            return plain ? GridKey::Right : GridKey::PassOn;
        case keys::f8:
            return plain && state.markInvalid ? GridKey::NextInvalid : GridKey::PassOn;
        default:
            return GridKey::PassOn;
    }
}

std::optional<CellStep> StepOf(GridKey key, const flexgrid::Grid& grid, const ControlState& state) {
    switch (key) {
        case GridKey::ForwardStay:
            return StepForward(grid, state, false);
        case GridKey::Left:
            return StepSideways(grid, state, grid.RightToLeft() ? 1 : -1);
        case GridKey::Right:
            return StepSideways(grid, state, grid.RightToLeft() ? -1 : 1);
        case GridKey::DownToNewRow:
            return StepVertically(grid, state, 1);
        default:
            return std::nullopt;
    }
}

bool MovesColumn(int keyCode, int shift, const ControlState& state) {
    return state.moveColumns && shift == (keys::altMask | keys::shiftMask) &&
           (keyCode == keys::left || keyCode == keys::right);
}

bool MeansCurrentCell(const flexgrid::Hit& pressed, const flexgrid::Grid& grid) {
    return pressed.OnCell() && !pressed.OnFixed() && pressed.row == grid.Row() && pressed.col == grid.Col();
}

bool OpensEditor(char16_t character) {
    constexpr char16_t del = 0x7F;
    return character == keys::backspace || (character >= keys::space && character != del);
}

EditorKey DecideEditorKey(int keyCode, int shift, const Caret& caret, bool listColumn, const ControlState& state) {
    const bool plain = shift == 0;
    const bool alt = (shift & keys::altMask) != 0;
    switch (keyCode) {
        case keys::escape:
            return EditorKey::Abandon;
        case keys::enter:
            if (shift == keys::controlMask && state.extendedKeys) return EditorKey::CommitFill;
            return state.autoTab ? EditorKey::CommitForwardStay : EditorKey::Commit;
        case keys::left:
        case keys::right: {
            const bool left = keyCode == keys::left;
            const bool out = left != caret.rightToLeft ? caret.start == 0 : caret.start >= caret.textLength;
            if (!plain || caret.length != 0 || !out) return EditorKey::PassOn;
            return left ? EditorKey::CommitLeft : EditorKey::CommitRight;
        }
        case keys::up:
        case keys::down:
            if (listColumn) return EditorKey::PassOn;
            // The free-text combo's empty list must not drop down.
            if (alt) return EditorKey::Nothing;
            return keyCode == keys::up ? EditorKey::CommitUp : EditorKey::CommitDown;
        case keys::pageUp:
        case keys::pageDown:
            return listColumn || !plain ? EditorKey::PassOn : EditorKey::CommitPage;
        case keys::f4:
            return listColumn || alt ? EditorKey::PassOn : EditorKey::Nothing;
        default:
            return EditorKey::PassOn;
    }
}

std::optional<CellStep> StepOf(EditorKey key, const flexgrid::Grid& grid, const ControlState& state) {
    switch (key) {
        case EditorKey::CommitForwardStay:
            return StepOf(GridKey::ForwardStay, grid, state);
        case EditorKey::CommitLeft:
            return StepOf(GridKey::Left, grid, state);
        case EditorKey::CommitRight:
            return StepOf(GridKey::Right, grid, state);
        case EditorKey::CommitUp:
            return StepVertically(grid, state, -1);
        case EditorKey::CommitDown:
            return StepVertically(grid, state, 1);
        default:
            return std::nullopt;
    }
}

bool BringsEditorBack(int keyCode) {
    return keyCode != keys::shift && keyCode != keys::control && keyCode != keys::alt;
}

bool IsEditorCommand(int keyCode, int shift) {
    if ((shift & keys::altMask) != 0) return true;
    switch (keyCode) {
        case 'A':
        case 'C':
        case 'V':
        case 'X':
        case 'Y':
        case 'Z':
        case keys::insert:
        case keys::deleteKey:
        case keys::backspace:
            return true;
        default:
            return false;
    }
}

bool KeepsKey(int keyCode, int shift, const ControlState& state) {
    if (DecideFindKey(keyCode, shift, state) != FindAction::None) return true;
    const bool editOpen = EditIsOpen(state);
    switch (keyCode) {
        case keys::escape:
        case keys::f4:
            return editOpen;
        case keys::enter:
            return editOpen || shift == 0;
        case keys::f2:
            return shift == 0;
        case keys::f8:
            return shift == 0 && !editOpen && state.markInvalid;
        case keys::left:
        case keys::right:
        case keys::up:
        case keys::down:
        case keys::home:
        case keys::end:
        case keys::pageUp:
        case keys::pageDown:
            return true;
        default:
            // Keys with Ctrl belong to the host's menus, except for the clipboard, undo and redo, and the other
            // commands of an editor. Function keys belong to the host.
            if ((shift & keys::controlMask) != 0)
                return editOpen ? IsEditorCommand(keyCode, shift) : CommandOf(keyCode, shift, state) != GridKey::PassOn;
            return keyCode < keys::f1 || keyCode > keys::f24;
    }
}

Text CellTipText(const ControlState& state, TextView text, bool cutOff) {
    return state.cellToolTip && cutOff ? Text(text) : Text();
}

}  // namespace qvx::grid
