// A grid for data entry in a window of a control: the inner grid and the editor over its cells, driven by the rules.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "com/pointer.h"
#include "common/text.h"
#include "controls/grid/binding.h"
#include "controls/grid/cell_edit.h"
#include "controls/grid/cell_step.h"
#include "controls/grid/control_state.h"
#include "controls/grid/edit_history.h"
#include "controls/grid/editor_frame_window.h"
#include "controls/grid/paste.h"
#include "controls/grid/projection.h"
#include "controls/grid/tab_way.h"
#include "dialogs/messages.h"
#include "widgets/flexgrid/flexgrid_object.h"
#include "widgets/flexgrid/flexgrid_window.h"
#include "widgets/flexgrid/grid_event_source_object.h"

namespace qvx::grid {

// What the control around the grid passes on to its host: the inner grid's own events, before the grid for data entry
// acts on them, and those of data entry. A handler may do anything, short of destroying the EntryGrid.
class EntryGridEvents : public flexgrid::GridEventSource {
  public:
    virtual void BeforeCellChange(int row, int col, const Text& data, bool& cancel) = 0;
    virtual void AfterCellChange(int row, int col, const Text& oldData, const Text& newData, bool& cancel) = 0;
    virtual void OnError(int number, TextView description, bool& response) = 0;
    virtual void ListChange(int row, int col, const Text& data) = 0;
    virtual void ListClick(int row, int col, const Text& data) = 0;
    virtual void OnDelete(int row) = 0;
    // Whether anybody hears of all this.
    virtual bool Listens() = 0;
    // Whether anybody may, of the inner grid's own events as well.
    virtual bool RaisesEvents() = 0;
    // Loaded records, and how many there are in all (-1: not known).
    virtual void BindProgress(long loaded, long total, bool& cancel) = 0;
    virtual void ReportError(int number, TextView description) = 0;
    // A message to the user under the form's caption; true for OK and Yes.
    virtual bool Say(TextView prompt, const dialogs::MessageKind& kind) = 0;
    // The keyboard focus goes to that window (null: elsewhere).
    virtual void FocusMovesTo(HWND moving) = 0;
    // Asks the host to move the focus on to the next or the previous control; false when it does not.
    virtual bool MoveFocusOn(bool backwards) = 0;
    // The control's window, made when it is not there yet.
    virtual HWND ControlWindow() = 0;
    // What the grid is called for those who cannot see it.
    virtual Text AccessibleName() = 0;
    // Keeps the control and so the EntryGrid alive while a message is handled.
    virtual ComPtr<IUnknown> KeepAlive() = 0;
};

class EntryGrid final : private flexgrid::GridListener, private flexgrid::GridWindowEvents, private ComboListener {
  public:
    explicit EntryGrid(EntryGridEvents& events);
    ~EntryGrid() override;
    EntryGrid(const EntryGrid&) = delete;
    EntryGrid& operator=(const EntryGrid&) = delete;

    ControlState& State() { return state_; }
    flexgrid::FlexGridWindow& GridWindow() { return *window_; }
    flexgrid::Grid& Model() { return window_->Model(); }
    // With a reference for the caller.
    IDispatch* GridObject() { return automation_->Get(); }
    // The pick list of a column, with a reference for the caller: error 9 when it is none, 340 when it was not loaded.
    IDispatch* Lists(int col);

    // Makes the inner windows in the control's. They go with it, or before it when it is used otherwise.
    void AttachTo(HWND control);
    // An open edit is ended first.
    void Detach();
    // Where the keyboard focus belongs: the open editor, else the inner grid.
    HWND FocusWindow() const;
    void Resize(Size pixels);
    // The preparation at the first show in run mode. An error is reported.
    void Show(bool userMode);
    void Terminate();

    // Ends an edit that is open: before the current cell moves, and before the window goes.
    void CommitOpenEdit();
    // Row changes by the host, which move the cursor without leaving the cell under edit.
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
    }

    void RemoveAllRecords();
    // Replaces the data rows by the records, one row each, while the inner grid is out of sight; without any record one
    // empty row is left. Errors come out, with the rows so far.
    void Bind(RecordSource& records);

