#include "controls/grid/combogrid_control.h"

#include <olectl.h>

#include <limits>

#include "com/bstr.h"
#include "com/variant.h"
#include "common/about_dialog.h"
#include "common/number_text.h"
#include "controls/grid/column_index_object.h"
#include "controls/grid/lifecycle.h"
#include "forms/msgbox/show_message.h"
#include "server/error_report.h"
#include "server/resource.h"
#include "win/accessible.h"
#include "win/gdi_surface.h"

namespace qvx::grid {
namespace {

constexpr TextView lastKey = u"NonFocusColumns";

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

// A new control in a designer: the fields take their defaults, the inner grid stays as it is made.
void ComboGridControl::InitProperties() {
    ControlState& state = State();
    const bool initialised = state.initialised;
    state = ControlState();
    state.initialised = initialised;
}

void ComboGridControl::OnBeforeRead(TextView key) {
    // The control is prepared before its last property is known; nothing in the preparation needs that one.
    if (key != lastKey || !UserMode()) return;
    RebuildColIndex();
    entry_.Show(true);
}

void ComboGridControl::OnWindowCreated(HWND window) {
    // A designer's grid is a picture: its window would take the mouse from the designer.
    if (UserMode()) entry_.AttachTo(window);
}

// A label says what users call the grid; the name is a programmer's.
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

// An open edit is committed while the control is still what it was.
template <class Leave>
HRESULT ComboGridControl::CommitThen(Leave leave) {
    const auto keep = ControlBase::KeepAlive();
    Guard([&] { entry_.CommitOpenEdit(); });
    return leave();
}

STDMETHODIMP ComboGridControl::InPlaceDeactivate() {
    return CommitThen([&] { return ControlBase::InPlaceDeactivate(); });
}

STDMETHODIMP ComboGridControl::UIDeactivate() {
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
    return Guard([&] {
        *Required(result) = nullptr;
        // Made at first need: a control has its collection, an empty one, from the start.
        if (!colIndex_) colIndex_ = MakeColumnIndexObject({});
        *result = colIndex_.copy();
    });
}

STDMETHODIMP ComboGridControl::putref_ColIndex(IDispatch* value) {
    return Put(u"ColIndex", [&] { colIndex_ = ComPtr<IDispatch>(value); });
}

STDMETHODIMP ComboGridControl::get_InVisibleColumns(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(State().inVisibleColumns); });
}

STDMETHODIMP ComboGridControl::put_InVisibleColumns(BSTR value) {
    return Guard([&] {
        State().inVisibleColumns = FromBstr(value);
        ControlBase::Changed(u"InVisibleColumns");
        ApplyInVisibleColumns(Model(), State());
    });
}

STDMETHODIMP ComboGridControl::get_Lists(short index, IDispatch** result) {
    return Guard([&] {
        *Required(result) = nullptr;
        *result = entry_.Lists(index);
    });
}

STDMETHODIMP ComboGridControl::GetNextColumn(long* col, long* result) {
    return Guard([&] {
        int start = static_cast<int>(*Required(col));
        *Required(result) = grid::GetNextColumn(Model(), State(), start);
        *col = start;
    });
}

STDMETHODIMP ComboGridControl::GetActiveList(short* result) {
    return Guard([&] { *Required(result) = static_cast<short>(grid::GetActiveList(Model(), State())); });
}

// ---- Rows ----------------------------------------------------------------------------------------------------------

STDMETHODIMP ComboGridControl::AddItem(BSTR item, VARIANT index) {
    return Guard([&] {
        int place = flexgrid::Grid::atEnd;
        if (const auto number = OptionalNumber(index)) {
            // A number below 0 is no row; it must not read as the end.
            place = *number < 0 ? std::numeric_limits<int>::max() : static_cast<int>(*number);
        }
        entry_.ChangeRows([&] { Model().AddItem(FromBstr(item), place); });
    });
}

STDMETHODIMP ComboGridControl::Clear() {
    return Guard([&] { Model().Clear(); });
}

STDMETHODIMP ComboGridControl::RemoveItem(long index) {
    return Guard([&] {
        entry_.ChangeRows([&] { Model().RemoveItem(static_cast<int>(index)); });
        Renumber(Model(), State());
    });
}

STDMETHODIMP ComboGridControl::Grid(IDispatch** result) {
    return Guard([&] {
        *Required(result) = nullptr;
        *result = entry_.GridObject();
    });
}

STDMETHODIMP ComboGridControl::get_hWnd(long* result) {
    return Guard([&] { *Required(result) = WindowNumber(); });
}

STDMETHODIMP ComboGridControl::get_hDC(long* result) {
    return Guard([&] { *Required(result) = DeviceContextNumber(); });
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
    Fire(grid_event::beforeCellChange, EventArguments().In(row).In(col).In(Variant(data)).InOut(cancel));
    // A handler that closed the control has refused the edit as well.
    if (active && !InPlaceActive()) cancel = true;
}

void ComboGridControl::AfterCellChange(int row, int col, const Text& oldData, const Text& newData, bool& cancel) {
    Fire(grid_event::afterCellChange,
         EventArguments().In(row).In(col).In(Variant(oldData)).In(Variant(newData)).InOut(cancel));
}

void ComboGridControl::OnError(int number, const Text& description, bool& response) {
    Fire(grid_event::onError, EventArguments().In(number).In(description).InOut(response));
}

void ComboGridControl::ListChange(int row, int col, const Text& data) {
    Fire(grid_event::listChange, EventArguments().In(row).In(col).In(Variant(data)));
}

void ComboGridControl::ListClick(int row, int col, const Text& data) {
    Fire(grid_event::listClick, EventArguments().In(row).In(col).In(Variant(data)));
}

void ComboGridControl::KeyDown(short& keyCode, short& shift) {
    Fire(DISPID_KEYDOWN, EventArguments().InOut(keyCode).InOut(shift));
}

void ComboGridControl::OnDelete(int row) { Fire(grid_event::onDelete, EventArguments().In(row)); }

void ComboGridControl::BindProgress(long loaded, long total, bool& cancel) {
    Fire(grid_event::bindProgress, EventArguments().In(loaded).In(total).InOut(cancel));
}

void ComboGridControl::EnterCell() { Fire(grid_event::enterCell); }

void ComboGridControl::LeaveCell() { Fire(grid_event::leaveCell); }

void ComboGridControl::ReportError(int number, const Text& description) {
    const DialogScope dialog(*this);
    ShowErrorReport(WindowHandle(), number, description);
}

bool ComboGridControl::Say(TextView prompt, const msgbox::MessageKind& kind) {
    const DialogScope dialog(*this);
    return msgbox::ShowMessage(WindowHandle(), prompt, kind, Host().FormCaption(WindowHandle()));
}

}  // namespace qvx::grid
