// The ComboGrid control: its interface, persisted properties and events, over the grid for data entry.
#pragma once

#include <windows.h>

#include <olectl.h>

#include "Qvx.h"
#include "com/members.h"
#include "controls/grid/combogrid_events.h"
#include "controls/grid/entry_grid_window.h"
#include "kit/control.h"

namespace qvx::grid {

class ComboGridControl final : public Control<_ComboGrid>, private EntryGridEvents {
  public:
    static const ControlClass classInfo;

    ComboGridControl();

    // Columns by caption
    STDMETHODIMP get_ListColumns(BSTR* result) override;
    STDMETHODIMP put_ListColumns(BSTR value) override;
    STDMETHODIMP get_UnChangableColumns(BSTR* result) override;
    STDMETHODIMP put_UnChangableColumns(BSTR value) override;
    STDMETHODIMP get_InActiveColumns(BSTR* result) override;
    STDMETHODIMP put_InActiveColumns(BSTR value) override;
    STDMETHODIMP get_NonFocusColumns(BSTR* result) override;
    STDMETHODIMP put_NonFocusColumns(BSTR value) override;
    STDMETHODIMP get_InVisibleColumns(BSTR* result) override;
    STDMETHODIMP put_InVisibleColumns(BSTR value) override;
    STDMETHODIMP get_RequiredFields(BSTR* result) override;
    STDMETHODIMP put_RequiredFields(BSTR value) override;
    STDMETHODIMP get_ColumnsDataType(BSTR* result) override;
    STDMETHODIMP put_ColumnsDataType(BSTR value) override;
    STDMETHODIMP get_CheckValueFor(BSTR* result) override;
    STDMETHODIMP put_CheckValueFor(BSTR value) override;
    STDMETHODIMP get_ColIndex(IDispatch** result) override;
    STDMETHODIMP putref_ColIndex(IDispatch* value) override;
    STDMETHODIMP get_StringFormat(BSTR* result) override;
    STDMETHODIMP put_StringFormat(BSTR value) override;
    // State
    STDMETHODIMP get_Changed(VARIANT_BOOL* result) override;
    STDMETHODIMP put_Changed(VARIANT_BOOL value) override;
    STDMETHODIMP get_DateFormat(BSTR* result) override;
    STDMETHODIMP put_DateFormat(BSTR value) override;
    STDMETHODIMP get_KeyColumn(short* result) override;
    STDMETHODIMP put_KeyColumn(short value) override;
    STDMETHODIMP get_CellToolTip(VARIANT_BOOL* result) override;
    STDMETHODIMP put_CellToolTip(VARIANT_BOOL value) override;
    STDMETHODIMP get_ProjectionBold(VARIANT_BOOL* result) override;
    STDMETHODIMP put_ProjectionBold(VARIANT_BOOL value) override;
    STDMETHODIMP get_BindFrom(short* result) override;
    STDMETHODIMP put_BindFrom(short value) override;
    STDMETHODIMP get_AutoTab(VARIANT_BOOL* result) override;
    STDMETHODIMP put_AutoTab(VARIANT_BOOL value) override;
    STDMETHODIMP get_ProjectSelection(VARIANT_BOOL* result) override;
    STDMETHODIMP put_ProjectSelection(VARIANT_BOOL value) override;
    STDMETHODIMP get_AutoRecordNumber(VARIANT_BOOL* result) override;
    STDMETHODIMP put_AutoRecordNumber(VARIANT_BOOL value) override;
    STDMETHODIMP get_AutoAddNew(VARIANT_BOOL* result) override;
    STDMETHODIMP put_AutoAddNew(VARIANT_BOOL value) override;
    // Methods
    STDMETHODIMP get_Lists(short index, IDispatch** result) override;
    STDMETHODIMP RefreshColIndex() override;
    STDMETHODIMP GetNextColumn(long* col, long* result) override;
    STDMETHODIMP GetActiveList(short* result) override;
    STDMETHODIMP AddItem(BSTR item, VARIANT index) override;
    STDMETHODIMP Clear() override;
    STDMETHODIMP RemoveItem(long index) override;
    STDMETHODIMP Grid(IDispatch** result) override;
    STDMETHODIMP ShowAbout() override;
    // Records
    STDMETHODIMP RemoveEmptyRows(VARIANT_BOOL byKeyColumn) override;
    STDMETHODIMP RemoveAllRecords() override;
    STDMETHODIMP SetCell(long row, long col, VARIANT text, VARIANT_BOOL focus) override;
    STDMETHODIMP ClearRow(long row, BSTR clearCols, BSTR avoidCols) override;
    // A caller that does not want to know passes null.
    STDMETHODIMP DuplicateRecord(long* record, long* matchOn, VARIANT_BOOL response, VARIANT_BOOL* result) override;
    STDMETHODIMP GetSumOf(RC rowOrCol, long index, VARIANT* result) override;
    STDMETHODIMP GetProductOf(long col2Set, VARIANT* cols, VARIANT* result) override;
    // Records
    STDMETHODIMP Bind(IDispatch** recSet) override;
    STDMETHODIMP ValidateEntry(VARIANT_BOOL* result) override;
    // What the user has done, and the clipboard
    STDMETHODIMP Undo() override;
    STDMETHODIMP Redo() override;
    STDMETHODIMP get_CanUndo(VARIANT_BOOL* result) override;
    STDMETHODIMP get_CanRedo(VARIANT_BOOL* result) override;
    STDMETHODIMP Copy() override;
    STDMETHODIMP Cut() override;
    STDMETHODIMP Paste() override;
    // The inner grid's members
    STDMETHODIMP get_TextArray(long index, BSTR* result) override;
    STDMETHODIMP put_TextArray(long index, BSTR value) override;
    STDMETHODIMP get_TextMatrix(long row, long col, BSTR* result) override;
    STDMETHODIMP put_TextMatrix(long row, long col, BSTR value) override;
    STDMETHODIMP get_Rows(long* result) override;
    STDMETHODIMP put_Rows(long value) override;
    STDMETHODIMP get_Cols(long* result) override;
    STDMETHODIMP put_Cols(long value) override;
    STDMETHODIMP get_FixedCols(long* result) override;
    STDMETHODIMP put_FixedCols(long value) override;
    STDMETHODIMP get_FixedRows(long* result) override;
    STDMETHODIMP put_FixedRows(long value) override;
    STDMETHODIMP get_BackColorBkg(OLE_COLOR* result) override;
    STDMETHODIMP put_BackColorBkg(OLE_COLOR value) override;
    STDMETHODIMP get_AllowUserResizing(GridResizing* result) override;
    STDMETHODIMP put_AllowUserResizing(GridResizing value) override;
    STDMETHODIMP get_Appearance(GridAppearance* result) override;
    STDMETHODIMP put_Appearance(GridAppearance value) override;
    STDMETHODIMP get_BackColor(OLE_COLOR* result) override;
    STDMETHODIMP put_BackColor(OLE_COLOR value) override;
    STDMETHODIMP get_BackColorSel(OLE_COLOR* result) override;
    STDMETHODIMP put_BackColorSel(OLE_COLOR value) override;
    STDMETHODIMP get_FocusRect(GridFocusRect* result) override;
    STDMETHODIMP put_FocusRect(GridFocusRect value) override;
    STDMETHODIMP get_ForeColor(OLE_COLOR* result) override;
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override;
    STDMETHODIMP get_ForeColorFixed(OLE_COLOR* result) override;
    STDMETHODIMP put_ForeColorFixed(OLE_COLOR value) override;
    STDMETHODIMP get_ForeColorSel(OLE_COLOR* result) override;
    STDMETHODIMP put_ForeColorSel(OLE_COLOR value) override;
    STDMETHODIMP get_FormatString(BSTR* result) override;
    STDMETHODIMP put_FormatString(BSTR value) override;
    STDMETHODIMP get_GridColor(OLE_COLOR* result) override;
    STDMETHODIMP put_GridColor(OLE_COLOR value) override;
    STDMETHODIMP get_GridColorFixed(OLE_COLOR* result) override;
    STDMETHODIMP put_GridColorFixed(OLE_COLOR value) override;
    STDMETHODIMP get_GridLines(GridLineStyle* result) override;
    STDMETHODIMP put_GridLines(GridLineStyle value) override;
    STDMETHODIMP get_GridLinesFixed(GridLineStyle* result) override;
    STDMETHODIMP put_GridLinesFixed(GridLineStyle value) override;
    STDMETHODIMP get_HighLight(GridHighLight* result) override;
    STDMETHODIMP put_HighLight(GridHighLight value) override;
    STDMETHODIMP get_MergeCells(GridMerge* result) override;
    STDMETHODIMP put_MergeCells(GridMerge value) override;
    STDMETHODIMP get_ScrollBars(GridScrollBars* result) override;
    STDMETHODIMP put_ScrollBars(GridScrollBars value) override;
    STDMETHODIMP get_ScrollTrack(VARIANT_BOOL* result) override;
    STDMETHODIMP put_ScrollTrack(VARIANT_BOOL value) override;
    STDMETHODIMP get_SelectionMode(GridSelection* result) override;
    STDMETHODIMP put_SelectionMode(GridSelection value) override;
    STDMETHODIMP get_BackColorFixed(OLE_COLOR* result) override;
    STDMETHODIMP put_BackColorFixed(OLE_COLOR value) override;
    STDMETHODIMP get_Enabled(VARIANT_BOOL* result) override;
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override;
    STDMETHODIMP get_BorderStyle(GridBorder* result) override;
    STDMETHODIMP put_BorderStyle(GridBorder value) override;
    STDMETHODIMP get_ColAlignment(long index, short* result) override;
    STDMETHODIMP put_ColAlignment(long index, short value) override;
    STDMETHODIMP get_ColWidth(long index, long* result) override;
    STDMETHODIMP put_ColWidth(long index, long value) override;
    STDMETHODIMP get_Row(long* result) override;
    STDMETHODIMP put_Row(long value) override;
    STDMETHODIMP get_Col(long* result) override;
    STDMETHODIMP put_Col(long value) override;
    STDMETHODIMP get_hWnd(long* result) override;
    STDMETHODIMP get_hDC(long* result) override;

