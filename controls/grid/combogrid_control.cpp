#include "controls/grid/combogrid_control.h"

#include <olectl.h>

#include <limits>

#include "com/bstr.h"
#include "com/variant.h"
#include "common/flag_scope.h"
#include "controls/grid/column_index_object.h"
#include "controls/grid/lifecycle.h"
#include "dialogs/about_dialog.h"
#include "dialogs/show_message_dialog.h"
#include "kit/error_report.h"
#include "kit/resource.h"
#include "win/accessible.h"
#include "win/gdi_surface.h"

namespace qvx::grid {
namespace {

constexpr TextView keyAfterPreparation = u"NonFocusColumns";

}  // namespace

const ControlClass ComboGridControl::classInfo{&CLSID_ComboGrid,
                                               &DIID___ComboGrid,
                                               L"ComboGrid",
                                               L"Qvx ComboGrid Control",
                                               QVX_TOOLBOX_COMBOGRID,
                                               usualMiscStatus,
                                               CreateControl<ComboGridControl>};

ComboGridControl::ComboGridControl() : Control<_ComboGrid>(classInfo), entry_(*this) {}

// ---- Life ----------------------------------------------------------------------------------------------------------

// For a new control in a designer the fields get their defaults, and the inner grid keeps its initial state.
void ComboGridControl::InitProperties() {
    ControlState& state = State();
    const bool initialised = state.initialised;
    state = ControlState();
    state.initialised = initialised;
}

void ComboGridControl::OnBeforeRead(TextView key) {
    // The control is prepared before this property is read; the preparation needs neither it nor those after it.
    if (key != keyAfterPreparation) return;
    readForDesign_ = !UserMode();
    if (!readForDesign_) Prepare();
}

void ComboGridControl::Prepare() {
    RebuildColIndex();
    entry_.Show(true);
}

void ComboGridControl::OnShow() {
    if (UserMode() && std::exchange(readForDesign_, false)) return Prepare();
    entry_.Show(UserMode());
}

void ComboGridControl::OnWindowCreated(HWND window) {
    // In a designer, the grid is a picture: its window would take the mouse from the designer.
    if (UserMode()) entry_.AttachTo(window);
}

// A label has the name that users know; the control's name is meant for programmers.
Text ComboGridControl::AccessibleName() {
    const Text label = LabelBefore(WindowHandle());
    return label.empty() ? Host().DisplayName() : label;
}

HWND ComboGridControl::FocusWindow() {
    const HWND inner = entry_.FocusWindow();
    return inner ? inner : WindowHandle();
}

void ComboGridControl::DrawControl(Surface& surface, const Rect& area) {
    auto& gdi = static_cast<GdiSurface&>(surface);
    entry_.GridWindow().DrawTo(gdi.Dc(), area);
    gdi.Forget();
}

void ComboGridControl::OnTerminate() {
    entry_.CommitOpenEdit();
    colIndex_.reset();
    entry_.Terminate();
}

// Commits an open edit while the control is still in its previous state.
template <class Leave>
HRESULT ComboGridControl::CommitThen(Leave leave) {
    const auto keep = ControlBase::KeepAlive();
    Contain([&] { entry_.CommitOpenEdit(); });
    return leave();
}

STDMETHODIMP ComboGridControl::InPlaceDeactivate() {
    return CommitThen([&] { return ControlBase::InPlaceDeactivate(); });
}

STDMETHODIMP ComboGridControl::UIDeactivate() {
    // The program has been left with the cell open, and is to find it so again.
    if (entry_.KeptOpen()) return ControlBase::UIDeactivate();
    return CommitThen([&] { return ControlBase::UIDeactivate(); });
}

STDMETHODIMP ComboGridControl::Close(DWORD saveOption) {
    return CommitThen([&] { return ControlBase::Close(saveOption); });
}

// ---- Columns -------------------------------------------------------------------------------------------------------

void ComboGridControl::RebuildColIndex() {
    ColumnIndex index = grid::RefreshColIndex(Model());
    colIndex_ = MakeColumnIndexObject(index);
    State().stringFormat = std::move(index.stringFormat);
}

STDMETHODIMP ComboGridControl::RefreshColIndex() {
    return Guard([&] { RebuildColIndex(); });
}

STDMETHODIMP ComboGridControl::get_ColIndex(IDispatch** result) {
    return Give(result, [&] {
        // The collection is created when it is first needed: a control has an empty one from the start.
        if (!colIndex_) colIndex_ = MakeColumnIndexObject({});
        return colIndex_.copy();
    });
}

STDMETHODIMP ComboGridControl::putref_ColIndex(IDispatch* value) {
    return Put(u"ColIndex", [&] { colIndex_ = ComPtr<IDispatch>(value); });
}

STDMETHODIMP ComboGridControl::get_InVisibleColumns(BSTR* result) {
    return Give(result, [&] { return State().inVisibleColumns; });
}

STDMETHODIMP ComboGridControl::put_InVisibleColumns(BSTR value) {
    return Guard([&] {
        TentativeValue columns(State().inVisibleColumns, Text(FromBstr(value)));
        ControlBase::Changed(u"InVisibleColumns");
        ApplyInVisibleColumns(Model(), State());
        columns.Done();
    });
}

STDMETHODIMP ComboGridControl::get_Lists(short index, IDispatch** result) {
    return Give(result, [&] { return entry_.Lists(index); });
}

STDMETHODIMP ComboGridControl::GetNextColumn(long* col, long* result) {
    return Give(result, [&] {
        int start = static_cast<int>(*Required(col));
        const int next = grid::GetNextColumn(Model(), State(), start);
        *col = start;
        return next;
    });
}

STDMETHODIMP ComboGridControl::GetActiveList(short* result) {
    return Give(result, [&] { return grid::GetActiveList(Model(), State()); });
}

// ---- Rows ----------------------------------------------------------------------------------------------------------

STDMETHODIMP ComboGridControl::AddItem(BSTR item, VARIANT index) {
    return Guard([&] {
        int place = flexgrid::Grid::atEnd;
        if (const auto number = OptionalNumber(index)) {
            // A number below 0 is not a row and must not mean the end.
            place = *number < 0 ? std::numeric_limits<int>::max() : static_cast<int>(*number);
        }
        entry_.ChangeRows([&] { Model().AddItem(FromBstr(item), place); });
    });
}

STDMETHODIMP ComboGridControl::Clear() {
    return Guard([&] {
        Model().Clear();
        entry_.ClearFilter();
    });
}

STDMETHODIMP ComboGridControl::RemoveItem(long index) {
    return Guard([&] {
        entry_.ChangeRows([&] { Model().RemoveItem(static_cast<int>(index)); });
        Renumber(Model(), State());
    });
}

STDMETHODIMP ComboGridControl::Grid(IDispatch** result) {
    return Give(result, [&] { return entry_.GridObject(); });
}

STDMETHODIMP ComboGridControl::get_hWnd(long* result) {
    return Give(result, [&] { return WindowNumber(); });
}

STDMETHODIMP ComboGridControl::get_hDC(long* result) {
    return Give(result, [&] { return DeviceContextNumber(); });
}

STDMETHODIMP ComboGridControl::ShowAbout() {
    return Guard([&] {
        const DialogScope dialog(*this);
        ShowAboutBox(WindowHandle());
    });
}

// ---- Events --------------------------------------------------------------------------------------------------------

void ComboGridControl::BeforeCellChange(int row, int col, const Text& data, bool& cancel) {
    const bool active = InPlaceActive();
    Fire(u"BeforeCellChange", EventArguments().In(row).In(col).In(Variant(data)).InOut(cancel));
    // A handler that has deactivated the control has also refused the edit.
    if (active && !InPlaceActive()) cancel = true;
}

void ComboGridControl::AfterCellChange(int row, int col, const Text& oldData, const Text& newData, bool& cancel) {
    // The cell has changed: a notification that fails for lack of memory is lost, and is not reported as a failure.
    Contain([&] {
        Fire(u"AfterCellChange",
             EventArguments().In(row).In(col).In(Variant(oldData)).In(Variant(newData)).InOut(cancel));
    });
}

void ComboGridControl::OnError(int number, TextView description, bool& response) {
    Fire(u"OnError", EventArguments().In(number).In(Text(description)).InOut(response));
}

void ComboGridControl::ListChange(int row, int col, const Text& data) {
    Fire(u"ListChange", EventArguments().In(row).In(col).In(Variant(data)));
}

void ComboGridControl::ListClick(int row, int col, const Text& data) {
    Fire(u"ListClick", EventArguments().In(row).In(col).In(Variant(data)));
}

void ComboGridControl::OnDelete(int row) { Fire(u"OnDelete", EventArguments().In(row)); }

void ComboGridControl::BeforeSort(const Text& columns, bool& cancel) {
    Fire(u"BeforeSort", EventArguments().In(Text(columns)).InOut(cancel));
}

void ComboGridControl::Sorted(const Text& columns) { Fire(u"Sorted", EventArguments().In(Text(columns))); }

void ComboGridControl::ColumnMoving(int col, int position, bool& cancel) {
    Fire(u"ColumnMoving", EventArguments().In(col).In(position).InOut(cancel));
}

// The host finds columns by an index that it once made.
void ComboGridControl::ColumnsMoved() {
    if (!State().stringFormat.empty()) RebuildColIndex();
}

void ComboGridControl::ColumnMoved(int col, int position) {
    Fire(u"ColumnMoved", EventArguments().In(col).In(position));
}

void ComboGridControl::BeforeMenu(int row, int col, Text& items, bool& cancel) {
    Fire(u"BeforeMenu", EventArguments().In(row).In(col).InOut(items).InOut(cancel));
}

void ComboGridControl::MenuCommandChosen(const Text& key, int col) {
    Fire(u"MenuCommand", EventArguments().In(Text(key)).In(col));
}

void ComboGridControl::BindProgress(long loaded, long total, bool& cancel) {
    Fire(u"BindProgress", EventArguments().In(loaded).In(total).InOut(cancel));
}

void ComboGridControl::ExportProgress(long done, long total, bool& cancel) {
    Fire(u"ExportProgress", EventArguments().In(done).In(total).InOut(cancel));
}

void ComboGridControl::ImportReport(long line, const Text& column, const Text& text, TextView reason) {
    Fire(u"ImportReport", EventArguments().In(line).In(column).In(text).In(Text(reason)));
}

void ComboGridControl::ReportError(int number, TextView description) {
    const DialogScope dialog(*this);
    ShowErrorReport(WindowHandle(), number, description);
}

bool ComboGridControl::Say(TextView prompt, const dialogs::MessageKind& kind) {
    const DialogScope dialog(*this);
    return dialogs::ShowMessage(WindowHandle(), prompt, kind, Host().FormCaption(WindowHandle()));
}

}  // namespace qvx::grid
