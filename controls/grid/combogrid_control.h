// The ComboGrid control: its interface, persisted properties and events, for the grid for data entry.
#pragma once

#include <windows.h>

#include <olectl.h>

#include "Qvx.h"
#include "com/members.h"
#include "controls/grid/column_settings.h"
#include "controls/grid/columns_object.h"
#include "controls/grid/entry_grid_window.h"
#include "controls/grid/validation.h"
#include "kit/control.h"
#include "win/handles.h"

namespace qvx::grid {

class ComboGridControl final : public Control<_ComboGrid>,
                               private MemberAccess<ComboGridControl>,
                               private EntryGridEvents {
  public:
    static const ControlClass classInfo;

    ComboGridControl();

    // Columns by caption
    QVX_FIELD(BSTR, ListColumns, ControlState::listColumns)
    QVX_FIELD(BSTR, UnChangableColumns, ControlState::unChangableColumns)
    QVX_FIELD(BSTR, InActiveColumns, ControlState::inActiveColumns)
    QVX_FIELD(BSTR, NonFocusColumns, ControlState::nonFocusColumns)
    STDMETHODIMP get_InVisibleColumns(BSTR* result) override;
    STDMETHODIMP put_InVisibleColumns(BSTR value) override;
    STDMETHODIMP get_RequiredFields(BSTR* result) override { return GetMember(result, &ControlState::requiredFields); }
    STDMETHODIMP put_RequiredFields(BSTR value) override {
        return PutRules(u"RequiredFields", &ControlState::requiredFields, value);
    }
    QVX_FIELD(BSTR, ColumnsDataType, ControlState::columnsDataType)
    STDMETHODIMP get_CheckValueFor(BSTR* result) override { return GetMember(result, &ControlState::checkValueFor); }
    STDMETHODIMP put_CheckValueFor(BSTR value) override {
        return PutRules(u"CheckValueFor", &ControlState::checkValueFor, value);
    }
    QVX_FIELD(BSTR, ColumnsMaxLength, ControlState::columnsMaxLength)
    QVX_FIELD(VARIANT_BOOL, ExtendedKeys, ControlState::extendedKeys)
    QVX_FIELD(VARIANT_BOOL, KeepUnchanged, ControlState::keepUnchanged)
    STDMETHODIMP get_ColIndex(IDispatch** result) override;
    STDMETHODIMP putref_ColIndex(IDispatch* value) override;
    QVX_FIELD(BSTR, StringFormat, ControlState::stringFormat)
    // State
    QVX_FIELD(VARIANT_BOOL, Changed, ControlState::changed)
    QVX_FIELD(BSTR, DateFormat, ControlState::dateFormat)
    QVX_FIELD(short, KeyColumn, ControlState::keyColumn)
    QVX_FIELD(VARIANT_BOOL, CellToolTip, ControlState::cellToolTip)
    QVX_FIELD(VARIANT_BOOL, ProjectionBold, ControlState::projectionBold)
    QVX_FIELD(short, BindFrom, ControlState::bindFrom)
    QVX_FIELD(VARIANT_BOOL, AutoTab, ControlState::autoTab)
    QVX_FIELD(VARIANT_BOOL, ProjectSelection, ControlState::projectSelection)
    QVX_FIELD(VARIANT_BOOL, AutoRecordNumber, ControlState::autoRecordNumber)
    QVX_FIELD(VARIANT_BOOL, AutoAddNew, ControlState::autoAddNew)
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
    // A caller that does not need `record` or `matchOn` passes null.
    STDMETHODIMP DuplicateRecord(long* record, long* matchOn, VARIANT_BOOL response, VARIANT_BOOL* result) override;
    STDMETHODIMP GetSumOf(RC rowOrCol, long index, VARIANT* result) override;
    STDMETHODIMP GetProductOf(long col2Set, VARIANT* cols, VARIANT* result) override;
    // Record sets and checks
    STDMETHODIMP Bind(IDispatch** recSet) override;
    STDMETHODIMP ValidateEntry(VARIANT_BOOL* result) override;
    // A caller that does not need `row`, `col`, `rule`, `record` or `matchOn` passes null.
    STDMETHODIMP FindInvalid(long* row, long* col, VARIANT_BOOL rowOnly, long* rule, BSTR* result) override;
    STDMETHODIMP FindDuplicate(long* record, long* matchOn, BSTR columns, VARIANT_BOOL* result) override;
    STDMETHODIMP get_ValidateColumns(BSTR* result) override {
        return GetMember(result, &ControlState::validateColumns);
    }
    STDMETHODIMP put_ValidateColumns(BSTR value) override {
        return PutRules(u"ValidateColumns", &ControlState::validateColumns, value);
    }
    QVX_FIELD(VARIANT_BOOL, OnErrorFirst, ControlState::onErrorFirst)
    QVX_PROPERTY(VARIANT_BOOL, MarkInvalid, EntryGrid)
    // Undo, redo and the clipboard
    STDMETHODIMP Undo() override;
    STDMETHODIMP Redo() override;
    STDMETHODIMP get_CanUndo(VARIANT_BOOL* result) override;
    STDMETHODIMP get_CanRedo(VARIANT_BOOL* result) override;
    STDMETHODIMP Copy() override;
    STDMETHODIMP Cut() override;
    STDMETHODIMP Paste() override;
    // Sorting
    QVX_FIELD(VARIANT_BOOL, SortOnHeader, ControlState::sortOnHeader)
    QVX_FIELD(VARIANT_BOOL, MoveColumns, ControlState::moveColumns)
    STDMETHODIMP Sort(BSTR columns) override;
    STDMETHODIMP get_SortedBy(BSTR* result) override {
        return Give(result, [&] { return entry_.SortedBy(); });
    }
    QVX_FIELD(VARIANT_BOOL, ContextMenu, ControlState::contextMenu)
    // Files
    STDMETHODIMP ExportFile(BSTR fileName, BSTR format, BSTR separator, BSTR encoding,
                            VARIANT_BOOL selectedOnly) override;
    STDMETHODIMP ImportCsv(BSTR fileName, BSTR separator, BSTR encoding, VARIANT_BOOL hasHeader, long* result) override;
    // Printing
    STDMETHODIMP PrintGrid(BSTR title, BSTR printer, BSTR fileName, VARIANT_BOOL fitToWidth, long* result) override;
    STDMETHODIMP PrintPreview(BSTR title, VARIANT_BOOL fitToWidth, long* result) override;
    STDMETHODIMP ExportPages(BSTR fileName, BSTR title, VARIANT_BOOL fitToWidth, long* result) override;
    // Rows and their records
    QVX_PROPERTY(VARIANT_BOOL, TrackRows, EntryGrid)
    QVX_PROPERTY(VARIANT_BOOL, MarkChanged, EntryGrid)
    STDMETHODIMP get_RowState(long row, GridRowState* result) override;
    STDMETHODIMP NextChanged(long row, long* result) override {
        return Give(result, [&] { return entry_.States().NextChanged(static_cast<int>(row)); });
    }
    STDMETHODIMP get_OriginalText(long row, long col, BSTR* result) override;
    STDMETHODIMP get_DeletedRows(long* result) override;
    STDMETHODIMP get_DeletedText(long index, long col, BSTR* result) override;
    STDMETHODIMP AcceptChanges() override;
    STDMETHODIMP LoadArray(VARIANT records) override;
    STDMETHODIMP ToArray(VARIANT* result) override;
    STDMETHODIMP Append(IDispatch* records) override;
    STDMETHODIMP Apply(IDispatch* records, BSTR keyFields, long* result) override;
    QVX_FIELD(BSTR, BindFields, ControlState::bindFields)
    // Finding and replacing
    QVX_PROPERTY(VARIANT_BOOL, FindBar, EntryGrid)
    STDMETHODIMP Find(BSTR text, GridFind options, VARIANT_BOOL forward, VARIANT_BOOL* result) override;
    STDMETHODIMP ReplaceAll(BSTR text, BSTR with, GridFind options, long* result) override;
    STDMETHODIMP FindCount(BSTR text, GridFind options, long* result) override;
    // Filtering
    QVX_PROPERTY(VARIANT_BOOL, FilterRow, EntryGrid)
    QVX_PROPERTY(BSTR, Filter, EntryGrid)
    STDMETHODIMP get_FilteredRows(long* result) override;
    STDMETHODIMP get_RowShown(long row, VARIANT_BOOL* result) override;
    STDMETHODIMP RefilterRows() override;
    // Lists and the mouse
    QVX_PROPERTY(BSTR, UserLayout, EntryGrid)
    QVX_PROPERTY(BSTR, ColumnFormats, EntryGrid)
    QVX_PROPERTY(BSTR, Footer, EntryGrid)
    STDMETHODIMP get_FooterText(long col, BSTR* result) override {
        return Give(result, [&] { return entry_.FooterText(static_cast<int>(col)); });
    }
    QVX_PROPERTY(GridListArrows, ListArrows, EntryGrid)
    QVX_PROPERTY(GridListMatch, ListMatch, EntryGrid)
    QVX_FIELD(VARIANT_BOOL, ListClickCommits, ControlState::listClickCommits)
    QVX_FIELD(VARIANT_BOOL, KeepEditing, ControlState::keepEditing)
    QVX_FIELD(VARIANT_BOOL, FitColumns, ControlState::fitColumns)
    // Columns as objects
    STDMETHODIMP get_Columns(IGridColumns** result) override {
        return Give(result, [&] { return columns_.Get(); });
    }
    // The inner grid's members
    QVX_INDEXED_PROPERTY(BSTR, TextArray, flexgrid::Grid)
    STDMETHODIMP get_TextMatrix(long row, long col, BSTR* result) override {
        return GetMember(result, &flexgrid::Grid::TextMatrix, row, col);
    }
    STDMETHODIMP put_TextMatrix(long row, long col, BSTR value) override {
        return PutMember(u"TextMatrix", &flexgrid::Grid::SetTextMatrix, row, col, value);
    }
    STDMETHODIMP get_Rows(long* result) override { return GetMember(result, &flexgrid::Grid::Rows); }
    STDMETHODIMP put_Rows(long value) override { return PutCount(u"Rows", &flexgrid::Grid::SetRows, value); }
    STDMETHODIMP get_Cols(long* result) override { return GetMember(result, &flexgrid::Grid::Cols); }
    STDMETHODIMP put_Cols(long value) override { return PutCount(u"Cols", &flexgrid::Grid::SetCols, value); }
    STDMETHODIMP get_FixedCols(long* result) override { return GetMember(result, &flexgrid::Grid::FixedCols); }
    STDMETHODIMP put_FixedCols(long value) override {
        return PutCount(u"FixedCols", &flexgrid::Grid::SetFixedCols, value);
    }
    STDMETHODIMP get_FixedRows(long* result) override { return GetMember(result, &flexgrid::Grid::FixedRows); }
    STDMETHODIMP put_FixedRows(long value) override {
        return PutCount(u"FixedRows", &flexgrid::Grid::SetFixedRows, value);
    }
    QVX_PROPERTY(long, FrozenCols, flexgrid::Grid)
    QVX_PROPERTY(OLE_COLOR, BackColorBkg, flexgrid::Grid)
    QVX_PROPERTY(GridResizing, AllowUserResizing, flexgrid::Grid)
    QVX_PROPERTY(GridAppearance, Appearance, flexgrid::Grid)
    QVX_PROPERTY(OLE_COLOR, BackColor, flexgrid::Grid)
    QVX_PROPERTY(OLE_COLOR, BackColorSel, flexgrid::Grid)
    QVX_PROPERTY(GridFocusRect, FocusRect, flexgrid::Grid)
    QVX_PROPERTY(OLE_COLOR, ForeColor, flexgrid::Grid)
    QVX_PROPERTY(OLE_COLOR, ForeColorFixed, flexgrid::Grid)
    QVX_PROPERTY(OLE_COLOR, ForeColorSel, flexgrid::Grid)
    QVX_PROPERTY(BSTR, FormatString, flexgrid::Grid)
    QVX_PROPERTY(OLE_COLOR, GridColor, flexgrid::Grid)
    QVX_PROPERTY(OLE_COLOR, GridColorFixed, flexgrid::Grid)
    QVX_PROPERTY(GridLineStyle, GridLines, flexgrid::Grid)
    QVX_PROPERTY(GridLineStyle, GridLinesFixed, flexgrid::Grid)
    QVX_PROPERTY(GridHighLight, HighLight, flexgrid::Grid)
    QVX_PROPERTY(GridMerge, MergeCells, flexgrid::Grid)
    QVX_PROPERTY(GridScrollBars, ScrollBars, flexgrid::Grid)
    QVX_PROPERTY(VARIANT_BOOL, ScrollTrack, flexgrid::Grid)
    QVX_PROPERTY(GridSelection, SelectionMode, flexgrid::Grid)
    QVX_PROPERTY(OLE_COLOR, BackColorFixed, flexgrid::Grid)
    QVX_PROPERTY(VARIANT_BOOL, Enabled, flexgrid::Grid)
    QVX_PROPERTY(GridBorder, BorderStyle, flexgrid::Grid)
    QVX_INDEXED_PROPERTY(short, ColAlignment, flexgrid::Grid)
    QVX_INDEXED_PROPERTY(long, ColWidth, flexgrid::Grid)
    QVX_PROPERTY(long, Row, flexgrid::Grid)
    QVX_PROPERTY(long, Col, flexgrid::Grid)
    STDMETHODIMP get_hWnd(long* result) override;
    STDMETHODIMP get_hDC(long* result) override;

    // An open edit ends while its window is still in place.
    STDMETHODIMP InPlaceDeactivate() override;
    STDMETHODIMP UIDeactivate() override;
    STDMETHODIMP Close(DWORD saveOption) override;

    const PropertyTable& Properties() override;

    // For the objects of columns.
    EntryGrid& Entry() { return entry_; }
    ComPtr<IUnknown> HoldControl() { return ControlBase::KeepAlive(); }
    HRESULT SetColumn(int col, ColumnSetting setting, int value);
    HRESULT ShowColumn(int col, bool shown);
    HRESULT RenameColumn(int col, TextView caption);

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
    std::span<const CLSID> PropertyPages() const override;
    void OnTerminate() override;

  private:
    friend MemberAccess;
    friend PropertyRows<ComboGridControl>;

    ~ComboGridControl() override = default;

    // EntryGridEvents
    void BeforeCellChange(int row, int col, const Text& data, bool& cancel) override;
    void AfterCellChange(int row, int col, const Text& oldData, const Text& newData, bool& cancel) override;
    void OnError(int number, TextView description, bool& response) override;
    void ListChange(int row, int col, const Text& data) override;
    void ListClick(int row, int col, const Text& data) override;
    void Raise(TextView event, EventArguments arguments) override { Fire(event, std::move(arguments)); }
    void KeyDown(short& keyCode, short& shift) override {
        Fire(u"KeyDown", EventArguments().InOut(keyCode).InOut(shift));
    }
    void KeyUp(short& keyCode, short shift) override { Fire(u"KeyUp", EventArguments().InOut(keyCode).InOut(shift)); }
    // The inner grid's window paints itself; without one the control paints the picture.
    void Invalidated(flexgrid::GridChange, const flexgrid::CellRange&) override {
        if (!IsCovered()) Invalidate();
    }
    void OnDelete(int row) override;
    bool Listens() override { return HasListeners(); }
    bool RaisesEvents() override { return ControlBase::RaisesEvents(); }
    void BeforeSort(const Text& columns, bool& cancel) override;
    void Sorted(const Text& columns) override;
    void ColumnMoving(int col, int position, bool& cancel) override;
    void ColumnsMoved() override;
    void ColumnMoved(int col, int position) override;
    void BeforeMenu(int row, int col, Text& items, bool& cancel) override;
    void MenuCommandChosen(const Text& key, int col) override;
    void Filtered(long shown, long total) override;
    void BindProgress(long loaded, long total, bool& cancel) override;
    void ExportProgress(long done, long total, bool& cancel) override;
    void PrintProgress(long page, long pages, bool& cancel) override;
    void ImportReport(long line, const Text& column, const Text& text, TextView reason) override;
    void ApplyConflict(const RecordConflict& conflict, bool& overwrite, bool& cancel) override;
    void ReportError(int number, TextView description) override;
    bool Say(TextView prompt, const dialogs::MessageKind& kind) override;
    void FocusMovesTo(HWND moving) override { ControlBase::FocusMovesTo(moving); }
    bool MoveFocusOn(bool backwards) override { return ControlBase::MoveFocusOn(backwards); }
    HWND ControlWindow() override { return EnsureWindow(); }
    Text AccessibleName() override;
    ComPtr<IUnknown> KeepAlive() override { return ControlBase::KeepAlive(); }

    ControlState& State() { return entry_.State(); }
    flexgrid::Grid& Model() { return entry_.Model(); }
    ControlState& PartOf(std::type_identity<ControlState>) { return State(); }
    EntryGrid& PartOf(std::type_identity<EntryGrid>) { return entry_; }
    template <class Base>
    requires std::is_base_of_v<Base, flexgrid::Grid> flexgrid::Grid& PartOf(std::type_identity<Base>) {
        return Model();
    }
    void Prepare();
    void RebuildColIndex();
    void FocusCell(int row, int col);
    // Returns the focus to a grid that had it before its rows were loaded.
    void FocusAgain();

    // Adding and removing rows and columns does not end an open edit.
    HRESULT PutCount(TextView name, void (flexgrid::Grid::*member)(int), long value) {
        return Put(name, [&] { entry_.ChangeRows([&] { (Model().*member)(static_cast<int>(value)); }); });
    }
    template <class Leave>
    HRESULT CommitThen(Leave leave);

    // Executes a method whose run-time errors are reported to the user instead of the caller.
    template <class Body>
    HRESULT Reporting(Body body) {
        return Guard([&] {
            const auto keep = ControlBase::KeepAlive();
            try {
                body();
            } catch (const ComError&) {
                throw;  // the call itself was wrong, for example with a null argument
            } catch (...) {
                const RunTimeError error = CurrentError();
                if (MayShow(error.Number(), error.Description())) ReportError(error.Number(), error.Description());
            }
        });
    }
    // Notifies the host of a failure first, if it wants that, and returns whether the user is shown it. The number is 0
    // for data that fails a check.
    bool MayShow(int number, TextView description);
    AskHost HostCheck() override;
    UniqueMemoryDc ChosenPrinter();
    int PrintOn(UniqueMemoryDc printer, const Text& title, const Text& fileName, bool fitToWidth);
    HRESULT PutRules(TextView name, Text ControlState::*field, BSTR value) {
        const HRESULT result = PutMember(name, field, value);
        entry_.RefreshMarks();
        return result;
    }

    EntryGrid entry_;
    ComPtr<IDispatch> colIndex_;
    bool readForDesign_ = false;  // and has not been shown in run mode since
    ColumnsAutomation columns_{*this};
};

}  // namespace qvx::grid
