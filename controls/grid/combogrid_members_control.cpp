#include "controls/grid/combogrid_control.h"

#include <limits>

#include "com/bstr.h"
#include "com/variant.h"
#include "common/number_text.h"
#include "controls/grid/column_index_object.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/lifecycle.h"

namespace qvx::grid {
namespace {

template <class T>
T* Required(T* pointer) {
    if (!pointer) throw ComError(E_POINTER);
    return pointer;
}

}  // namespace

// Members that are kept in the control's own state or in the inner grid under the same name. The text on the right says
// where; the name is what the host's property store hears of.

STDMETHODIMP ComboGridControl::get_ListColumns(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(State().listColumns); });
}
STDMETHODIMP ComboGridControl::put_ListColumns(BSTR value) {
    return Put(u"ListColumns", [&] { State().listColumns = FromBstr(value); });
}

STDMETHODIMP ComboGridControl::get_UnChangableColumns(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(State().unChangableColumns); });
}
STDMETHODIMP ComboGridControl::put_UnChangableColumns(BSTR value) {
    return Put(u"UnChangableColumns", [&] { State().unChangableColumns = FromBstr(value); });
}

STDMETHODIMP ComboGridControl::get_InActiveColumns(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(State().inActiveColumns); });
}
STDMETHODIMP ComboGridControl::put_InActiveColumns(BSTR value) {
    return Put(u"InActiveColumns", [&] { State().inActiveColumns = FromBstr(value); });
}

STDMETHODIMP ComboGridControl::get_NonFocusColumns(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(State().nonFocusColumns); });
}
STDMETHODIMP ComboGridControl::put_NonFocusColumns(BSTR value) {
    return Put(u"NonFocusColumns", [&] { State().nonFocusColumns = FromBstr(value); });
}

STDMETHODIMP ComboGridControl::get_RequiredFields(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(State().requiredFields); });
}
STDMETHODIMP ComboGridControl::put_RequiredFields(BSTR value) {
    return Put(u"RequiredFields", [&] { State().requiredFields = FromBstr(value); });
}

STDMETHODIMP ComboGridControl::get_ColumnsDataType(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(State().columnsDataType); });
}
STDMETHODIMP ComboGridControl::put_ColumnsDataType(BSTR value) {
    return Put(u"ColumnsDataType", [&] { State().columnsDataType = FromBstr(value); });
}

STDMETHODIMP ComboGridControl::get_CheckValueFor(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(State().checkValueFor); });
}
STDMETHODIMP ComboGridControl::put_CheckValueFor(BSTR value) {
    return Put(u"CheckValueFor", [&] { State().checkValueFor = FromBstr(value); });
}

STDMETHODIMP ComboGridControl::get_StringFormat(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(State().stringFormat); });
}
STDMETHODIMP ComboGridControl::put_StringFormat(BSTR value) {
    return Put(u"StringFormat", [&] { State().stringFormat = FromBstr(value); });
}

STDMETHODIMP ComboGridControl::get_DateFormat(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(State().dateFormat); });
}
STDMETHODIMP ComboGridControl::put_DateFormat(BSTR value) {
    return Put(u"DateFormat", [&] { State().dateFormat = FromBstr(value); });
}

STDMETHODIMP ComboGridControl::get_Changed(VARIANT_BOOL* result) {
    return Guard([&] { *Required(result) = ToVariantBool(State().changed); });
}
STDMETHODIMP ComboGridControl::put_Changed(VARIANT_BOOL value) {
    return Put(u"Changed", [&] { State().changed = value != VARIANT_FALSE; });
}

STDMETHODIMP ComboGridControl::get_CellToolTip(VARIANT_BOOL* result) {
    return Guard([&] { *Required(result) = ToVariantBool(State().cellToolTip); });
}
STDMETHODIMP ComboGridControl::put_CellToolTip(VARIANT_BOOL value) {
    return Put(u"CellToolTip", [&] { State().cellToolTip = value != VARIANT_FALSE; });
}