    // An edit that is open ends while its window is still in place.
    STDMETHODIMP InPlaceDeactivate() override;
    STDMETHODIMP UIDeactivate() override;
    STDMETHODIMP Close(DWORD saveOption) override;

    const PropertyTable& Properties() override;

  protected:
    Size DefaultPixelSize() const override { return {320, 200}; }
    void InitProperties() override;
    void OnBeforeRead(TextView key) override;
    void OnWindowCreated(HWND window) override;
    void OnWindowGoing() override { entry_.Detach(); }
    bool IsCovered() override { return entry_.GridWindow().Handle() != nullptr; }
    void OnResize(Size size) override { entry_.Resize(size); }
    void OnShow() override;
    HWND FocusWindow() override;
    void DrawControl(Surface& surface, const Rect& area) override;
    bool WantsKey(const MSG& message) override { return entry_.WantsKey(message); }
    void OnTerminate() override;

  private:
    ~ComboGridControl() override = default;

    // EntryGridEvents
    void BeforeCellChange(int row, int col, const Text& data, bool& cancel) override;
    void AfterCellChange(int row, int col, const Text& oldData, const Text& newData, bool& cancel) override;
    void OnError(int number, TextView description, bool& response) override;
    void ListChange(int row, int col, const Text& data) override;
    void ListClick(int row, int col, const Text& data) override;
    void KeyDown(short& keyCode, short& shift) override;
    void Click() override { Fire(DISPID_CLICK); }
    void DblClick() override { Fire(DISPID_DBLCLICK); }
    void KeyPress(short& keyAscii) override { Fire(DISPID_KEYPRESS, EventArguments().InOut(keyAscii)); }
    void KeyUp(short& keyCode, short& shift) override {
        Fire(DISPID_KEYUP, EventArguments().InOut(keyCode).InOut(shift));
    }
    void MouseDown(short button, short shift, float x, float y) override {
        Mouse(DISPID_MOUSEDOWN, button, shift, x, y);
    }
    void MouseMove(short button, short shift, float x, float y) override {
        Mouse(DISPID_MOUSEMOVE, button, shift, x, y);
    }
    void MouseUp(short button, short shift, float x, float y) override { Mouse(DISPID_MOUSEUP, button, shift, x, y); }
    void RowColChange() override { Fire(grid_event::rowColChange); }
    void SelChange() override { Fire(grid_event::selChange); }
    void Scroll() override { Fire(grid_event::scroll); }
    // The inner grid's window paints itself; without one its picture is the control's to paint.
    void Invalidated() override {
        if (!IsCovered()) Invalidate();
    }
    void Mouse(DISPID event, short button, short shift, float x, float y) {
        Fire(event, EventArguments().In(button).In(shift).In(x).In(y));
    }
    void OnDelete(int row) override;
    bool Listens() override { return HasListeners(); }
    bool RaisesEvents() override { return ControlBase::RaisesEvents(); }
    void BindProgress(long loaded, long total, bool& cancel) override;
    void EnterCell() override;
    void LeaveCell() override;
    void ReportError(int number, TextView description) override;
    bool Say(TextView prompt, const dialogs::MessageKind& kind) override;
    void FocusMovesTo(HWND moving) override { ControlBase::FocusMovesTo(moving); }
    bool MoveFocusOn(bool backwards) override { return ControlBase::MoveFocusOn(backwards); }
    HWND ControlWindow() override { return EnsureWindow(); }
    Text AccessibleName() override;
    ComPtr<IUnknown> KeepAlive() override { return ControlBase::KeepAlive(); }

