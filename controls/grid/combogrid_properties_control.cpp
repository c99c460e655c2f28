// The persisted properties of the ComboGrid control, in their order.
#include <windows.h>

#include <olectl.h>

#include <limits>

#include "common/run_time_error.h"
#include "controls/grid/combogrid_control.h"

namespace qvx::grid {
namespace {

// An Integer of the interface; error 6 for what has no room in 16 bits.
int CheckedInteger(std::int32_t value) {
    if (value < std::numeric_limits<short>::min() || value > std::numeric_limits<short>::max())
        throw RunTimeError(errors::overflow, u"Overflow");
    return value;
}

bool HasCells(const flexgrid::Grid& grid) { return grid.Rows() > 0 && grid.Cols() > 0; }

// The counts of a stored form come before its fixed counts, and must not be held up by those the grid has so far.
void LoadRows(flexgrid::Grid& grid, int rows) {
    grid.SetFixedRows(0);
    grid.SetRows(rows);
}
void LoadCols(flexgrid::Grid& grid, int cols) {
    grid.SetFixedCols(0);
    grid.SetCols(cols);
}

// A grid left with nothing but fixed rows was once one with more, and has to become so again on the same way.
void LoadFixedRows(flexgrid::Grid& grid, int count) {
    const int rows = grid.Rows();
    if (count == rows && count > 0) grid.SetRows(rows + 1);
    grid.SetFixedRows(count);
    grid.SetRows(rows);
}
// One column alone cannot be fixed. It waits for others, as none at all does.
void LoadFixedCols(flexgrid::Grid& grid, int count) {
    const int cols = grid.Cols();
    if (count == 1 && cols == 1) grid.SetCols(0);
    grid.SetFixedCols(count);
    grid.SetCols(cols);
}

}  // namespace

// The members with an index are kept for index 0 alone, under their name with a "0" behind it.
const PropertyTable& ComboGridControl::Properties() {
    using C = ComboGridControl;
    static const PropertyTable table =
        PropertyRows<C>()
            .Long(
                u"Rows", 39, 3, [](C& c) { return c.Model().Rows(); },
                [](C& c, std::int32_t v) { LoadRows(c.Model(), v); })
            .Long(
                u"Cols", 40, 0, [](C& c) { return c.Model().Cols(); },
                [](C& c, std::int32_t v) { LoadCols(c.Model(), v); })
            .Long(
                u"FixedCols", 41, 1, [](C& c) { return c.Model().WantedFixedCols(); },
                [](C& c, std::int32_t v) { LoadFixedCols(c.Model(), v); })
            .Long(
                u"FixedRows", 42, 1, [](C& c) { return c.Model().WantedFixedRows(); },
                [](C& c, std::int32_t v) { LoadFixedRows(c.Model(), v); })
            .Color(
                u"BackColorBkg", 43, 0x8000000F, [](C& c) { return c.Model().BackColorBkg(); },
                [](C& c, OleColor v) { c.Model().SetBackColorBkg(v); })
            .String(
                u"InActiveColumns", 3, u"", [](C& c) { return c.State().inActiveColumns; },
                [](C& c, Text v) { c.State().inActiveColumns = std::move(v); })
            .String(
                u"ListColumns", 1, u"", [](C& c) { return c.State().listColumns; },
                [](C& c, Text v) { c.State().listColumns = std::move(v); })
            .String(
                u"UnChangableColumns", 2, u"", [](C& c) { return c.State().unChangableColumns; },
                [](C& c, Text v) { c.State().unChangableColumns = std::move(v); })
            .Long(
                u"AllowUserResizing", 44, 0,
                [](C& c) { return static_cast<std::int32_t>(c.Model().AllowUserResizing()); },
                [](C& c, std::int32_t v) { c.Model().SetAllowUserResizing(CheckedEnum<flexgrid::GridResizing>(v)); })
            .Bool(
                u"AutoAddNew", 20, false, [](C& c) { return c.State().autoAddNew; },
                [](C& c, bool v) { c.State().autoAddNew = v; })
            .Bool(
                u"AutoRecordNumber", 19, false, [](C& c) { return c.State().autoRecordNumber; },
                [](C& c, bool v) { c.State().autoRecordNumber = v; })
            .String(
                u"ColumnsDataType", 7, u"", [](C& c) { return c.State().columnsDataType; },
                [](C& c, Text v) { c.State().columnsDataType = std::move(v); })
            .String(
                u"RequiredFields", 6, u"", [](C& c) { return c.State().requiredFields; },
                [](C& c, Text v) { c.State().requiredFields = std::move(v); })
            .Long(
                u"Appearance", DISPID_APPEARANCE, 0,
                [](C& c) { return static_cast<std::int32_t>(c.Model().Appearance()); },
                [](C& c, std::int32_t v) { c.Model().SetAppearance(CheckedEnum<flexgrid::GridAppearance>(v)); })
            .Color(
                u"BackColor", DISPID_BACKCOLOR, 0x80000005, [](C& c) { return c.Model().BackColor(); },
                [](C& c, OleColor v) { c.Model().SetBackColor(v); })
            .Color(
                u"BackColorSel", 45, 0x8000000D, [](C& c) { return c.Model().BackColorSel(); },
                [](C& c, OleColor v) { c.Model().SetBackColorSel(v); })
            .Long(
                u"FocusRect", 46, 1, [](C& c) { return static_cast<std::int32_t>(c.Model().FocusRect()); },
                [](C& c, std::int32_t v) { c.Model().SetFocusRect(CheckedEnum<flexgrid::GridFocusRect>(v)); })
            .Color(
                u"ForeColor", DISPID_FORECOLOR, 0x80000008, [](C& c) { return c.Model().ForeColor(); },
                [](C& c, OleColor v) { c.Model().SetForeColor(v); })
            .Color(
                u"ForeColorFixed", 47, 0x80000012, [](C& c) { return c.Model().ForeColorFixed(); },
                [](C& c, OleColor v) { c.Model().SetForeColorFixed(v); })
            .Color(
                u"ForeColorSel", 48, 0x8000000E, [](C& c) { return c.Model().ForeColorSel(); },
                [](C& c, OleColor v) { c.Model().SetForeColorSel(v); })
            .String(
                u"FormatString", 49, u"", [](C& c) { return c.Model().FormatString(); },
                [](C& c, const Text& v) { c.Model().SetFormatString(v); })
            .Color(
                u"GridColor", 50, 0xC0C0C0, [](C& c) { return c.Model().GridColor(); },
                [](C& c, OleColor v) { c.Model().SetGridColor(v); })
            .Color(
                u"GridColorFixed", 51, 0, [](C& c) { return c.Model().GridColorFixed(); },
                [](C& c, OleColor v) { c.Model().SetGridColorFixed(v); })
            .Long(
                u"GridLines", 52, 1, [](C& c) { return static_cast<std::int32_t>(c.Model().GridLines()); },
                [](C& c, std::int32_t v) { c.Model().SetGridLines(CheckedEnum<flexgrid::GridLineStyle>(v)); })
            .Long(
                u"GridLinesFixed", 53, 2, [](C& c) { return static_cast<std::int32_t>(c.Model().GridLinesFixed()); },
                [](C& c, std::int32_t v) { c.Model().SetGridLinesFixed(CheckedEnum<flexgrid::GridLineStyle>(v)); })
            .Long(
                u"HighLight", 54, 1, [](C& c) { return static_cast<std::int32_t>(c.Model().HighLight()); },
                [](C& c, std::int32_t v) { c.Model().SetHighLight(CheckedEnum<flexgrid::GridHighLight>(v)); })
            .Long(
                u"MergeCells", 55, 0, [](C& c) { return static_cast<std::int32_t>(c.Model().MergeCells()); },
                [](C& c, std::int32_t v) { c.Model().SetMergeCells(CheckedEnum<flexgrid::GridMerge>(v)); })
            .Long(
                u"ScrollBars", 56, 3, [](C& c) { return static_cast<std::int32_t>(c.Model().ScrollBars()); },
                [](C& c, std::int32_t v) { c.Model().SetScrollBars(CheckedEnum<flexgrid::GridScrollBars>(v)); })
            .Bool(
                u"ScrollTrack", 57, true, [](C& c) { return c.Model().ScrollTrack(); },
                [](C& c, bool v) { c.Model().SetScrollTrack(v); })
            .Long(
                u"SelectionMode", 58, 0, [](C& c) { return static_cast<std::int32_t>(c.Model().SelectionMode()); },
                [](C& c, std::int32_t v) { c.Model().SetSelectionMode(CheckedEnum<flexgrid::GridSelectionMode>(v)); })
            .Long(
                u"ColAlignment0", 60, 0,
                [](C& c) { return HasCells(c.Model()) ? static_cast<std::int32_t>(c.Model().ColAlignment(0)) : 0; },
                [](C& c, std::int32_t v) { c.Model().SetColAlignment(0, CheckedEnum<flexgrid::GridAlignment>(v)); })
            .Long(
                u"ColWidth0", 61, 0, [](C& c) { return HasCells(c.Model()) ? c.Model().ColWidth(0) : 0; },
                [](C& c, std::int32_t v) { c.Model().SetColWidth(0, v); })
            .String(
                u"TextArray0", 33, u"", [](C& c) { return HasCells(c.Model()) ? c.Model().TextArray(0) : Text(); },
                [](C& c, const Text& v) { c.Model().SetTextArray(0, v); })
            .String(
                u"TextMatrix0", 34, u"", [](C& c) { return HasCells(c.Model()) ? CurrentText(c.Model()) : Text(); },
                [](C& c, const Text& v) { c.Model().SetTextMatrix(c.Model().Row(), c.Model().Col(), v); })
            .Bool(
                u"ProjectSelection", 18, true, [](C& c) { return c.State().projectSelection; },
                [](C& c, bool v) { c.State().projectSelection = v; })
            .String(
                u"InVisibleColumns", 5, u"", [](C& c) { return c.State().inVisibleColumns; },
                [](C& c, Text v) { c.State().inVisibleColumns = std::move(v); })
            .String(
                u"CheckValueFor", 8, u"", [](C& c) { return c.State().checkValueFor; },
                [](C& c, Text v) { c.State().checkValueFor = std::move(v); })
            .Bool(
                u"AutoTab", 17, true, [](C& c) { return c.State().autoTab; },
                [](C& c, bool v) { c.State().autoTab = v; })
            .Long(
                u"BindFrom", 16, 1, [](C& c) { return c.State().bindFrom; },
                [](C& c, std::int32_t v) { c.State().bindFrom = CheckedInteger(v); })
            .Bool(
                u"Enabled", DISPID_ENABLED, true, [](C& c) { return c.Model().Enabled(); },
                [](C& c, bool v) { c.Model().SetEnabled(v); })
            .Long(
                u"BorderStyle", DISPID_BORDERSTYLE, 1,
                [](C& c) { return static_cast<std::int32_t>(c.Model().BorderStyle()); },
                [](C& c, std::int32_t v) { c.Model().SetBorderStyle(CheckedEnum<flexgrid::GridBorder>(v)); })
            .Bool(
                u"ProjectionBold", 15, false, [](C& c) { return c.State().projectionBold; },
                [](C& c, bool v) { c.State().projectionBold = v; })
            .Bool(
                u"CellToolTip", 14, false, [](C& c) { return c.State().cellToolTip; },
                [](C& c, bool v) { c.State().cellToolTip = v; })
            .Long(
                u"KeyColumn", 13, -1, [](C& c) { return c.State().keyColumn; },
                [](C& c, std::int32_t v) { c.State().keyColumn = CheckedInteger(v); })
            .String(
                u"DateFormat", 12, u"DD/MM/YYYY", [](C& c) { return c.State().dateFormat; },
                [](C& c, Text v) { c.State().dateFormat = std::move(v); })
            .Color(
                u"BackColorFixed", 59, 0x8000000F, [](C& c) { return c.Model().BackColorFixed(); },
                [](C& c, OleColor v) { c.Model().SetBackColorFixed(v); })
            .String(
                u"NonFocusColumns", 4, u"", [](C& c) { return c.State().nonFocusColumns; },
                [](C& c, Text v) { c.State().nonFocusColumns = std::move(v); })
            .Done();
    return table;
}

}  // namespace qvx::grid