STDMETHODIMP ComboGridControl::get_ProjectionBold(VARIANT_BOOL* result) {
    return Guard([&] { *Required(result) = ToVariantBool(State().projectionBold); });
}
STDMETHODIMP ComboGridControl::put_ProjectionBold(VARIANT_BOOL value) {
    return Put(u"ProjectionBold", [&] { State().projectionBold = value != VARIANT_FALSE; });
}

STDMETHODIMP ComboGridControl::get_AutoTab(VARIANT_BOOL* result) {
    return Guard([&] { *Required(result) = ToVariantBool(State().autoTab); });
}
STDMETHODIMP ComboGridControl::put_AutoTab(VARIANT_BOOL value) {
    return Put(u"AutoTab", [&] { State().autoTab = value != VARIANT_FALSE; });
}

STDMETHODIMP ComboGridControl::get_ProjectSelection(VARIANT_BOOL* result) {
    return Guard([&] { *Required(result) = ToVariantBool(State().projectSelection); });
}
STDMETHODIMP ComboGridControl::put_ProjectSelection(VARIANT_BOOL value) {
    return Put(u"ProjectSelection", [&] { State().projectSelection = value != VARIANT_FALSE; });
}

STDMETHODIMP ComboGridControl::get_AutoRecordNumber(VARIANT_BOOL* result) {
    return Guard([&] { *Required(result) = ToVariantBool(State().autoRecordNumber); });
}
STDMETHODIMP ComboGridControl::put_AutoRecordNumber(VARIANT_BOOL value) {
    return Put(u"AutoRecordNumber", [&] { State().autoRecordNumber = value != VARIANT_FALSE; });
}

STDMETHODIMP ComboGridControl::get_AutoAddNew(VARIANT_BOOL* result) {
    return Guard([&] { *Required(result) = ToVariantBool(State().autoAddNew); });
}
STDMETHODIMP ComboGridControl::put_AutoAddNew(VARIANT_BOOL value) {
    return Put(u"AutoAddNew", [&] { State().autoAddNew = value != VARIANT_FALSE; });
}

STDMETHODIMP ComboGridControl::get_KeyColumn(short* result) {
    return Guard([&] { *Required(result) = static_cast<short>(State().keyColumn); });
}
STDMETHODIMP ComboGridControl::put_KeyColumn(short value) {
    return Put(u"KeyColumn", [&] { State().keyColumn = value; });
}

STDMETHODIMP ComboGridControl::get_BindFrom(short* result) {
    return Guard([&] { *Required(result) = static_cast<short>(State().bindFrom); });
}
STDMETHODIMP ComboGridControl::put_BindFrom(short value) {
    return Put(u"BindFrom", [&] { State().bindFrom = value; });
}

STDMETHODIMP ComboGridControl::get_BackColorBkg(OLE_COLOR* result) {
    return Guard([&] { *Required(result) = Model().BackColorBkg(); });
}
STDMETHODIMP ComboGridControl::put_BackColorBkg(OLE_COLOR value) {
    return Put(u"BackColorBkg", [&] { Model().SetBackColorBkg(static_cast<OleColor>(value)); });
}

STDMETHODIMP ComboGridControl::get_BackColor(OLE_COLOR* result) {
    return Guard([&] { *Required(result) = Model().BackColor(); });
}
STDMETHODIMP ComboGridControl::put_BackColor(OLE_COLOR value) {
    return Put(u"BackColor", [&] { Model().SetBackColor(static_cast<OleColor>(value)); });
}

STDMETHODIMP ComboGridControl::get_BackColorSel(OLE_COLOR* result) {
    return Guard([&] { *Required(result) = Model().BackColorSel(); });
}
STDMETHODIMP ComboGridControl::put_BackColorSel(OLE_COLOR value) {
    return Put(u"BackColorSel", [&] { Model().SetBackColorSel(static_cast<OleColor>(value)); });
}

