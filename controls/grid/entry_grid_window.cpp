#include "controls/grid/entry_grid_window.h"

#include "common/keys.h"
#include "common/locale.h"
#include "common/text_direction.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/entry_grid_filter_window.h"
#include "controls/grid/entry_grid_finder_window.h"
#include "controls/grid/lifecycle.h"
#include "controls/grid/row_operations.h"
#include "win/dpi.h"
#include "win/focus_memory.h"
#include "win/send_key.h"

namespace qvx::grid {

// The frame and one of its combos, in the form that the rules of an edit use.
class EntryGrid::Editor {
  public:
    Editor(EntryGrid& owner, EditorFrame& frame, ComboWindow& combo) : owner_(owner), frame_(frame), combo_(combo) {}

    CellBox Cell() {
        const Rect cell = owner_.window_->CellTwips();
        return {cell.left, cell.top, cell.Width(), cell.Height()};
    }
    void MoveFrame(const EditorPlacement& placement) {
        frame_.MoveTo(FramePixels(placement).Offset(0, owner_.gridTop_));
    }
    void MoveCombo(const EditorPlacement& placement) {
        const Dpi dpi = Resolution();
        owner_.ApplyCellFormat(combo_);
        combo_.Place({TwipsToPixels(placement.comboLeft, dpi.x), TwipsToPixels(placement.comboTop, dpi.y)},
                     TwipsToPixels(placement.comboWidth, dpi.x), FramePixels(placement).Height());
    }
    void BringComboToFront() { combo_.BringToFront(); }
    void SetComboMaxLength(int length) { combo_.SetMaxLength(length); }
    void SetComboText(TextView text) { combo_.SetText(text); }
    Text ComboText() const { return combo_.GetText(); }
    void SetComboTag(TextView text) { combo_.SetTag(text); }
    Text ComboTag() const { return combo_.Tag(); }
    void ShowFrame(bool shown) { frame_.Show(shown); }
    void SetFrameTag(TextView text) { frame_.SetTag(text); }
    Text FrameTag() const { return frame_.Tag(); }
    void DropDown() { combo_.DropDown(); }
    void FocusCombo() {
        combo_.Focus();
        // The frame is painted immediately, so that the cell does not look empty in between.
        frame_.Paint();
    }
    ListState List() const {
        return {combo_.ListCount(), [this](int position) { return combo_.ShownEntry(position); }, combo_.ShownChoice(),
                combo_.ShownTop()};
    }
    DateSettings DateSettingsNow() const { return SystemDateSettings(); }
    int ScrollBarPixels() const { return GetSystemMetrics(SM_CXVSCROLL); }
    int TwipsPerPixelX() const { return TwipsPerPixel(Resolution().x); }

  private:
    Dpi Resolution() const { return owner_.window_->Model().Metrics().Resolution(); }
    Rect FramePixels(const EditorPlacement& placement) const {
        const Dpi dpi = Resolution();
        const CellBox& box = placement.frame;
        return {TwipsToPixels(box.left, dpi.x), TwipsToPixels(box.top, dpi.y),
                TwipsToPixels(box.left + box.width, dpi.x), TwipsToPixels(box.top + box.height, dpi.y)};
    }