    ControlState& State() { return entry_.State(); }
    flexgrid::Grid& Model() { return entry_.Model(); }
    void Prepare();
    void RebuildColIndex();
    void FocusCell(int row, int col);

    // A field of the control's state, or what the inner grid says.
    template <class Result, class Value>
    HRESULT Get(Result* result, Value ControlState::*field) {
        return Give(result, [&] { return State().*field; });
    }
    template <class Result, class Owner, class Value, class... Parameters, class... Given>
    HRESULT Get(Result* result, Value (Owner::*member)(Parameters...) const, Given... given) {
        return Give(result, [&] { return (Model().*member)(FromHost<Parameters>(given)...); });
    }
    // Sets either, and tells the host's property store under the given name.
    using Control::Put;
    template <class Value, class Given>
    HRESULT Put(TextView name, Value ControlState::*field, Given given) {
        return Put(name, [&] { State().*field = FromHost<Value>(given); });
    }
    template <class Owner, class... Parameters, class... Given>
    HRESULT Put(TextView name, void (Owner::*member)(Parameters...), Given... given) {
        return Put(name, [&] { (Model().*member)(FromHost<Parameters>(given)...); });
    }
    // Rows and columns come and go under an open edit without ending it.
    HRESULT PutCount(TextView name, void (flexgrid::Grid::*member)(int), long value) {
        return Put(name, [&] { entry_.ChangeRows([&] { (Model().*member)(static_cast<int>(value)); }); });
    }
    template <class Leave>
    HRESULT CommitThen(Leave leave);

    // A method whose run-time errors are the user's to read, not the caller's.
    template <class Body>
    HRESULT Reporting(Body body) {
        return Guard([&] {
            const auto keep = ControlBase::KeepAlive();
            try {
                body();
            } catch (const ComError&) {
                throw;  // a call that was wrong by itself, as with a null argument
            } catch (...) {
                const RunTimeError error = CurrentError();
                ReportError(error.Number(), error.Description());
            }
        });
    }

    EntryGrid entry_;
    ComPtr<IDispatch> colIndex_;
    bool readForDesign_ = false;  // and not shown in run mode since
};

}  // namespace qvx::grid