STDMETHODIMP ComboGridControl::get_ForeColor(OLE_COLOR* result) {
    return Guard([&] { *Required(result) = Model().ForeColor(); });
}
STDMETHODIMP ComboGridControl::put_ForeColor(OLE_COLOR value) {
    return Put(u"ForeColor", [&] { Model().SetForeColor(static_cast<OleColor>(value)); });
}

STDMETHODIMP ComboGridControl::get_ForeColorFixed(OLE_COLOR* result) {
    return Guard([&] { *Required(result) = Model().ForeColorFixed(); });
}
STDMETHODIMP ComboGridControl::put_ForeColorFixed(OLE_COLOR value) {
    return Put(u"ForeColorFixed", [&] { Model().SetForeColorFixed(static_cast<OleColor>(value)); });
}

STDMETHODIMP ComboGridControl::get_ForeColorSel(OLE_COLOR* result) {
    return Guard([&] { *Required(result) = Model().ForeColorSel(); });
}
STDMETHODIMP ComboGridControl::put_ForeColorSel(OLE_COLOR value) {
    return Put(u"ForeColorSel", [&] { Model().SetForeColorSel(static_cast<OleColor>(value)); });
}

STDMETHODIMP ComboGridControl::get_GridColor(OLE_COLOR* result) {
    return Guard([&] { *Required(result) = Model().GridColor(); });
}
STDMETHODIMP ComboGridControl::put_GridColor(OLE_COLOR value) {
    return Put(u"GridColor", [&] { Model().SetGridColor(static_cast<OleColor>(value)); });
}

STDMETHODIMP ComboGridControl::get_GridColorFixed(OLE_COLOR* result) {
    return Guard([&] { *Required(result) = Model().GridColorFixed(); });
}
STDMETHODIMP ComboGridControl::put_GridColorFixed(OLE_COLOR value) {
    return Put(u"GridColorFixed", [&] { Model().SetGridColorFixed(static_cast<OleColor>(value)); });
}

STDMETHODIMP ComboGridControl::get_BackColorFixed(OLE_COLOR* result) {
    return Guard([&] { *Required(result) = Model().BackColorFixed(); });
}
STDMETHODIMP ComboGridControl::put_BackColorFixed(OLE_COLOR value) {
    return Put(u"BackColorFixed", [&] { Model().SetBackColorFixed(static_cast<OleColor>(value)); });
}

STDMETHODIMP ComboGridControl::get_AllowUserResizing(GridResizing* result) {
    return Guard([&] { *Required(result) = static_cast<GridResizing>(Model().AllowUserResizing()); });
}
STDMETHODIMP ComboGridControl::put_AllowUserResizing(GridResizing value) {
    return Put(u"AllowUserResizing", [&] {
        Model().SetAllowUserResizing(flexgrid::CheckedEnum<flexgrid::GridResizing>(static_cast<int>(value)));
    });
}

STDMETHODIMP ComboGridControl::get_Appearance(GridAppearance* result) {
    return Guard([&] { *Required(result) = static_cast<GridAppearance>(Model().Appearance()); });
}
STDMETHODIMP ComboGridControl::put_Appearance(GridAppearance value) {
    return Put(u"Appearance", [&] {
        Model().SetAppearance(flexgrid::CheckedEnum<flexgrid::GridAppearance>(static_cast<int>(value)));
    });
}

STDMETHODIMP ComboGridControl::get_FocusRect(GridFocusRect* result) {
    return Guard([&] { *Required(result) = static_cast<GridFocusRect>(Model().FocusRect()); });
}
STDMETHODIMP ComboGridControl::put_FocusRect(GridFocusRect value) {
    return Put(u"FocusRect",
               [&] { Model().SetFocusRect(flexgrid::CheckedEnum<flexgrid::GridFocusRect>(static_cast<int>(value))); });
}

STDMETHODIMP ComboGridControl::get_GridLines(GridLineStyle* result) {
    return Guard([&] { *Required(result) = static_cast<GridLineStyle>(Model().GridLines()); });
}
STDMETHODIMP ComboGridControl::put_GridLines(GridLineStyle value) {
    return Put(u"GridLines",
               [&] { Model().SetGridLines(flexgrid::CheckedEnum<flexgrid::GridLineStyle>(static_cast<int>(value))); });
}

