#include "controls/grid/combogrid_control.h"

namespace qvx::grid {
// Members that are kept in the control's own state or in the inner grid under the same name. The text on the right says
// where; the name is what the host's property store hears of.

STDMETHODIMP ComboGridControl::get_ListColumns(BSTR* result) { return Get(result, &ControlState::listColumns); }
STDMETHODIMP ComboGridControl::put_ListColumns(BSTR value) {
    return Put(u"ListColumns", &ControlState::listColumns, value);
}

STDMETHODIMP ComboGridControl::get_UnChangableColumns(BSTR* result) {
    return Get(result, &ControlState::unChangableColumns);
}
STDMETHODIMP ComboGridControl::put_UnChangableColumns(BSTR value) {
    return Put(u"UnChangableColumns", &ControlState::unChangableColumns, value);
}

STDMETHODIMP ComboGridControl::get_InActiveColumns(BSTR* result) { return Get(result, &ControlState::inActiveColumns); }
STDMETHODIMP ComboGridControl::put_InActiveColumns(BSTR value) {
    return Put(u"InActiveColumns", &ControlState::inActiveColumns, value);
}

STDMETHODIMP ComboGridControl::get_NonFocusColumns(BSTR* result) { return Get(result, &ControlState::nonFocusColumns); }
STDMETHODIMP ComboGridControl::put_NonFocusColumns(BSTR value) {
    return Put(u"NonFocusColumns", &ControlState::nonFocusColumns, value);
}

STDMETHODIMP ComboGridControl::get_RequiredFields(BSTR* result) { return Get(result, &ControlState::requiredFields); }
STDMETHODIMP ComboGridControl::put_RequiredFields(BSTR value) {
    return Put(u"RequiredFields", &ControlState::requiredFields, value);
}

STDMETHODIMP ComboGridControl::get_ColumnsDataType(BSTR* result) { return Get(result, &ControlState::columnsDataType); }
STDMETHODIMP ComboGridControl::put_ColumnsDataType(BSTR value) {
    return Put(u"ColumnsDataType", &ControlState::columnsDataType, value);
}

STDMETHODIMP ComboGridControl::get_CheckValueFor(BSTR* result) { return Get(result, &ControlState::checkValueFor); }
STDMETHODIMP ComboGridControl::put_CheckValueFor(BSTR value) {
    return Put(u"CheckValueFor", &ControlState::checkValueFor, value);
}

STDMETHODIMP ComboGridControl::get_StringFormat(BSTR* result) { return Get(result, &ControlState::stringFormat); }
STDMETHODIMP ComboGridControl::put_StringFormat(BSTR value) {
    return Put(u"StringFormat", &ControlState::stringFormat, value);
}

STDMETHODIMP ComboGridControl::get_DateFormat(BSTR* result) { return Get(result, &ControlState::dateFormat); }
STDMETHODIMP ComboGridControl::put_DateFormat(BSTR value) {
    return Put(u"DateFormat", &ControlState::dateFormat, value);
}

STDMETHODIMP ComboGridControl::get_Changed(VARIANT_BOOL* result) { return Get(result, &ControlState::changed); }
STDMETHODIMP ComboGridControl::put_Changed(VARIANT_BOOL value) {
    return Put(u"Changed", &ControlState::changed, value);
}

STDMETHODIMP ComboGridControl::get_CellToolTip(VARIANT_BOOL* result) { return Get(result, &ControlState::cellToolTip); }
STDMETHODIMP ComboGridControl::put_CellToolTip(VARIANT_BOOL value) {
    return Put(u"CellToolTip", &ControlState::cellToolTip, value);
}

STDMETHODIMP ComboGridControl::get_ProjectionBold(VARIANT_BOOL* result) {
    return Get(result, &ControlState::projectionBold);
}
STDMETHODIMP ComboGridControl::put_ProjectionBold(VARIANT_BOOL value) {
    return Put(u"ProjectionBold", &ControlState::projectionBold, value);
}

STDMETHODIMP ComboGridControl::get_AutoTab(VARIANT_BOOL* result) { return Get(result, &ControlState::autoTab); }
STDMETHODIMP ComboGridControl::put_AutoTab(VARIANT_BOOL value) {
    return Put(u"AutoTab", &ControlState::autoTab, value);
}

STDMETHODIMP ComboGridControl::get_ProjectSelection(VARIANT_BOOL* result) {
    return Get(result, &ControlState::projectSelection);
}
STDMETHODIMP ComboGridControl::put_ProjectSelection(VARIANT_BOOL value) {
    return Put(u"ProjectSelection", &ControlState::projectSelection, value);
}

STDMETHODIMP ComboGridControl::get_AutoRecordNumber(VARIANT_BOOL* result) {
    return Get(result, &ControlState::autoRecordNumber);
}
STDMETHODIMP ComboGridControl::put_AutoRecordNumber(VARIANT_BOOL value) {
    return Put(u"AutoRecordNumber", &ControlState::autoRecordNumber, value);
}

STDMETHODIMP ComboGridControl::get_AutoAddNew(VARIANT_BOOL* result) { return Get(result, &ControlState::autoAddNew); }
STDMETHODIMP ComboGridControl::put_AutoAddNew(VARIANT_BOOL value) {
    return Put(u"AutoAddNew", &ControlState::autoAddNew, value);
}

STDMETHODIMP ComboGridControl::get_KeyColumn(short* result) { return Get(result, &ControlState::keyColumn); }
STDMETHODIMP ComboGridControl::put_KeyColumn(short value) { return Put(u"KeyColumn", &ControlState::keyColumn, value); }

STDMETHODIMP ComboGridControl::get_BindFrom(short* result) { return Get(result, &ControlState::bindFrom); }
STDMETHODIMP ComboGridControl::put_BindFrom(short value) { return Put(u"BindFrom", &ControlState::bindFrom, value); }

STDMETHODIMP ComboGridControl::get_BackColorBkg(OLE_COLOR* result) {
    return Get(result, &flexgrid::Grid::BackColorBkg);
}
STDMETHODIMP ComboGridControl::put_BackColorBkg(OLE_COLOR value) {
    return Put(u"BackColorBkg", &flexgrid::Grid::SetBackColorBkg, value);
}

STDMETHODIMP ComboGridControl::get_BackColor(OLE_COLOR* result) { return Get(result, &flexgrid::Grid::BackColor); }
STDMETHODIMP ComboGridControl::put_BackColor(OLE_COLOR value) {
    return Put(u"BackColor", &flexgrid::Grid::SetBackColor, value);
}

STDMETHODIMP ComboGridControl::get_BackColorSel(OLE_COLOR* result) {
    return Get(result, &flexgrid::Grid::BackColorSel);
}
STDMETHODIMP ComboGridControl::put_BackColorSel(OLE_COLOR value) {
    return Put(u"BackColorSel", &flexgrid::Grid::SetBackColorSel, value);
}

STDMETHODIMP ComboGridControl::get_ForeColor(OLE_COLOR* result) { return Get(result, &flexgrid::Grid::ForeColor); }
STDMETHODIMP ComboGridControl::put_ForeColor(OLE_COLOR value) {
    return Put(u"ForeColor", &flexgrid::Grid::SetForeColor, value);
}

STDMETHODIMP ComboGridControl::get_ForeColorFixed(OLE_COLOR* result) {
    return Get(result, &flexgrid::Grid::ForeColorFixed);
}
STDMETHODIMP ComboGridControl::put_ForeColorFixed(OLE_COLOR value) {
    return Put(u"ForeColorFixed", &flexgrid::Grid::SetForeColorFixed, value);
}

STDMETHODIMP ComboGridControl::get_ForeColorSel(OLE_COLOR* result) {
    return Get(result, &flexgrid::Grid::ForeColorSel);
}
STDMETHODIMP ComboGridControl::put_ForeColorSel(OLE_COLOR value) {
    return Put(u"ForeColorSel", &flexgrid::Grid::SetForeColorSel, value);
}

STDMETHODIMP ComboGridControl::get_GridColor(OLE_COLOR* result) { return Get(result, &flexgrid::Grid::GridColor); }
STDMETHODIMP ComboGridControl::put_GridColor(OLE_COLOR value) {
    return Put(u"GridColor", &flexgrid::Grid::SetGridColor, value);
}

STDMETHODIMP ComboGridControl::get_GridColorFixed(OLE_COLOR* result) {
    return Get(result, &flexgrid::Grid::GridColorFixed);
}
STDMETHODIMP ComboGridControl::put_GridColorFixed(OLE_COLOR value) {
    return Put(u"GridColorFixed", &flexgrid::Grid::SetGridColorFixed, value);
}

STDMETHODIMP ComboGridControl::get_BackColorFixed(OLE_COLOR* result) {
    return Get(result, &flexgrid::Grid::BackColorFixed);
}
STDMETHODIMP ComboGridControl::put_BackColorFixed(OLE_COLOR value) {
    return Put(u"BackColorFixed", &flexgrid::Grid::SetBackColorFixed, value);
}

STDMETHODIMP ComboGridControl::get_AllowUserResizing(GridResizing* result) {
    return Get(result, &flexgrid::Grid::AllowUserResizing);
}
STDMETHODIMP ComboGridControl::put_AllowUserResizing(GridResizing value) {
    return Put(u"AllowUserResizing", &flexgrid::Grid::SetAllowUserResizing, value);
}

STDMETHODIMP ComboGridControl::get_Appearance(GridAppearance* result) {
    return Get(result, &flexgrid::Grid::Appearance);
}
STDMETHODIMP ComboGridControl::put_Appearance(GridAppearance value) {
    return Put(u"Appearance", &flexgrid::Grid::SetAppearance, value);
}

STDMETHODIMP ComboGridControl::get_FocusRect(GridFocusRect* result) { return Get(result, &flexgrid::Grid::FocusRect); }
STDMETHODIMP ComboGridControl::put_FocusRect(GridFocusRect value) {
    return Put(u"FocusRect", &flexgrid::Grid::SetFocusRect, value);
}

STDMETHODIMP ComboGridControl::get_GridLines(GridLineStyle* result) { return Get(result, &flexgrid::Grid::GridLines); }
STDMETHODIMP ComboGridControl::put_GridLines(GridLineStyle value) {
    return Put(u"GridLines", &flexgrid::Grid::SetGridLines, value);
}

STDMETHODIMP ComboGridControl::get_GridLinesFixed(GridLineStyle* result) {
    return Get(result, &flexgrid::Grid::GridLinesFixed);
}
STDMETHODIMP ComboGridControl::put_GridLinesFixed(GridLineStyle value) {
    return Put(u"GridLinesFixed", &flexgrid::Grid::SetGridLinesFixed, value);
}

STDMETHODIMP ComboGridControl::get_HighLight(GridHighLight* result) { return Get(result, &flexgrid::Grid::HighLight); }
STDMETHODIMP ComboGridControl::put_HighLight(GridHighLight value) {
    return Put(u"HighLight", &flexgrid::Grid::SetHighLight, value);
}

STDMETHODIMP ComboGridControl::get_MergeCells(GridMerge* result) { return Get(result, &flexgrid::Grid::MergeCells); }
STDMETHODIMP ComboGridControl::put_MergeCells(GridMerge value) {
    return Put(u"MergeCells", &flexgrid::Grid::SetMergeCells, value);
}

STDMETHODIMP ComboGridControl::get_ScrollBars(GridScrollBars* result) {
    return Get(result, &flexgrid::Grid::ScrollBars);
}
STDMETHODIMP ComboGridControl::put_ScrollBars(GridScrollBars value) {
    return Put(u"ScrollBars", &flexgrid::Grid::SetScrollBars, value);
}

STDMETHODIMP ComboGridControl::get_SelectionMode(GridSelection* result) {
    return Get(result, &flexgrid::Grid::SelectionMode);
}
STDMETHODIMP ComboGridControl::put_SelectionMode(GridSelection value) {
    return Put(u"SelectionMode", &flexgrid::Grid::SetSelectionMode, value);
}

STDMETHODIMP ComboGridControl::get_BorderStyle(GridBorder* result) { return Get(result, &flexgrid::Grid::BorderStyle); }
STDMETHODIMP ComboGridControl::put_BorderStyle(GridBorder value) {
    return Put(u"BorderStyle", &flexgrid::Grid::SetBorderStyle, value);
}

STDMETHODIMP ComboGridControl::get_ScrollTrack(VARIANT_BOOL* result) {
    return Get(result, &flexgrid::Grid::ScrollTrack);
}
STDMETHODIMP ComboGridControl::put_ScrollTrack(VARIANT_BOOL value) {
    return Put(u"ScrollTrack", &flexgrid::Grid::SetScrollTrack, value);
}

STDMETHODIMP ComboGridControl::get_Enabled(VARIANT_BOOL* result) { return Get(result, &flexgrid::Grid::Enabled); }
STDMETHODIMP ComboGridControl::put_Enabled(VARIANT_BOOL value) {
    return Put(u"Enabled", &flexgrid::Grid::SetEnabled, value);
}

STDMETHODIMP ComboGridControl::get_Rows(long* result) { return Get(result, &flexgrid::Grid::Rows); }
STDMETHODIMP ComboGridControl::put_Rows(long value) { return PutCount(u"Rows", &flexgrid::Grid::SetRows, value); }

STDMETHODIMP ComboGridControl::get_Cols(long* result) { return Get(result, &flexgrid::Grid::Cols); }
STDMETHODIMP ComboGridControl::put_Cols(long value) { return PutCount(u"Cols", &flexgrid::Grid::SetCols, value); }

STDMETHODIMP ComboGridControl::get_FixedRows(long* result) { return Get(result, &flexgrid::Grid::FixedRows); }
STDMETHODIMP ComboGridControl::put_FixedRows(long value) {
    return PutCount(u"FixedRows", &flexgrid::Grid::SetFixedRows, value);
}

STDMETHODIMP ComboGridControl::get_FixedCols(long* result) { return Get(result, &flexgrid::Grid::FixedCols); }
STDMETHODIMP ComboGridControl::put_FixedCols(long value) {
    return PutCount(u"FixedCols", &flexgrid::Grid::SetFixedCols, value);
}

STDMETHODIMP ComboGridControl::get_Row(long* result) { return Get(result, &flexgrid::Grid::Row); }
STDMETHODIMP ComboGridControl::put_Row(long value) { return Put(u"Row", &flexgrid::Grid::SetRow, value); }

STDMETHODIMP ComboGridControl::get_Col(long* result) { return Get(result, &flexgrid::Grid::Col); }
STDMETHODIMP ComboGridControl::put_Col(long value) { return Put(u"Col", &flexgrid::Grid::SetCol, value); }

STDMETHODIMP ComboGridControl::get_FormatString(BSTR* result) { return Get(result, &flexgrid::Grid::FormatString); }
STDMETHODIMP ComboGridControl::put_FormatString(BSTR value) {
    return Put(u"FormatString", &flexgrid::Grid::SetFormatString, value);
}

STDMETHODIMP ComboGridControl::get_ColAlignment(long index, short* result) {
    return Get(result, &flexgrid::Grid::ColAlignment, index);
}
STDMETHODIMP ComboGridControl::put_ColAlignment(long index, short value) {
    return Put(u"ColAlignment", &flexgrid::Grid::SetColAlignment, index, value);
}
STDMETHODIMP ComboGridControl::get_ColWidth(long index, long* result) {
    return Get(result, &flexgrid::Grid::ColWidth, index);
}
STDMETHODIMP ComboGridControl::put_ColWidth(long index, long value) {
    return Put(u"ColWidth", &flexgrid::Grid::SetColWidth, index, value);
}
STDMETHODIMP ComboGridControl::get_TextArray(long index, BSTR* result) {
    return Get(result, &flexgrid::Grid::TextArray, index);
}
STDMETHODIMP ComboGridControl::put_TextArray(long index, BSTR value) {
    return Put(u"TextArray", &flexgrid::Grid::SetTextArray, index, value);
}
STDMETHODIMP ComboGridControl::get_TextMatrix(long row, long col, BSTR* result) {
    return Get(result, &flexgrid::Grid::TextMatrix, row, col);
}
STDMETHODIMP ComboGridControl::put_TextMatrix(long row, long col, BSTR value) {
    return Put(u"TextMatrix", &flexgrid::Grid::SetTextMatrix, row, col, value);
}

}  // namespace qvx::grid