    EntryGrid& owner_;
    EditorFrame& frame_;
    ComboWindow& combo_;
};

EntryGrid::EntryGrid(EntryGridEvents& events)
    : events_(events),
      window_(std::make_unique<flexgrid::FlexGridWindow>()),
      marks_(window_->Model(), state_),
      formats_(window_->Model(), state_),
      totals_(window_->Model(), state_, formats_),
      states_(window_->Model(), state_),
      entryMarks_(marks_, states_, state_),
      projection_(window_->Model(), state_),
      history_(window_->Model()) {
    accessible_ = MakeAccessible();
    automation_ = std::make_unique<flexgrid::GridAutomation>(*window_, [this] { return events_.RaisesEvents(); });
    window_->AddEvents(this);
    window_->Model().AddListener(this);
}

EntryGrid::~EntryGrid() {
    window_->ShowFooter(nullptr);
    window_->Model().ShowTexts(nullptr);
    window_->Accessibility().SetHost(nullptr);
    window_->Model().RemoveListener(this);
    window_->RemoveEvents(this);
}

IDispatch* EntryGrid::Lists(int col) {
    const flexgrid::Grid& grid = Model();
    const std::int64_t cells = static_cast<std::int64_t>(grid.Rows()) * grid.Cols();
    if (col < 0 || col >= cells || !IsListedColumn(grid, state_.listColumns, col))
        throw RunTimeError(errors::subscriptOutOfRange, u"Not a valid ListColum Index.");
    return Frame().ObjectOf(col);
}

void EntryGrid::AttachTo(HWND control) {
    if (frame_ && !frame_->Handle()) retired_.push_back(std::move(frame_));
    if (!window_->Handle()) {
        RECT client{};
        GetClientRect(control, &client);
        window_->CreateIn(control, FromRECT(client));
        if (state_.filterRow) Filtering().ShowStrip(control);
    }
}

void EntryGrid::Detach() {
    CommitOpenEdit();
    if (frame_) frame_->Destroy();
    if (finder_) finder_->Detach();
    if (filterer_) filterer_->Detach();
    window_->Destroy();
}

HWND EntryGrid::FocusWindow() const {
    if (EditIsOpen() && frame_ && frame_->Shown())
        if (const ComboWindow* combo = frame_->Find(editor_)) return combo->EditWindow();
    return window_->Handle();
}

void EntryGrid::Resize(Size pixels) {
    const int bar = finder_ ? finder_->Place(pixels) : 0;
    gridTop_ = filterer_ ? filterer_->Place(pixels) : 0;
    window_->MoveTo({0, gridTop_, pixels.width, std::max(pixels.height - bar, gridTop_)});
    window_->PrepareBars();
}

EditorFrame& EntryGrid::Frame() {
    // Creating the control's window retires an old frame.
    const HWND control = events_.ControlWindow();
    if (frame_ && frame_->Handle()) return *frame_;
    frame_ = std::make_unique<EditorFrame>(static_cast<ComboListener&>(*this));
    frame_->CreateIn(control);
    frame_->Load(freeTextEditor);
    cellFormats_.clear();
    // In a new window the list columns are still list columns; their entries were lost with the combos of the old one.
    if (!retired_.empty())
        for (const int col : retired_.back()->Loaded())
            if (col != freeTextEditor) LoadList(*frame_, col);
    return *frame_;
}

void EntryGrid::LoadList(EditorFrame& frame, int col) {
    frame.Load(col);
    frame.Find(col)->SetSelectsAsTyped(true);
}

void EntryGrid::Show(bool userMode) {
    try {
        RefreshMarks();
        grid::Show(Model(), state_, userMode, [this](int col) { LoadList(Frame(), col); });
    } catch (...) {
        const RunTimeError error = CurrentError();
        events_.ReportError(error.Number(), error.Description());
    }
}

void EntryGrid::Terminate() {
    grid::Terminate(Model(), state_, [this](int col) {
        if (frame_) frame_->Unload(col);
    });
}

int EntryGrid::EditorIndex() {
    const int index = GetActiveList(Model(), state_);
    return Frame().Find(index) ? index : freeTextEditor;
}

void EntryGrid::ApplyCellFormat(ComboWindow& combo) {
    const flexgrid::Grid& grid = Model();
    combo.SetRightToLeft(grid.RightToLeft());
    combo.SetMatchesParts(combo.SelectsAsTyped() && state_.listMatch == grid::ListMatch::parts);
    CellFormat& format = cellFormats_[frame_->IndexOf(combo)];
    const CellFormat wanted{grid.FontOf(grid.Row(), grid.Col()), grid.BackColor(), grid.ForeColor()};
    if (combo.Font() == format.font) combo.SetFont(wanted.font);
    if (combo.BackColor() == format.back) combo.SetBackColor(wanted.back);
    if (combo.ForeColor() == format.fore) combo.SetForeColor(wanted.fore);
    combo.SetAccessibleName(flexgrid::ColumnName(grid, grid.Col()));
    format = wanted;
}

bool EntryGrid::OpenEditor() {
    if (EditIsOpen()) EndEdit();
    if (!MayEdit(Model(), state_)) return false;
    const int index = EditorIndex();
    editor_ = index;
    ComboWindow& combo = *frame_->Find(index);
    Editor editor(*this, *frame_, combo);
    const bool open = ShowCellEditor(Model(), state_, editor, events_, index == freeTextEditor);
    // In free text the caret is at the end; the text of a list column is selected, so that typing replaces it.
    if (open && index == freeTextEditor) combo.SetSelStart(static_cast<int>(combo.GetText().size()));
    return open;
}

void EntryGrid::Commit() {
    ComboWindow* combo = frame_ ? frame_->Find(editor_) : nullptr;
    if (!combo) return;
    Editor editor(*this, *frame_, *combo);
    const bool open = EditIsOpen();
    const int row = state_.editRow;
    const int col = state_.editCol;
    CommitEdit(Model(), state_, history_, editor, events_);
    if (open && !EditIsOpen()) window_->Accessibility().ValueEntered(row, col);
}

void EntryGrid::CommitOpenEdit() {
    if (EditIsOpen()) EndEdit();
}

void EntryGrid::RemoveAllRecords() {
    CommitOpenEdit();
    ChangeRows([this] { grid::RemoveAllRecords(Model(), state_, history_); });
    ClearFilter();
}

void EntryGrid::Abandon(ComboWindow& combo) {
    Editor editor(*this, *frame_, combo);
    AbandonEdit(editor);
}

bool EntryGrid::EndEdit() {
    const int row = Model().Row();
    const int col = Model().Col();
    // The editor is validated while it has the focus, and reports the loss of the focus afterwards.
    Commit();
    const ComboWindow* combo = frame_ ? frame_->Find(editor_) : nullptr;
    if (combo && combo->HasFocus()) SetFocus(window_->Handle());
    if (frame_ && frame_->Shown() && !state_.editing) {
        frame_->Show(false);
        Commit();
    }
    return Model().Row() == row && Model().Col() == col;
}

// ---- Mouse, scrolling, focus ---------------------------------------------------------------------------------------

std::shared_ptr<void> EntryGrid::Hold() { return std::make_shared<ComPtr<IUnknown>>(events_.KeepAlive()); }

void EntryGrid::DblClick() {
    const auto keep = events_.KeepAlive();
    const flexgrid::Hit pressed = window_->PressedCell();
    events_.DblClick();
    if (MeansCurrentCell(pressed, Model())) OpenEditor();
}

void EntryGrid::MouseDown(short button, short shift, float x, float y) {
    const auto keep = events_.KeepAlive();
    CommitOpenEdit();
    events_.MouseDown(button, shift, x, y);
}

void EntryGrid::Scroll() {
    const auto keep = events_.KeepAlive();
    if (EditIsOpen() && !state_.editing && frame_ && frame_->Shown()) PlaceOverCell();
    events_.Scroll();
}

void EntryGrid::TurnWheel(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto keep = events_.KeepAlive();
    SendMessageW(window_->Handle(), message, wParam, lParam);
}

void EntryGrid::NotifyFocus() {
    const auto keep = events_.KeepAlive();
    events_.FocusMovesTo(GetFocus());
}

// Keeps the editor on its cell; an invisible cell moves it out of view instead of hiding it, which would take the focus
// away.
void EntryGrid::PlaceOverCell() {
    if (state_.editRow >= Model().Rows() || state_.editCol >= Model().Cols()) return;
    RECT frame{};
    GetWindowRect(frame_->Handle(), &frame);
    const Size size{static_cast<int>(frame.right - frame.left), static_cast<int>(frame.bottom - frame.top)};
    const Dpi dpi = Model().Metrics().Resolution();
    Point corner{-2 * size.width, -2 * size.height};
    if (window_->RowIsVisible(state_.editRow) && window_->ColIsVisible(state_.editCol))
        corner = {TwipsToPixels(window_->ColPos(state_.editCol), dpi.x),
                  TwipsToPixels(window_->RowPos(state_.editRow), dpi.y)};
    corner.y += gridTop_;
    frame_->MoveTo({corner.x, corner.y, corner.x + size.width, corner.y + size.height});
}

void EntryGrid::BringEditorIntoView() {
    if (state_.editRow < Model().Rows() && state_.editCol < Model().Cols())
        window_->ScrollIntoView(state_.editRow, state_.editCol);
}

void EntryGrid::GotFocus() {
    const auto keep = events_.KeepAlive();
    events_.FocusMovesTo(GetFocus());
}

void EntryGrid::LostFocus() {
    const auto keep = events_.KeepAlive();
    tabWay_.Forget();
    events_.FocusMovesTo(GetFocus());
}

void EntryGrid::MarksWait() {
    const auto keep = events_.KeepAlive();
    const AskHost askHost = events_.HostCheck();
    if (askHost && marks_.Ask(askHost) && entryMarks_.Any()) window_->ShowMarks(&entryMarks_);
}

Text EntryGrid::ToolTip(int row, int col) {
    if (const TextView wrong = state_.markInvalid ? marks_.MessageOf(row, col) : TextView(); !wrong.empty())
        return Text(wrong);
    if (!state_.cellToolTip) return {};
    return CellTipText(state_, Model().TextMatrix(row, col), window_->IsTextCut(row, col));
}

void EntryGrid::LeaveCell() {
    const auto keep = events_.KeepAlive();
    if (EditIsOpen() && !changingRows_ && !state_.editing && state_.committing == 0) EndEdit();
    events_.LeaveCell();
    projection_.Leave();
}

void EntryGrid::EnterCell() {
    const auto keep = events_.KeepAlive();
    events_.EnterCell();
    projection_.Enter();
}

void EntryGrid::RowColChange() {
    const auto keep = events_.KeepAlive();
    if (finder_) finder_->CursorMoved();
    events_.RowColChange();
}

void EntryGrid::Invalidated(flexgrid::GridChange change, const flexgrid::CellRange& range) {
    if (finder_) finder_->Invalidated(change, range);
    if (filterer_) filterer_->Invalidated(change, range);
    // An entry in one cell may mark others of its row.
    using flexgrid::GridChange;
    if ((change == GridChange::texts || change == GridChange::layout) && entryMarks_.Any()) RefreshMarks();
    events_.Invalidated(change, range);
}

// ---- Combos --------------------------------------------------------------------------------------------------------

void EntryGrid::ComboChange(ComboWindow& combo) {
    const auto keep = events_.KeepAlive();
    events_.ListChange(state_.editRow, state_.editCol, combo.GetText());
}

void EntryGrid::ComboClick(ComboWindow& combo) {
    const auto keep = events_.KeepAlive();
    events_.ListClick(state_.editRow, state_.editCol, combo.GetText());
}

// The editor stays open on its cell, as in a spreadsheet, and may scroll out of view with it.
void EntryGrid::ComboWheel(ComboWindow&, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto keep = events_.KeepAlive();
    SendMessageW(window_->Handle(), message, wParam, lParam);
}

void EntryGrid::ComboGotFocus(ComboWindow&) {
    const auto keep = events_.KeepAlive();
    EndAbsence();
    events_.FocusMovesTo(GetFocus());
}

void EntryGrid::ComboLostFocus(ComboWindow& combo) {
    const auto keep = events_.KeepAlive();
    if (state_.keepEditing && EditIsOpen() && !state_.editing && IsInOtherProgram()) {
        LeaveProgram(combo);
        return;
    }
    Commit();
    if (frame_) frame_->Show(false);
    Commit();
    events_.FocusMovesTo(GetFocus());
}

}  // namespace qvx::grid