STDMETHODIMP ComboGridControl::get_GridLinesFixed(GridLineStyle* result) {
    return Guard([&] { *Required(result) = static_cast<GridLineStyle>(Model().GridLinesFixed()); });
}
STDMETHODIMP ComboGridControl::put_GridLinesFixed(GridLineStyle value) {
    return Put(u"GridLinesFixed", [&] {
        Model().SetGridLinesFixed(flexgrid::CheckedEnum<flexgrid::GridLineStyle>(static_cast<int>(value)));
    });
}

STDMETHODIMP ComboGridControl::get_HighLight(GridHighLight* result) {
    return Guard([&] { *Required(result) = static_cast<GridHighLight>(Model().HighLight()); });
}
STDMETHODIMP ComboGridControl::put_HighLight(GridHighLight value) {
    return Put(u"HighLight",
               [&] { Model().SetHighLight(flexgrid::CheckedEnum<flexgrid::GridHighLight>(static_cast<int>(value))); });
}

STDMETHODIMP ComboGridControl::get_MergeCells(GridMerge* result) {
    return Guard([&] { *Required(result) = static_cast<GridMerge>(Model().MergeCells()); });
}
STDMETHODIMP ComboGridControl::put_MergeCells(GridMerge value) {
    return Put(u"MergeCells",
               [&] { Model().SetMergeCells(flexgrid::CheckedEnum<flexgrid::GridMerge>(static_cast<int>(value))); });
}

STDMETHODIMP ComboGridControl::get_ScrollBars(GridScrollBars* result) {
    return Guard([&] { *Required(result) = static_cast<GridScrollBars>(Model().ScrollBars()); });
}
STDMETHODIMP ComboGridControl::put_ScrollBars(GridScrollBars value) {
    return Put(u"ScrollBars", [&] {
        Model().SetScrollBars(flexgrid::CheckedEnum<flexgrid::GridScrollBars>(static_cast<int>(value)));
    });
}

STDMETHODIMP ComboGridControl::get_SelectionMode(GridSelection* result) {
    return Guard([&] { *Required(result) = static_cast<GridSelection>(Model().SelectionMode()); });
}
STDMETHODIMP ComboGridControl::put_SelectionMode(GridSelection value) {
    return Put(u"SelectionMode", [&] {
        Model().SetSelectionMode(flexgrid::CheckedEnum<flexgrid::GridSelectionMode>(static_cast<int>(value)));
    });
}

STDMETHODIMP ComboGridControl::get_BorderStyle(GridBorder* result) {
    return Guard([&] { *Required(result) = static_cast<GridBorder>(Model().BorderStyle()); });
}
STDMETHODIMP ComboGridControl::put_BorderStyle(GridBorder value) {
    return Put(u"BorderStyle",
               [&] { Model().SetBorderStyle(flexgrid::CheckedEnum<flexgrid::GridBorder>(static_cast<int>(value))); });
}

STDMETHODIMP ComboGridControl::get_ScrollTrack(VARIANT_BOOL* result) {
    return Guard([&] { *Required(result) = ToVariantBool(Model().ScrollTrack()); });
}
STDMETHODIMP ComboGridControl::put_ScrollTrack(VARIANT_BOOL value) {
    return Put(u"ScrollTrack", [&] { Model().SetScrollTrack(value != VARIANT_FALSE); });
}

STDMETHODIMP ComboGridControl::get_Enabled(VARIANT_BOOL* result) {
    return Guard([&] { *Required(result) = ToVariantBool(Model().Enabled()); });
}
STDMETHODIMP ComboGridControl::put_Enabled(VARIANT_BOOL value) {
    return Put(u"Enabled", [&] { Model().SetEnabled(value != VARIANT_FALSE); });
}

