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
#include "widgets/flexgrid/grid_event_source_object.h"
#include "widgets/flexgrid/grid_reach_object.h"
#include "win/picture_object.h"

namespace qvx::flexgrid {

namespace {

constexpr short gridVersion = 100;

// A very wide cell may extend from one end of the range to beyond the other.
int Distance(int from, int to) {
    return static_cast<int>(std::min<std::int64_t>(static_cast<std::int64_t>(to) - from, INT32_MAX));
}

}  // namespace

class FlexGridObject final
    : public ComObject<Dispatch<IFlexGrid>, ErrorInfoSupport<IFlexGrid>, IConnectionPointContainer, IProvideClassInfo2>,
      private GridReach,
      private GridEventSource {
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
    QVX_PROPERTY(long, Rows, Grid)
    QVX_PROPERTY(long, Cols, Grid)
    QVX_PROPERTY(long, FixedRows, Grid)
    QVX_PROPERTY(long, FixedCols, Grid)
    QVX_PROPERTY(long, Row, Grid)
    QVX_PROPERTY(long, Col, Grid)
    QVX_PROPERTY(long, RowSel, Grid)
    QVX_PROPERTY(long, ColSel, Grid)
    QVX_PROPERTY(BSTR, Text, Grid)
    STDMETHODIMP get_TextMatrix(long row, long col, BSTR* result) override { return GetMember(result, &Grid::TextMatrix, row, col); }
    STDMETHODIMP put_TextMatrix(long row, long col, BSTR value) override { return PutMember(u"TextMatrix", &Grid::SetTextMatrix, row, col, value); }
    QVX_INDEXED_PROPERTY(BSTR, TextArray, Grid)
    QVX_PROPERTY(BSTR, Clip, Grid)
    STDMETHODIMP RemoveItem(long index) override { return PutMember(u"RemoveItem", &Grid::RemoveItem, index); }
    STDMETHODIMP Clear() override { return PutMember(u"Clear", &Grid::Clear); }
    QVX_PROPERTY(BSTR, FormatString, Grid)
    QVX_INDEXED_PROPERTY(long, ColWidth, Grid)
    QVX_INDEXED_PROPERTY(long, RowHeight, Grid)
    QVX_PROPERTY(long, RowHeightMin, Grid)
    QVX_INDEXED_PROPERTY(short, ColAlignment, Grid)
    QVX_INDEXED_PROPERTY(short, FixedAlignment, Grid)
    QVX_INDEXED_PROPERTY(long, ColData, Grid)
    QVX_INDEXED_PROPERTY(long, RowData, Grid)
    STDMETHODIMP put_ColPosition(long index, long value) override { return PutMember(u"ColPosition", &Grid::SetColPosition, index, value); }
    STDMETHODIMP put_RowPosition(long index, long value) override { return PutMember(u"RowPosition", &Grid::SetRowPosition, index, value); }
    QVX_PROPERTY(short, CellAlignment, Grid)
    QVX_PROPERTY(OLE_COLOR, CellBackColor, Grid)
    QVX_PROPERTY(OLE_COLOR, CellForeColor, Grid)
    QVX_PROPERTY(BSTR, CellFontName, Grid)
    QVX_PROPERTY(float, CellFontSize, Grid)
    QVX_PROPERTY(VARIANT_BOOL, CellFontBold, Grid)
    QVX_PROPERTY(VARIANT_BOOL, CellFontItalic, Grid)
    QVX_PROPERTY(VARIANT_BOOL, CellFontUnderline, Grid)
    QVX_PROPERTY(VARIANT_BOOL, CellFontStrikeThrough, Grid)
    QVX_PROPERTY(float, CellFontWidth, Grid)
    QVX_PROPERTY(short, CellPictureAlignment, Grid)
    QVX_PROPERTY(::GridTextStyle, CellTextStyle, Grid)
    QVX_PROPERTY(::GridAppearance, Appearance, Grid)
    QVX_PROPERTY(::GridBorder, BorderStyle, Grid)
    QVX_PROPERTY(::GridLineStyle, GridLines, Grid)
    QVX_PROPERTY(::GridLineStyle, GridLinesFixed, Grid)
    QVX_PROPERTY(short, GridLineWidth, Grid)
    QVX_PROPERTY(::GridFocusRect, FocusRect, Grid)
    QVX_PROPERTY(::GridHighLight, HighLight, Grid)
    QVX_PROPERTY(::GridSelection, SelectionMode, Grid)
    QVX_PROPERTY(::GridScrollBars, ScrollBars, Grid)
    QVX_PROPERTY(::GridResizing, AllowUserResizing, Grid)
    QVX_PROPERTY(::GridFill, FillStyle, Grid)
    QVX_PROPERTY(::GridTextStyle, TextStyle, Grid)
    QVX_PROPERTY(::GridTextStyle, TextStyleFixed, Grid)
    QVX_PROPERTY(::GridMerge, MergeCells, Grid)
    QVX_INDEXED_PROPERTY(VARIANT_BOOL, MergeRow, Grid)
    QVX_INDEXED_PROPERTY(VARIANT_BOOL, MergeCol, Grid)
    STDMETHODIMP put_Sort(::GridSort value) override { return PutMember(u"Sort", &Grid::Sort, value); }
    STDMETHODIMP get_RowIsVisible(long index, VARIANT_BOOL* result) override { return GetMember(result, &FlexGridWindow::RowIsVisible, index); }
    STDMETHODIMP get_ColIsVisible(long index, VARIANT_BOOL* result) override { return GetMember(result, &FlexGridWindow::ColIsVisible, index); }
    STDMETHODIMP get_RowPos(long index, long* result) override { return GetMember(result, &FlexGridWindow::RowPos, index); }
    STDMETHODIMP get_ColPos(long index, long* result) override { return GetMember(result, &FlexGridWindow::ColPos, index); }
    STDMETHODIMP get_TopRow(long* result) override { return GetMember(result, &Grid::TopRow); }
    STDMETHODIMP put_TopRow(long value) override { return PutMember(u"TopRow", &FlexGridWindow::SetTopRow, value); }
    STDMETHODIMP get_LeftCol(long* result) override { return GetMember(result, &Grid::LeftCol); }
    STDMETHODIMP put_LeftCol(long value) override { return PutMember(u"LeftCol", &FlexGridWindow::SetLeftCol, value); }
    STDMETHODIMP get_MouseRow(long* result) override { return GetMember(result, &FlexGridWindow::MouseRow); }
    STDMETHODIMP get_MouseCol(long* result) override { return GetMember(result, &FlexGridWindow::MouseCol); }
    QVX_PROPERTY(VARIANT_BOOL, WordWrap, Grid)
    QVX_PROPERTY(VARIANT_BOOL, Redraw, Grid)
    QVX_PROPERTY(VARIANT_BOOL, AllowBigSelection, Grid)
    QVX_PROPERTY(VARIANT_BOOL, ScrollTrack, Grid)
    QVX_PROPERTY(VARIANT_BOOL, RightToLeft, Grid)
    QVX_PROPERTY(OLE_COLOR, BackColor, Grid)
    QVX_PROPERTY(OLE_COLOR, ForeColor, Grid)
    QVX_PROPERTY(OLE_COLOR, BackColorBkg, Grid)
    QVX_PROPERTY(OLE_COLOR, BackColorFixed, Grid)
    QVX_PROPERTY(OLE_COLOR, ForeColorFixed, Grid)
    QVX_PROPERTY(OLE_COLOR, BackColorSel, Grid)
    QVX_PROPERTY(OLE_COLOR, ForeColorSel, Grid)
    QVX_PROPERTY(OLE_COLOR, GridColor, Grid)
    QVX_PROPERTY(OLE_COLOR, GridColorFixed, Grid)
    QVX_PROPERTY(VARIANT_BOOL, Enabled, Grid)
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
            return picture ? GdiPicture::Of(*picture).Object() : nullptr;
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

    std::shared_ptr<void> Hold() override { return std::make_shared<ComPtr<IUnknown>>(static_cast<IFlexGrid*>(this)); }
    // The object must outlive the handlers that it calls.
    void Raise(TextView event, EventArguments arguments) override {
        if (!raisesEvents_()) {
            return;
        }
        const ComPtr<IUnknown> alive(static_cast<IFlexGrid*>(this));
        points_.Fire(event, std::move(arguments));
    }
    bool Compare(int row1, int row2, int& result) override {
        if (!points_.HasListeners()) {
            return false;
        }
        short order = 0;
        Raise(u"Compare", EventArguments().In(row1).In(row2).InOut(order));
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
