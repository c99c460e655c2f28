#include "widgets/flexgrid/flexgrid_object.h"

#include <olectl.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <type_traits>

#include "Qvx.h"
#include "com/connection_points.h"
#include "com/dispatch.h"
#include "com/font_object.h"
#include "com/object.h"
#include "common/run_time_error.h"
#include "widgets/flexgrid/grid_reach_object.h"
#include "win/picture_object.h"

namespace qvx::flexgrid {

namespace {

// Dispatch numbers of the grid's own events.
namespace events {
constexpr DISPID enterCell = 1;
constexpr DISPID leaveCell = 2;
constexpr DISPID rowColChange = 3;
constexpr DISPID selChange = 4;
constexpr DISPID scroll = 5;
constexpr DISPID compare = 6;
}  // namespace events

constexpr short gridVersion = 100;

// A very wide cell may extend from one end of the range to beyond the other.
int Distance(int from, int to) {
    return static_cast<int>(std::min<std::int64_t>(static_cast<std::int64_t>(to) - from, INT32_MAX));
}

}  // namespace

class FlexGridObject final
    : public ComObject<Dispatch<IFlexGrid>, ErrorInfoSupport<IFlexGrid>, IConnectionPointContainer, IProvideClassInfo2>,
      private GridReach,
      private GridWindowEvents,
      private GridListener {
  public:
    FlexGridObject(FlexGridWindow& window, std::function<bool()> raisesEvents)
        : GridReach(window),
          raisesEvents_(std::move(raisesEvents)),
          points_(this, __uuidof(__FlexGrid)),
          font_([this] { OnFontChanged(); }) {
        window.AddEvents(this);
        window.Model().AddListener(this);
    }

    void Detach() {
        if (window_) {
            window_->RemoveEvents(this);
            window_->Model().RemoveListener(this);
            window_ = nullptr;
        }
    }

    // IConnectionPointContainer, IProvideClassInfo2
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** out) override { return points_.Enumerate(out); }
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** out) override { return points_.Find(iid, out); }
    STDMETHODIMP GetClassInfo(ITypeInfo** info) override {
        return Give(info, [] { return TypeInfoOf(__uuidof(FlexGrid)).detach(); });
    }
    STDMETHODIMP GetGUID(DWORD kind, GUID* guid) override {
        return Guard([&] {
            *Required(guid) = kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID ? __uuidof(__FlexGrid) : GUID{};
            return kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID ? S_OK : E_INVALIDARG;
        });
    }

    // Members that pass on calls to the model or the window unchanged.
    // clang-format off
    STDMETHODIMP get_Rows(long* result) override { return Get(result, &Grid::Rows); }
    STDMETHODIMP put_Rows(long value) override { return Put(&Grid::SetRows, value); }
    STDMETHODIMP get_Cols(long* result) override { return Get(result, &Grid::Cols); }
    STDMETHODIMP put_Cols(long value) override { return Put(&Grid::SetCols, value); }
    STDMETHODIMP get_FixedRows(long* result) override { return Get(result, &Grid::FixedRows); }
    STDMETHODIMP put_FixedRows(long value) override { return Put(&Grid::SetFixedRows, value); }
    STDMETHODIMP get_FixedCols(long* result) override { return Get(result, &Grid::FixedCols); }
    STDMETHODIMP put_FixedCols(long value) override { return Put(&Grid::SetFixedCols, value); }
    STDMETHODIMP get_Row(long* result) override { return Get(result, &Grid::Row); }
    STDMETHODIMP put_Row(long value) override { return Put(&Grid::SetRow, value); }
    STDMETHODIMP get_Col(long* result) override { return Get(result, &Grid::Col); }
    STDMETHODIMP put_Col(long value) override { return Put(&Grid::SetCol, value); }
    STDMETHODIMP get_RowSel(long* result) override { return Get(result, &Grid::RowSel); }
    STDMETHODIMP put_RowSel(long value) override { return Put(&Grid::SetRowSel, value); }
    STDMETHODIMP get_ColSel(long* result) override { return Get(result, &Grid::ColSel); }
    STDMETHODIMP put_ColSel(long value) override { return Put(&Grid::SetColSel, value); }
    STDMETHODIMP get_Text(BSTR* result) override { return Get(result, &Grid::Text); }
    STDMETHODIMP put_Text(BSTR value) override { return Put(&Grid::SetText, value); }
    STDMETHODIMP get_TextMatrix(long row, long col, BSTR* result) override { return Get(result, &Grid::TextMatrix, row, col); }
    STDMETHODIMP put_TextMatrix(long row, long col, BSTR value) override { return Put(&Grid::SetTextMatrix, row, col, value); }
    STDMETHODIMP get_TextArray(long index, BSTR* result) override { return Get(result, &Grid::TextArray, index); }
    STDMETHODIMP put_TextArray(long index, BSTR value) override { return Put(&Grid::SetTextArray, index, value); }
    STDMETHODIMP get_Clip(BSTR* result) override { return Get(result, &Grid::Clip); }
    STDMETHODIMP put_Clip(BSTR value) override { return Put(&Grid::SetClip, value); }
    STDMETHODIMP RemoveItem(long index) override { return Put(&Grid::RemoveItem, index); }
    STDMETHODIMP Clear() override { return Put(&Grid::Clear); }
    STDMETHODIMP get_FormatString(BSTR* result) override { return Get(result, &Grid::FormatString); }
    STDMETHODIMP put_FormatString(BSTR value) override { return Put(&Grid::SetFormatString, value); }
    STDMETHODIMP get_ColWidth(long index, long* result) override { return Get(result, &Grid::ColWidth, index); }
    STDMETHODIMP put_ColWidth(long index, long value) override { return Put(&Grid::SetColWidth, index, value); }
    STDMETHODIMP get_RowHeight(long index, long* result) override { return Get(result, &Grid::RowHeight, index); }
    STDMETHODIMP put_RowHeight(long index, long value) override { return Put(&Grid::SetRowHeight, index, value); }
    STDMETHODIMP get_RowHeightMin(long* result) override { return Get(result, &Grid::RowHeightMin); }
    STDMETHODIMP put_RowHeightMin(long value) override { return Put(&Grid::SetRowHeightMin, value); }
    STDMETHODIMP get_ColAlignment(long index, short* result) override { return Get(result, &Grid::ColAlignment, index); }
    STDMETHODIMP put_ColAlignment(long index, short value) override { return Put(&Grid::SetColAlignment, index, value); }
    STDMETHODIMP get_FixedAlignment(long index, short* result) override { return Get(result, &Grid::FixedAlignment, index); }
    STDMETHODIMP put_FixedAlignment(long index, short value) override { return Put(&Grid::SetFixedAlignment, index, value); }
    STDMETHODIMP get_ColData(long index, long* result) override { return Get(result, &Grid::ColData, index); }
    STDMETHODIMP put_ColData(long index, long value) override { return Put(&Grid::SetColData, index, value); }
    STDMETHODIMP get_RowData(long index, long* result) override { return Get(result, &Grid::RowData, index); }
    STDMETHODIMP put_RowData(long index, long value) override { return Put(&Grid::SetRowData, index, value); }
    STDMETHODIMP put_ColPosition(long index, long value) override { return Put(&Grid::SetColPosition, index, value); }
    STDMETHODIMP put_RowPosition(long index, long value) override { return Put(&Grid::SetRowPosition, index, value); }
    STDMETHODIMP get_CellAlignment(short* result) override { return Get(result, &Grid::CellAlignment); }
    STDMETHODIMP put_CellAlignment(short value) override { return Put(&Grid::SetCellAlignment, value); }
    STDMETHODIMP get_CellBackColor(OLE_COLOR* result) override { return Get(result, &Grid::CellBackColor); }
    STDMETHODIMP put_CellBackColor(OLE_COLOR value) override { return Put(&Grid::SetCellBackColor, value); }
    STDMETHODIMP get_CellForeColor(OLE_COLOR* result) override { return Get(result, &Grid::CellForeColor); }
    STDMETHODIMP put_CellForeColor(OLE_COLOR value) override { return Put(&Grid::SetCellForeColor, value); }
    STDMETHODIMP get_CellFontName(BSTR* result) override { return Get(result, &Grid::CellFontName); }
    STDMETHODIMP put_CellFontName(BSTR value) override { return Put(&Grid::SetCellFontName, value); }
    STDMETHODIMP get_CellFontSize(float* result) override { return Get(result, &Grid::CellFontSize); }
    STDMETHODIMP put_CellFontSize(float value) override { return Put(&Grid::SetCellFontSize, value); }
    STDMETHODIMP get_CellFontBold(VARIANT_BOOL* result) override { return Get(result, &Grid::CellFontBold); }
    STDMETHODIMP put_CellFontBold(VARIANT_BOOL value) override { return Put(&Grid::SetCellFontBold, value); }
    STDMETHODIMP get_CellFontItalic(VARIANT_BOOL* result) override { return Get(result, &Grid::CellFontItalic); }
    STDMETHODIMP put_CellFontItalic(VARIANT_BOOL value) override { return Put(&Grid::SetCellFontItalic, value); }
    STDMETHODIMP get_CellFontUnderline(VARIANT_BOOL* result) override { return Get(result, &Grid::CellFontUnderline); }
    STDMETHODIMP put_CellFontUnderline(VARIANT_BOOL value) override { return Put(&Grid::SetCellFontUnderline, value); }
    STDMETHODIMP get_CellFontStrikeThrough(VARIANT_BOOL* result) override { return Get(result, &Grid::CellFontStrikeThrough); }
    STDMETHODIMP put_CellFontStrikeThrough(VARIANT_BOOL value) override { return Put(&Grid::SetCellFontStrikeThrough, value); }
    STDMETHODIMP get_CellFontWidth(float* result) override { return Get(result, &Grid::CellFontWidth); }
    STDMETHODIMP put_CellFontWidth(float value) override { return Put(&Grid::SetCellFontWidth, value); }
    STDMETHODIMP get_CellPictureAlignment(short* result) override { return Get(result, &Grid::CellPictureAlignment); }
    STDMETHODIMP put_CellPictureAlignment(short value) override { return Put(&Grid::SetCellPictureAlignment, value); }
    STDMETHODIMP get_CellTextStyle(::GridTextStyle* result) override { return Get(result, &Grid::CellTextStyle); }
    STDMETHODIMP put_CellTextStyle(::GridTextStyle value) override { return Put(&Grid::SetCellTextStyle, value); }
    STDMETHODIMP get_Appearance(::GridAppearance* result) override { return Get(result, &Grid::Appearance); }
    STDMETHODIMP put_Appearance(::GridAppearance value) override { return Put(&Grid::SetAppearance, value); }
    STDMETHODIMP get_BorderStyle(::GridBorder* result) override { return Get(result, &Grid::BorderStyle); }
    STDMETHODIMP put_BorderStyle(::GridBorder value) override { return Put(&Grid::SetBorderStyle, value); }
    STDMETHODIMP get_GridLines(::GridLineStyle* result) override { return Get(result, &Grid::GridLines); }
    STDMETHODIMP put_GridLines(::GridLineStyle value) override { return Put(&Grid::SetGridLines, value); }
    STDMETHODIMP get_GridLinesFixed(::GridLineStyle* result) override { return Get(result, &Grid::GridLinesFixed); }
    STDMETHODIMP put_GridLinesFixed(::GridLineStyle value) override { return Put(&Grid::SetGridLinesFixed, value); }
    STDMETHODIMP get_GridLineWidth(short* result) override { return Get(result, &Grid::GridLineWidth); }
    STDMETHODIMP put_GridLineWidth(short value) override { return Put(&Grid::SetGridLineWidth, value); }
    STDMETHODIMP get_FocusRect(::GridFocusRect* result) override { return Get(result, &Grid::FocusRect); }
    STDMETHODIMP put_FocusRect(::GridFocusRect value) override { return Put(&Grid::SetFocusRect, value); }
    STDMETHODIMP get_HighLight(::GridHighLight* result) override { return Get(result, &Grid::HighLight); }
    STDMETHODIMP put_HighLight(::GridHighLight value) override { return Put(&Grid::SetHighLight, value); }
    STDMETHODIMP get_SelectionMode(::GridSelection* result) override { return Get(result, &Grid::SelectionMode); }
    STDMETHODIMP put_SelectionMode(::GridSelection value) override { return Put(&Grid::SetSelectionMode, value); }
    STDMETHODIMP get_ScrollBars(::GridScrollBars* result) override { return Get(result, &Grid::ScrollBars); }
    STDMETHODIMP put_ScrollBars(::GridScrollBars value) override { return Put(&Grid::SetScrollBars, value); }
    STDMETHODIMP get_AllowUserResizing(::GridResizing* result) override { return Get(result, &Grid::AllowUserResizing); }
    STDMETHODIMP put_AllowUserResizing(::GridResizing value) override { return Put(&Grid::SetAllowUserResizing, value); }
    STDMETHODIMP get_FillStyle(::GridFill* result) override { return Get(result, &Grid::FillStyle); }
    STDMETHODIMP put_FillStyle(::GridFill value) override { return Put(&Grid::SetFillStyle, value); }
    STDMETHODIMP get_TextStyle(::GridTextStyle* result) override { return Get(result, &Grid::TextStyle); }
    STDMETHODIMP put_TextStyle(::GridTextStyle value) override { return Put(&Grid::SetTextStyle, value); }
    STDMETHODIMP get_TextStyleFixed(::GridTextStyle* result) override { return Get(result, &Grid::TextStyleFixed); }
    STDMETHODIMP put_TextStyleFixed(::GridTextStyle value) override { return Put(&Grid::SetTextStyleFixed, value); }
    STDMETHODIMP get_MergeCells(::GridMerge* result) override { return Get(result, &Grid::MergeCells); }
    STDMETHODIMP put_MergeCells(::GridMerge value) override { return Put(&Grid::SetMergeCells, value); }
    STDMETHODIMP get_MergeRow(long index, VARIANT_BOOL* result) override { return Get(result, &Grid::MergeRow, index); }
    STDMETHODIMP put_MergeRow(long index, VARIANT_BOOL value) override { return Put(&Grid::SetMergeRow, index, value); }
    STDMETHODIMP get_MergeCol(long index, VARIANT_BOOL* result) override { return Get(result, &Grid::MergeCol, index); }
    STDMETHODIMP put_MergeCol(long index, VARIANT_BOOL value) override { return Put(&Grid::SetMergeCol, index, value); }
    STDMETHODIMP put_Sort(::GridSort value) override { return Put(&Grid::Sort, value); }
    STDMETHODIMP get_RowIsVisible(long index, VARIANT_BOOL* result) override { return Get(result, &FlexGridWindow::RowIsVisible, index); }
    STDMETHODIMP get_ColIsVisible(long index, VARIANT_BOOL* result) override { return Get(result, &FlexGridWindow::ColIsVisible, index); }
    STDMETHODIMP get_RowPos(long index, long* result) override { return Get(result, &FlexGridWindow::RowPos, index); }
    STDMETHODIMP get_ColPos(long index, long* result) override { return Get(result, &FlexGridWindow::ColPos, index); }
    STDMETHODIMP get_TopRow(long* result) override { return Get(result, &Grid::TopRow); }
    STDMETHODIMP put_TopRow(long value) override { return Put(&FlexGridWindow::SetTopRow, value); }
    STDMETHODIMP get_LeftCol(long* result) override { return Get(result, &Grid::LeftCol); }
    STDMETHODIMP put_LeftCol(long value) override { return Put(&FlexGridWindow::SetLeftCol, value); }
    STDMETHODIMP get_MouseRow(long* result) override { return Get(result, &FlexGridWindow::MouseRow); }
    STDMETHODIMP get_MouseCol(long* result) override { return Get(result, &FlexGridWindow::MouseCol); }
    STDMETHODIMP get_WordWrap(VARIANT_BOOL* result) override { return Get(result, &Grid::WordWrap); }
    STDMETHODIMP put_WordWrap(VARIANT_BOOL value) override { return Put(&Grid::SetWordWrap, value); }
    STDMETHODIMP get_Redraw(VARIANT_BOOL* result) override { return Get(result, &Grid::Redraw); }
    STDMETHODIMP put_Redraw(VARIANT_BOOL value) override { return Put(&Grid::SetRedraw, value); }
    STDMETHODIMP get_AllowBigSelection(VARIANT_BOOL* result) override { return Get(result, &Grid::AllowBigSelection); }
    STDMETHODIMP put_AllowBigSelection(VARIANT_BOOL value) override { return Put(&Grid::SetAllowBigSelection, value); }
    STDMETHODIMP get_ScrollTrack(VARIANT_BOOL* result) override { return Get(result, &Grid::ScrollTrack); }
    STDMETHODIMP put_ScrollTrack(VARIANT_BOOL value) override { return Put(&Grid::SetScrollTrack, value); }
    STDMETHODIMP get_RightToLeft(VARIANT_BOOL* result) override { return Get(result, &Grid::RightToLeft); }
    STDMETHODIMP put_RightToLeft(VARIANT_BOOL value) override { return Put(&Grid::SetRightToLeft, value); }
    STDMETHODIMP get_BackColor(OLE_COLOR* result) override { return Get(result, &Grid::BackColor); }
    STDMETHODIMP put_BackColor(OLE_COLOR value) override { return Put(&Grid::SetBackColor, value); }
    STDMETHODIMP get_ForeColor(OLE_COLOR* result) override { return Get(result, &Grid::ForeColor); }
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override { return Put(&Grid::SetForeColor, value); }
    STDMETHODIMP get_BackColorBkg(OLE_COLOR* result) override { return Get(result, &Grid::BackColorBkg); }
    STDMETHODIMP put_BackColorBkg(OLE_COLOR value) override { return Put(&Grid::SetBackColorBkg, value); }
    STDMETHODIMP get_BackColorFixed(OLE_COLOR* result) override { return Get(result, &Grid::BackColorFixed); }
    STDMETHODIMP put_BackColorFixed(OLE_COLOR value) override { return Put(&Grid::SetBackColorFixed, value); }
    STDMETHODIMP get_ForeColorFixed(OLE_COLOR* result) override { return Get(result, &Grid::ForeColorFixed); }
    STDMETHODIMP put_ForeColorFixed(OLE_COLOR value) override { return Put(&Grid::SetForeColorFixed, value); }
    STDMETHODIMP get_BackColorSel(OLE_COLOR* result) override { return Get(result, &Grid::BackColorSel); }
    STDMETHODIMP put_BackColorSel(OLE_COLOR value) override { return Put(&Grid::SetBackColorSel, value); }
    STDMETHODIMP get_ForeColorSel(OLE_COLOR* result) override { return Get(result, &Grid::ForeColorSel); }
    STDMETHODIMP put_ForeColorSel(OLE_COLOR value) override { return Put(&Grid::SetForeColorSel, value); }
    STDMETHODIMP get_GridColor(OLE_COLOR* result) override { return Get(result, &Grid::GridColor); }
    STDMETHODIMP put_GridColor(OLE_COLOR value) override { return Put(&Grid::SetGridColor, value); }
    STDMETHODIMP get_GridColorFixed(OLE_COLOR* result) override { return Get(result, &Grid::GridColorFixed); }
    STDMETHODIMP put_GridColorFixed(OLE_COLOR value) override { return Put(&Grid::SetGridColorFixed, value); }
    STDMETHODIMP get_Enabled(VARIANT_BOOL* result) override { return Get(result, &Grid::Enabled); }
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override { return Put(&Grid::SetEnabled, value); }
    // clang-format on

    STDMETHODIMP AddItem(BSTR item, VARIANT index) override {
        return Guard([&] {
            const auto number = OptionalNumber(index);
            // The number that means the end internally is not a row number that a host can use.
            if (number && static_cast<int>(*number) == Grid::atEnd) {
                throw RunTimeError(errors::invalidRowValue, u"Invalid Row value.");
            }
            const int at = number ? static_cast<int>(*number) : Grid::atEnd;
            const auto held = Shown().Hold();
            Model().AddItem(FromBstr(item), at);
        });
    }

    STDMETHODIMP get_CellLeft(long* result) override {
        return GetCell(result, [](const Rect& cell) { return cell.left; });
    }
    STDMETHODIMP get_CellTop(long* result) override {
        return GetCell(result, [](const Rect& cell) { return cell.top; });
    }
    STDMETHODIMP get_CellWidth(long* result) override {
        return GetCell(result, [](const Rect& cell) { return Distance(cell.left, cell.right); });
    }
    STDMETHODIMP get_CellHeight(long* result) override {
        return GetCell(result, [](const Rect& cell) { return Distance(cell.top, cell.bottom); });
    }

    STDMETHODIMP get_CellPicture(IPictureDisp** result) override {
        return Give(result, [&] {
            const auto picture = Model().CellPicture();
            const auto* object = dynamic_cast<const PictureObject*>(picture.get());
            return object ? object->Get() : nullptr;
        });
    }
    STDMETHODIMP put_CellPicture(IPictureDisp* value) override { return putref_CellPicture(value); }
    STDMETHODIMP putref_CellPicture(IPictureDisp* value) override {
        return Guard([&] {
            const auto held = Shown().Hold();
            auto picture = std::make_shared<const PictureObject>(value);
            Model().SetCellPicture(picture->Empty() ? nullptr : std::move(picture));
        });
    }

    STDMETHODIMP get_Font(IFontDisp** result) override {
        return Give(result, [&] {
            // The control around the grid sets the model's font directly.
            if (font_.Value() != Model().Font()) {
                font_.Load(Model().Font());
            }
            return font_.Get();
        });
    }
    STDMETHODIMP put_Font(IFontDisp* value) override {
        return Guard([&] {
            const auto held = Shown().Hold();
            font_.Set(value, true);
        });
    }
    STDMETHODIMP putref_Font(IFontDisp* value) override {
        return Guard([&] {
            const auto held = Shown().Hold();
            font_.Set(value, false);
        });
    }

    STDMETHODIMP get_Picture(IPictureDisp** result) override {
        return Give(result, [&] {
            const auto held = Shown().Hold();
            const Size size = Shown().OuterSize();
            const WindowDc screen(nullptr);
            BackBuffer buffer;
            if (!buffer.Prepare(screen.Get(), size)) {
                throw RunTimeError(errors::outOfMemory, u"Out of memory");
            }
            Shown().DrawTo(buffer.Dc(), {0, 0, size.width, size.height});
            UniqueBitmap bitmap = buffer.TakeBitmap();
            PICTDESC description{};
            description.cbSizeofstruct = sizeof description;
            description.picType = PICTYPE_BITMAP;
            description.bmp.hbitmap = bitmap.Get();
            ComPtr<IPictureDisp> picture;
            Check(OleCreatePictureIndirect(&description, __uuidof(IPictureDisp), TRUE, picture.put_void()));
            bitmap.Detach();
            return picture.detach();
        });
    }
    // 32 bits, as hosts expect; the system keeps window handles within them.
    STDMETHODIMP get_hWnd(long* result) override {
        return Give(result, [&] { return reinterpret_cast<LONG_PTR>(Shown().Handle()); });
    }
    STDMETHODIMP get_Version(short* result) override {
        return Give(result, [] { return gridVersion; });
    }
    STDMETHODIMP Refresh() override {
        return Guard([&] {
            const auto held = Shown().Hold();
            Shown().Refresh();
        });
    }

  private:
    ~FlexGridObject() override { Detach(); }

    void OnFontChanged() {
        if (window_) {
            const auto held = window_->Hold();
            window_->Model().SetFont(font_.Value());
        }
    }

    // The object must outlive the handlers that it calls.
    void Fire(DISPID event, EventArguments arguments = {}) {
        if (!raisesEvents_()) {
            return;
        }
        const ComPtr<IUnknown> alive(static_cast<IFlexGrid*>(this));
        points_.Fire(event, std::move(arguments));
    }

    // GridWindowEvents
    std::shared_ptr<void> Hold() override { return std::make_shared<ComPtr<IUnknown>>(static_cast<IFlexGrid*>(this)); }
    void Click() override { Fire(DISPID_CLICK); }
    void DblClick() override { Fire(DISPID_DBLCLICK); }
    void KeyDown(short& keyCode, short& shift) override {
        Fire(DISPID_KEYDOWN, EventArguments().InOut(keyCode).In(shift));
    }
    void KeyPress(short& keyAscii) override { Fire(DISPID_KEYPRESS, EventArguments().InOut(keyAscii)); }
    void KeyUp(short& keyCode, short shift) override { Fire(DISPID_KEYUP, EventArguments().InOut(keyCode).In(shift)); }
    void MouseDown(short button, short shift, float x, float y) override {
        Fire(DISPID_MOUSEDOWN, EventArguments().In(button).In(shift).In(x).In(y));
    }
    void MouseMove(short button, short shift, float x, float y) override {
        Fire(DISPID_MOUSEMOVE, EventArguments().In(button).In(shift).In(x).In(y));
    }
    void MouseUp(short button, short shift, float x, float y) override {
        Fire(DISPID_MOUSEUP, EventArguments().In(button).In(shift).In(x).In(y));
    }
    void Scroll() override { Fire(events::scroll); }

    // GridListener
    void LeaveCell() override { Fire(events::leaveCell); }
    void EnterCell() override { Fire(events::enterCell); }
    void RowColChange() override { Fire(events::rowColChange); }
    void SelChange() override { Fire(events::selChange); }
    bool Compare(int row1, int row2, int& result) override {
        if (!points_.HasListeners()) {
            return false;
        }
        short order = 0;
        Fire(events::compare, EventArguments().In(row1).In(row2).InOut(order));
        result = order;
        return true;
    }

    std::function<bool()> raisesEvents_;  // called only while there is a window
    ConnectionPoints points_;
    FontProperty font_;
};

GridAutomation::GridAutomation(FlexGridWindow& window, std::function<bool()> raisesEvents)
    : window_(window), raisesEvents_(std::move(raisesEvents)) {}

GridAutomation::~GridAutomation() {
    if (object_) {
        object_->Detach();
    }
}

IDispatch* GridAutomation::Get() {
    if (!object_) {
        object_ = MakeObject<FlexGridObject>(window_, raisesEvents_);
    }
    return static_cast<IFlexGrid*>(object_.copy());
}

}  // namespace qvx::flexgrid