STDMETHODIMP ComboGridControl::get_Rows(long* result) {
    return Guard([&] { *Required(result) = Model().Rows(); });
}
STDMETHODIMP ComboGridControl::put_Rows(long value) {
    return Put(u"Rows", [&] { entry_.ChangeRows([&] { Model().SetRows(static_cast<int>(value)); }); });
}

STDMETHODIMP ComboGridControl::get_Cols(long* result) {
    return Guard([&] { *Required(result) = Model().Cols(); });
}
STDMETHODIMP ComboGridControl::put_Cols(long value) {
    return Put(u"Cols", [&] { entry_.ChangeRows([&] { Model().SetCols(static_cast<int>(value)); }); });
}

STDMETHODIMP ComboGridControl::get_FixedRows(long* result) {
    return Guard([&] { *Required(result) = Model().FixedRows(); });
}
STDMETHODIMP ComboGridControl::put_FixedRows(long value) {
    return Put(u"FixedRows", [&] { entry_.ChangeRows([&] { Model().SetFixedRows(static_cast<int>(value)); }); });
}

STDMETHODIMP ComboGridControl::get_FixedCols(long* result) {
    return Guard([&] { *Required(result) = Model().FixedCols(); });
}
STDMETHODIMP ComboGridControl::put_FixedCols(long value) {
    return Put(u"FixedCols", [&] { entry_.ChangeRows([&] { Model().SetFixedCols(static_cast<int>(value)); }); });
}

STDMETHODIMP ComboGridControl::get_Row(long* result) {
    return Guard([&] { *Required(result) = Model().Row(); });
}
STDMETHODIMP ComboGridControl::put_Row(long value) {
    return Put(u"Row", [&] { Model().SetRow(static_cast<int>(value)); });
}

STDMETHODIMP ComboGridControl::get_Col(long* result) {
    return Guard([&] { *Required(result) = Model().Col(); });
}
STDMETHODIMP ComboGridControl::put_Col(long value) {
    return Put(u"Col", [&] { Model().SetCol(static_cast<int>(value)); });
}

STDMETHODIMP ComboGridControl::get_FormatString(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(Model().FormatString()); });
}
STDMETHODIMP ComboGridControl::put_FormatString(BSTR value) {
    return Put(u"FormatString", [&] { Model().SetFormatString(FromBstr(value)); });
}

STDMETHODIMP ComboGridControl::get_ColAlignment(long index, short* result) {
    return Guard([&] { *Required(result) = static_cast<short>(Model().ColAlignment(static_cast<int>(index))); });
}
STDMETHODIMP ComboGridControl::put_ColAlignment(long index, short value) {
    return Put(u"ColAlignment", [&] {
        Model().SetColAlignment(static_cast<int>(index), flexgrid::CheckedEnum<flexgrid::GridAlignment>(value));
    });
}
STDMETHODIMP ComboGridControl::get_ColWidth(long index, long* result) {
    return Guard([&] { *Required(result) = Model().ColWidth(static_cast<int>(index)); });
}
STDMETHODIMP ComboGridControl::put_ColWidth(long index, long value) {
    return Put(u"ColWidth", [&] { Model().SetColWidth(static_cast<int>(index), static_cast<int>(value)); });
}
STDMETHODIMP ComboGridControl::get_TextArray(long index, BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(Model().TextArray(static_cast<int>(index))); });
}
STDMETHODIMP ComboGridControl::put_TextArray(long index, BSTR value) {
    return Put(u"TextArray", [&] { Model().SetTextArray(static_cast<int>(index), FromBstr(value)); });
}
STDMETHODIMP ComboGridControl::get_TextMatrix(long row, long col, BSTR* result) {
    return Guard(
        [&] { *Required(result) = NewBstr(Model().TextMatrix(static_cast<int>(row), static_cast<int>(col))); });
}
STDMETHODIMP ComboGridControl::put_TextMatrix(long row, long col, BSTR value) {
    return Put(u"TextMatrix",
               [&] { Model().SetTextMatrix(static_cast<int>(row), static_cast<int>(col), FromBstr(value)); });
}

}  // namespace qvx::grid
