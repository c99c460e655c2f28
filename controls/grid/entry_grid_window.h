// A grid for data entry in a window of a control: the inner grid and the editor over its cells, controlled by the
// rules.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "com/pointer.h"
#include "common/text.h"
#include "controls/grid/apply_changes.h"
#include "controls/grid/binding.h"
#include "controls/grid/cell_edit.h"
#include "controls/grid/cell_search.h"
#include "controls/grid/cell_step.h"
#include "controls/grid/column_sort.h"
#include "controls/grid/column_totals.h"
#include "controls/grid/context_menu.h"
#include "controls/grid/control_state.h"
#include "controls/grid/edit_history.h"
#include "controls/grid/editor_frame_window.h"
#include "controls/grid/entry_marks.h"
#include "controls/grid/invalid_marks.h"
#include "controls/grid/paste.h"
#include "controls/grid/projection.h"
#include "controls/grid/replace_cells.h"
#include "controls/grid/row_states.h"
#include "controls/grid/tab_way.h"
#include "controls/grid/table_export.h"
#include "dialogs/messages.h"
#include "widgets/flexgrid/flexgrid_object.h"
#include "widgets/flexgrid/flexgrid_window.h"
#include "widgets/flexgrid/grid_event_source_object.h"

namespace qvx::grid {

class PageTarget;

// The events that the control around the grid passes on to its host: the inner grid's own, before the grid for data
// entry acts on them, and those of data entry. A handler may do anything except destroy the EntryGrid.
class EntryGridEvents : public flexgrid::GridEventSource {
  public:
    virtual void BeforeCellChange(int row, int col, const Text& data, bool& cancel) = 0;
    virtual void AfterCellChange(int row, int col, const Text& oldData, const Text& newData, bool& cancel) = 0;
    virtual void OnError(int number, TextView description, bool& response) = 0;
    virtual void ListChange(int row, int col, const Text& data) = 0;
    virtual void ListClick(int row, int col, const Text& data) = 0;
    virtual void OnDelete(int row) = 0;
    // Whether the events of data entry reach any listener.
    virtual bool Listens() = 0;
    // Asks about cells of ValidateColumns; empty if no one listens.
    virtual AskHost HostCheck() = 0;
    // Whether events may be raised now, including the inner grid's own.
    virtual bool RaisesEvents() = 0;
    // The user is about to sort by these columns, or has done so.
    virtual void BeforeSort(const Text& columns, bool& cancel) = 0;
    // The user is about to move a column to the place of another one, or has done so.
    virtual void ColumnMoving(int col, int position, bool& cancel) = 0;
    virtual void ColumnMoved(int col, int position) = 0;
    // Columns have other numbers now.
    virtual void ColumnsMoved() = 0;
    virtual void BeforeMenu(int row, int col, Text& items, bool& cancel) = 0;
    virtual void MenuCommandChosen(const Text& key, int col) = 0;
    virtual void Sorted(const Text& columns) = 0;
    // The user has changed the filter; reports the number of rows that are shown and of all.
    virtual void Filtered(long shown, long total) = 0;
    // Reports the number of loaded records and their total (-1: not known).
    virtual void BindProgress(long loaded, long total, bool& cancel) = 0;
    // Reports the number of written rows and their total.
    virtual void ExportProgress(long done, long total, bool& cancel) = 0;
    // Reports that a page is about to be printed, counted from 1.
    virtual void PrintProgress(long page, long pages, bool& cancel) = 0;
    // Reports what an import could not take as it was.
    virtual void ImportReport(long line, const Text& column, const Text& text, TextView reason) = 0;
    // Reports a record that no longer is what a row was loaded from.
    virtual void ApplyConflict(const RecordConflict& conflict, bool& overwrite, bool& cancel) = 0;
    // Shows an error to the user.
    virtual void ReportError(int number, TextView description) = 0;
    // Shows a message to the user, titled with the form's caption; true for OK and Yes.
    virtual bool Say(TextView prompt, const dialogs::MessageKind& kind) = 0;
    // Reports that the keyboard focus moves to that window (null: elsewhere).
    virtual void FocusMovesTo(HWND moving) = 0;
    // Asks the host to move the focus to the next or the previous control; false when it does not.
    virtual bool MoveFocusOn(bool backwards) = 0;
    // Returns the control's window and creates it if needed.
    virtual HWND ControlWindow() = 0;
    // Returns the name of the grid for assistive programs.
    virtual Text AccessibleName() = 0;
    // Keeps the control, and with it the EntryGrid, alive while a message is handled.
    virtual ComPtr<IUnknown> KeepAlive() = 0;
};

class EntryGrid final : private flexgrid::GridListener,
                        private flexgrid::GridWindowEvents,
                        private flexgrid::CellButtons,
                        private ComboListener {
  public:
    explicit EntryGrid(EntryGridEvents& events);
    ~EntryGrid() override;
    EntryGrid(const EntryGrid&) = delete;
    EntryGrid& operator=(const EntryGrid&) = delete;

    ControlState& State() { return state_; }
    flexgrid::FlexGridWindow& GridWindow() { return *window_; }
    flexgrid::Grid& Model() { return window_->Model(); }
    // Returns the inner grid's object, with a reference for the caller.
    IDispatch* GridObject() { return automation_->Get(); }
    // Returns the pick list of a column, with a reference for the caller. Throws error 9 if the column is not a list
    // column, 340 if its list was not loaded.
    IDispatch* Lists(int col);

    // Creates the inner windows in the control's window. They are destroyed with it, or before it by Detach.
    void AttachTo(HWND control);
    // Ends an open edit and destroys the inner windows.
    void Detach();
    // Returns the window for the keyboard focus: the open editor, else the inner grid.
    HWND FocusWindow() const;
    // Resizes the inner grid, in pixels.
    void Resize(Size pixels);
    // Does the preparation at the first show in run mode. An error is reported.
    void Show(bool userMode);
    // Unloads the pick lists at the end of the control.
    void Terminate();

    // Ends an open edit: before the current cell moves, and before the window is destroyed.
    void CommitOpenEdit();
    // Executes a change of rows, which moves the cursor without ending an open edit.
    template <class Change>
    void ChangeRows(Change change) {
        const bool before = std::exchange(changingRows_, true);
        try {
            change();
        } catch (...) {
            changingRows_ = before;
            throw;
        }
        changingRows_ = before;
        if (!before) LeaveFilteredRow();
    }

    // Ends an open edit and leaves one empty data row, in a grid that counts as unchanged.
    void RemoveAllRecords();
    // Replaces the data rows with the records, one row for each, while the inner grid is hidden; without any record one
    // empty row remains. Errors are passed on and leave the rows loaded so far.
    void Bind(RecordSource& records);
    // Adds a row for each of the records after the existing rows, or instead of the only one if that is empty, and
    // numbers them as the next ones.
    void Append(RecordSource& records);

    // While an edit is open these work on its editor; otherwise they work on the grid, and events notify the host. The
    // clipboard functions throw clipboardUnavailable. Without anything to do nothing happens.
    void Undo() { StepInHistory(true); }
    void Redo() { StepInHistory(false); }
    bool CanUndo() const;
    bool CanRedo() const { return !EditIsOpen() && history_.CanRedo(); }
    void Copy();
    void Cut();
    void Paste();

    // Ends an open edit and sorts the rows by a coded list of columns. Throws error 380 for a list that cannot be read.
    void Sort(TextView columns);
    Text SortedBy() const { return SortColumnsText(window_->Model(), window_->Model().SortMarks()); }

    // Whether the user can search by keys and a bar.
    bool MarkInvalid() const { return state_.markInvalid; }
    void SetMarkInvalid(bool marks) {
        state_.markInvalid = marks;
        RefreshMarks();
    }
    // Draws the marks anew after a change of the rules, or of whether they are shown. Hosts are asked again.
    void RefreshMarks() {
        marks_.Forget();
        window_->ShowMarks(entryMarks_.Any() ? &entryMarks_ : nullptr);
    }

    // Whether rows know what they were before they were changed.
    bool TrackRows() const { return states_.On(); }
    void SetTrackRows(bool tracks);
    bool MarkChanged() const { return state_.markChanged; }
    void SetMarkChanged(bool marks) {
        state_.markChanged = marks;
        RefreshMarks();
    }
    const RowStates& States() const { return states_; }
    // Ends an open edit and makes all rows unchanged.
    void AcceptChanges();
    // Throws error 5 without TrackRows.
    void CheckTracked() const;
    // Ends an open edit and writes the rows that have changed (ApplyChanges).
    int Apply(RecordTarget& target, TextView keyFields);

    // The user's order and widths of columns, and what the rows are sorted by (user_layout.h). The setter ends an open
    // edit. Throws error 380 for a text that is no layout.
    Text UserLayout() const;
    void SetUserLayout(TextView text);

    // Gives a column another caption, with which it keeps its settings (column_settings.h).
    void RenameColumn(int col, TextView caption);
    // Hides the columns with the caption of this one, or gives them the widths that they had before.
    void ShowColumn(int col, bool shown);

    const Text& ColumnFormats() const { return state_.columnFormats; }
    // Throws error 380 for a list that cannot be read.
    void SetColumnFormats(TextView formats);

    const Text& Footer() const { return state_.footer; }
    void SetFooter(TextView columns);
    // Returns what the footer shows below a column. Throws 30010.
    Text FooterText(int col);

    bool FindBar() const { return state_.findBar; }
    void SetFindBar(bool shown);
    // These end an open edit. Find moves to the next hit, or to the previous one, and returns false where there is
    // none; ReplaceAll returns the number of cells that have got another text. The options' column and locale are set
    // by the grid.
    bool Find(TextView text, const SearchOptions& options, bool inColumn, bool forward);
    long ReplaceAll(TextView text, TextView with, const SearchOptions& options, bool inColumn);
    long FindCount(TextView text, const SearchOptions& options, bool inColumn);

    // Whether the user can filter by fields above the columns.
    bool FilterRow() const { return state_.filterRow; }
    void SetFilterRow(bool shown);
    // The conditions of the filter as a list (row_filter.h). Setting it ends an open edit; throws error 380 for a list
    // that cannot be read.
    Text Filter() const;
    void SetFilter(TextView list);
    // Applies the conditions to the rows as they are now.
    void RefilterRows();
    // Forgets the conditions and shows all rows.
    void ClearFilter() noexcept;

    // Writes the cells that are shown, or the selected ones among them, into a file. The options' code page and date
    // settings are the system's. An error and a cancelled export leave an existing file as it was.
    void Export(const Text& fileName, ExportOptions options, bool selectedOnly);
    // Adds the rows of a CSV file and returns their number.
    int Import(const Text& fileName, char16_t separator, TextView encoding, bool hasHeader);

    // Draws the pages on a target and returns their number; 0 when the host or the user has cancelled.
    int PrintPages(PageTarget& target, const Text& title, bool fitToWidth);
    // Shows the pages to the user and returns whether to print them.
    bool PreviewPages(HWND owner, const Text& title, bool fitToWidth);

    grid::ListArrows ListArrows() const { return state_.listArrows; }
    void SetListArrows(grid::ListArrows arrows);
    grid::ListMatch ListMatch() const { return state_.listMatch; }
    void SetListMatch(grid::ListMatch match);
    // Whether the program has been left with an open edit that stays open (KeepEditing).
    bool KeptOpen() const { return away_ && EditIsOpen(); }

    // Whether a key message that a host is about to use is meant for the grid. A Tab that leaves the grid is not.
    bool WantsKey(const MSG& message);

  private:
    class Editor;
    class AccessibleEditing;
    class Finder;
    class Filterer;
    struct TabWindows;

    // GridListener
    void CellsMove() noexcept override { projection_.Hold(); }
    void CellsMoved() noexcept override { projection_.Release(); }
    void LeaveCell() override;
    void EnterCell() override;
    void RowColChange() override;
    void SelChange() override { events_.SelChange(); }
    void Invalidated(flexgrid::GridChange change, const flexgrid::CellRange& range) override;
    // GridWindowEvents
    std::shared_ptr<void> Hold() override;
    void Click() override { events_.Click(); }
    void DblClick() override;
    void KeyDown(short& keyCode, short& shift) override;
    void KeyPress(short& keyAscii) override;
    void KeyUp(short& keyCode, short shift) override { events_.KeyUp(keyCode, shift); }
    void MouseDown(short button, short shift, float x, float y) override;
    void MouseMove(short button, short shift, float x, float y) override { events_.MouseMove(button, shift, x, y); }
    void MouseUp(short button, short shift, float x, float y) override { events_.MouseUp(button, shift, x, y); }
    void Scroll() override;
    void GotFocus() override;
    void LostFocus() override;
    void MarksWait() override;
    Text ToolTip(int row, int col) override;
    bool ContextMenu(const flexgrid::Hit& cell, int x, int y) override;
    bool HandlesHeaderClick(int) override { return state_.sortOnHeader && Model().Enabled(); }
    void HeaderClick(int col, bool shift) override;
    bool MovesColumns() override { return state_.moveColumns && Model().Enabled(); }
    void ColumnDropped(int col, int position) override;
    void ButtonClick(int row, int col) override;
    bool FitsColumns() override { return state_.fitColumns && Model().Enabled(); }
    // CellButtons
    bool HasButton(int row, int col, bool current) const override;
    bool Themed() const override;
    // ComboListener
    void ComboChange(ComboWindow& combo) override;
    void ComboClick(ComboWindow& combo) override;
    void ComboPicked(ComboWindow& combo) override;
    void ComboKeyDown(ComboWindow& combo, int& keyCode, int shift) override;
    void ComboWheel(ComboWindow& combo, UINT message, WPARAM wParam, LPARAM lParam) override;
    void ComboGotFocus(ComboWindow& combo) override;
    void ComboLostFocus(ComboWindow& combo) override;

    bool EditIsOpen() const { return grid::EditIsOpen(state_); }
    // The program was left with an edit open, and is watched until the user returns.
    void LeaveProgram(ComboWindow& combo);
    void LookForReturn();
    void EndAbsence();
    EditorFrame& Frame();
    // Returns the editor for the current column: its own if it is a list column whose list was loaded, else the
    // free-text one.
    int EditorIndex();
    // Returns whether the editor is now open.
    bool OpenEditor();
    void ApplyCellFormat(ComboWindow& combo);
    std::unique_ptr<flexgrid::AccessibleHost> MakeAccessible();
    void Commit();
    // Commits, returns the focus to the inner grid, and returns whether the current cell is the same as before.
    bool EndEdit();
    void Abandon(ComboWindow& combo);
    void Go(const CellStep& step);
    void GoByTab(const PressedKey& tab);
    void LeaveGrid(const PressedKey& tab);
    // Executes what the user has asked for. An error is reported to the user.
    template <class Body>
    void Reporting(Body body) {
        const auto keep = events_.KeepAlive();
        try {
            body();
        } catch (...) {
            const RunTimeError error = CurrentError();
            events_.ReportError(error.Number(), error.Description());
        }
    }
    // What happens in a bar or strip of the control: the wheel turns in the grid, and the host learns of the focus.
    void TurnWheel(UINT message, WPARAM wParam, LPARAM lParam);
    void NotifyFocus();
    bool HasFocus() const;
    void PlaceOverCell();
    void BringEditorIntoView();
    static void LoadList(EditorFrame& frame, int col);
    void UseEditorKey(EditorKey action, ComboWindow& combo, int& keyCode);
    void CommitIntoSelection(TextView typed);
    void UseGridKey(GridKey action, const PressedKey& press);
    // Opens the editor with the typed text instead of the cell's text.
    void TypeIntoCell(TextView typed);
    void DeleteSelectedRow();
    void NotifyRowsChanged();
    // Moves from a row that is filtered out to the nearest one that is shown.
    void LeaveFilteredRow() noexcept;
    void UseClipboardKey(GridKey action);
    void StepInHistory(bool back);
    // Returns the edit field of the open edit; null when none is open.
    HWND OpenEditField() const;
    // Returns false when the user has ended it.
    bool SortBy(const SortColumns& columns);
    // Does the same when the user asks for it, and raises its events.
    void SortByUser(const SortColumns& columns);
    // Moves a column for the user, and raises its events.
    void MoveColumnByUser(int col, int position);
    void MoveCurrentColumn(bool right);
    // Does for the windows what FollowColumn does for the rules.
    void FollowMovedColumn(int from, int to);
    void RenumberEditors(int from, int to);
    // Whether the menu offers a command. `col` is the column that was clicked.
    bool MayChoose(MenuCommand command, int col);
    void UseMenu(MenuCommand command, const Text& key, int col);
    void WriteCells(const CellRectangle& rectangle);
    Finder& Finding();
    Filterer& Filtering();
    // Places the inner grid, the find bar and the filter row in the control.
    void LayOut();
    void GoToHit(CellPlace place);
    CellSearch SearchFor(TextView text, SearchOptions options, bool inColumn);
    Replacements ReplaceHits(const CellSearch& search, TextView with, std::optional<CellPlace> only);
    CellSources SourcesForCells() const;
    const flexgrid::CellFooter* PrintedFooter() const { return state_.footer.empty() ? nullptr : &totals_; }
    // Paints the thread's windows without processing input.
    static void AnswerPaints();
    // Executes a change whose rows the history keeps: without the current cell's highlight, which would be restored
    // with them.
    template <class Change>
    void ChangeKeptRows(Change change) {
        const Projection::Held held(projection_);
        ChangeRows(change);
    }
    // Adds rows for the records while `wanted`, in a hidden grid.
    void Load(const FieldMap& map, RecordSource& records, std::int64_t total, const std::function<bool()>& wanted);
    bool GoOnBinding(std::int64_t loaded, std::int64_t total, ProgressClock& clock);

    EntryGridEvents& events_;
    ControlState state_;
    std::unique_ptr<flexgrid::FlexGridWindow> window_;
    InvalidMarks marks_;
    CellFormats formats_;
    ColumnTotals totals_;
    RowStates states_;
    EntryMarks entryMarks_;
    Projection projection_;
    EditHistory history_;
    std::unique_ptr<flexgrid::AccessibleHost> accessible_;
    std::unique_ptr<flexgrid::GridAutomation> automation_;
    std::unique_ptr<EditorFrame> frame_;
    // Frames whose windows were destroyed with a control's window by the host; they may still be in use.
    std::vector<std::unique_ptr<EditorFrame>> retired_;
    // The formats that combos were given; what the host has changed since is kept.
    struct CellFormat {
        FontSpec font;
        OleColor back = colors::windowBackground;
        OleColor fore = colors::windowText;
    };
    std::map<int, CellFormat> cellFormats_;
    int editor_ = -1;  // the combo of the edit that is open
    bool changingRows_ = false;
    int bindings_ = 0;            // counts the calls of Bind, so that the last one ends those around it
    bool away_ = false;           // the user is in another program, and the edit stays open
    bool dropCharacter_ = false;  // the host has refused the key that produces this character
    TabWay tabWay_;
    std::unique_ptr<Finder> finder_;      // once the user has searched
    std::unique_ptr<Filterer> filterer_;  // once there was a filter or fields for it
    int gridTop_ = 0;                     // of the inner grid in the control, in pixels
};

}  // namespace qvx::grid