    // While an edit is open these are its editor's; else they work on the grid, and events tell the host. The clipboard
    // raises clipboardUnavailable. Without anything to do nothing happens.
    void Undo() { StepInHistory(true); }
    void Redo() { StepInHistory(false); }
    bool CanUndo() const;
    bool CanRedo() const { return !EditIsOpen() && history_.CanRedo(); }
    void Copy();
    void Cut();
    void Paste();

    // Whether a key message that a host is about to use is the grid's. A Tab that leaves the grid is not.
    bool WantsKey(const MSG& message);

  private:
    class Editor;
    class AccessibleEditing;
    struct TabWindows;

    // GridListener
    void CellsMove() noexcept override { projection_.Hold(); }
    void CellsMoved() noexcept override { projection_.Release(); }
    void LeaveCell() override;
    void EnterCell() override;
    void RowColChange() override { events_.RowColChange(); }
    void SelChange() override { events_.SelChange(); }
    void Invalidated(flexgrid::GridChange change, const flexgrid::CellRange& range) override {
        events_.Invalidated(change, range);
    }
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
    Text ToolTip(int row, int col) override;
    // ComboListener
    void ComboChange(ComboWindow& combo) override;
    void ComboClick(ComboWindow& combo) override;
    void ComboKeyDown(ComboWindow& combo, int& keyCode, int shift) override;
    void ComboWheel(ComboWindow& combo, UINT message, WPARAM wParam, LPARAM lParam) override;
    void ComboGotFocus(ComboWindow& combo) override;
    void ComboLostFocus(ComboWindow& combo) override;

    bool EditIsOpen() const { return grid::EditIsOpen(state_); }
    EditorFrame& Frame();
    // The editor for the current column: its own, when it is a list column whose list was loaded, else the free-text
    // one.
    int EditorIndex();
    // True when the editor is open now.
    bool OpenEditor();
    void ApplyCellFormat(ComboWindow& combo);
    std::unique_ptr<flexgrid::AccessibleHost> MakeAccessible();
    void Commit();
    // Commits, gives the focus back to the inner grid, and tells whether the current cell is where it was before.
    bool EndEdit();
    void Abandon(ComboWindow& combo);
    void Go(const CellStep& step);
    void GoByTab(const PressedKey& tab);
    void LeaveGrid(const PressedKey& tab);
    bool HasFocus() const;
    void PlaceOverCell();
    void BringEditorIntoView();
    static void LoadList(EditorFrame& frame, int col);
    void UseEditorKey(EditorKey action, ComboWindow& combo, int& keyCode);
    void UseGridKey(GridKey action, const PressedKey& press);
    // Opens the editor with what was typed in place of the cell's text.
    void TypeIntoCell(TextView typed);
    void DeleteSelectedRow();
    void NotifyRowsChanged();
    void UseClipboardKey(GridKey action);
    void StepInHistory(bool back);
    // The edit field of the open edit; null when none is open.
    HWND OpenEditField() const;
    void WriteCells(const CellRectangle& rectangle);
    // A change whose rows the history keeps: without the current cell's look, which would come back with them.
    template <class Change>
    void ChangeKeptRows(Change change) {
        const Projection::Held held(projection_);
        ChangeRows(change);
    }
    bool GoOnBinding(std::int64_t loaded, std::int64_t total, ProgressClock& clock);

    EntryGridEvents& events_;
    ControlState state_;
    std::unique_ptr<flexgrid::FlexGridWindow> window_;
    Projection projection_;
    EditHistory history_;
    std::unique_ptr<flexgrid::AccessibleHost> accessible_;
    std::unique_ptr<flexgrid::GridAutomation> automation_;
    std::unique_ptr<EditorFrame> frame_;
    // Frames whose windows went with a control's window that the host destroyed; somebody may still be using them.
    std::vector<std::unique_ptr<EditorFrame>> retired_;
    // The looks that combos were given; what the host has changed since is its own.
    struct CellFormat {
        FontSpec font;
        OleColor back = colors::windowBackground;
        OleColor fore = colors::windowText;
    };
    std::map<int, CellFormat> cellFormats_;
    int editor_ = -1;  // the combo of the edit that is open
    bool changingRows_ = false;
    int bindings_ = 0;            // counts Bind, so that the one asked for last ends those around it
    bool dropCharacter_ = false;  // the host has refused the key that this character comes from
    TabWay tabWay_;
};

}  // namespace qvx::grid
